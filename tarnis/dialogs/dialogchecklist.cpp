#include "tarnis/dialogs/dialogchecklist.h"

#include "tarnis/foundation/retranslator.h"

#include "ui_dialogchecklist.h"

DialogCheckList::DialogCheckList(QString const& title, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::DialogCheckList>())
{
    ui->setupUi(this); // also connects the three buttons to the slots with matching names
    setDescription(QString());
    if (!title.isEmpty())
        setWindowTitle(title);
    tarnis::onLanguageChange(*this, [this] {
        const QString shownTitle = windowTitle();
        const QString description = ui->labelDescription->text();
        ui->retranslateUi(this);
        setWindowTitle(shownTitle);
        ui->labelDescription->setText(description);
    });
}

DialogCheckList::~DialogCheckList() = default;

void DialogCheckList::setDescription(QString const& text)
{
    ui->labelDescription->setText(text);
    ui->labelDescription->setVisible(!text.isEmpty());
}

void DialogCheckList::addItem(QString const& text, bool checked)
{
    auto* item = new QListWidgetItem(text);
    item->setData(Qt::CheckStateRole, static_cast<int>(checked ? Qt::Checked : Qt::Unchecked));
    ui->listWidget->addItem(item);
}

int DialogCheckList::count() const
{
    return ui->listWidget->count();
}

void DialogCheckList::getItem(int index, QString& text, bool& checked) const
{
    const QListWidgetItem* item = ui->listWidget->item(index);
    text = item != nullptr ? item->text() : QString();
    checked = item != nullptr && item->data(Qt::CheckStateRole).toInt() == Qt::Checked;
}

void DialogCheckList::setChecked(int index, bool checked)
{
    if (QListWidgetItem* item = ui->listWidget->item(index))
        item->setData(Qt::CheckStateRole, static_cast<int>(checked ? Qt::Checked : Qt::Unchecked));
}

void DialogCheckList::on_buttonCheckAll_clicked()
{
    for (int i = 0; i < count(); ++i)
        setChecked(i, true);
}

void DialogCheckList::on_buttonUncheckAll_clicked()
{
    for (int i = 0; i < count(); ++i)
        setChecked(i, false);
}

void DialogCheckList::on_buttonInvert_clicked()
{
    QString text;
    bool checked = false;
    for (int i = 0; i < count(); ++i) {
        getItem(i, text, checked);
        setChecked(i, !checked);
    }
}
