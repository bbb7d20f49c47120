#include "tarnis/dialogs/selectcheckeddialog.h"

#include "ui_selectcheckeddialog.h"

#include <QEvent>

namespace {

template <typename NewMark> void markSelected(const QTableWidget& table, NewMark newMark)
{
    for (int row = 0; row < table.rowCount(); ++row) {
        for (int column = 0; column < table.columnCount(); ++column) {
            QTableWidgetItem* item = table.item(row, column);
            if (item != nullptr && item->isSelected())
                item->setData(Qt::CheckStateRole, newMark(item->data(Qt::CheckStateRole).toInt()));
        }
    }
}

} // namespace

SelectCheckedDialog::SelectCheckedDialog(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::SelectCheckedDialog>())
{
    ui->setupUi(this);
    connect(ui->selectAllPushButton, &QPushButton::clicked, this, &SelectCheckedDialog::onSelectAll);
    connect(ui->unselectAllPushButton, &QPushButton::clicked, this, &SelectCheckedDialog::onUnselectAll);
    connect(ui->reversePushButton, &QPushButton::clicked, this, &SelectCheckedDialog::onReverse);
    connect(ui->applyPushButton, &QPushButton::clicked, this, &SelectCheckedDialog::onApply);
}

SelectCheckedDialog::~SelectCheckedDialog() = default;

QTableWidget* SelectCheckedDialog::getTable()
{
    return ui->tableWidget;
}

void SelectCheckedDialog::onSelectAll()
{
    markSelected(*ui->tableWidget, [](int) { return static_cast<int>(Qt::Checked); });
}

void SelectCheckedDialog::onUnselectAll()
{
    markSelected(*ui->tableWidget, [](int) { return static_cast<int>(Qt::Unchecked); });
}

void SelectCheckedDialog::onReverse()
{
    markSelected(*ui->tableWidget,
        [](int mark) { return static_cast<int>(mark != Qt::Unchecked ? Qt::Unchecked : Qt::Checked); });
}

void SelectCheckedDialog::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        ui->retranslateUi(this);
}
