#include "tarnis/dialogs/namevaluelistdialog.h"

#include "tarnis/dialogs/namevalue.h"
#include "tarnis/dialogs/plaintextdelegate_p.h"
#include "tarnis/dialogs/tabletext_p.h"
#include "tarnis/foundation/saving_p.h"

#include "ui_namevaluelistdialog.h"

#include <QEvent>
#include <QHeaderView>
#include <QPushButton>

#include <cmath>

namespace {

// The table does not check the column: one beyond the last would be a cell of the next row.
void setCell(QTableWidget& table, int row, int column, const QString& text, Qt::AlignmentFlag horizontal)
{
    if (column >= table.columnCount())
        return;
    auto* const item = new QTableWidgetItem(text);
    item->setTextAlignment(horizontal | Qt::AlignVCenter);
    table.setItem(row, column, item);
}

} // namespace

NameValueListDialog::NameValueListDialog(QList<NameValue> const& list, QWidget* parent, QString const& nameHeader)
    : QDialog(parent)
    , ui(std::make_unique<Ui::NameValueListDialog>())
{
    setUpForm();
    table()->setColumnCount(2);
    table()->setHorizontalHeaderLabels({ nameHeader, tr("Value") });
    updateList(list);
    show();

    // Read after show(), because the layout sets the table's width only then.
    const double width = std::round(table()->width() * 0.93);
    table()->setColumnWidth(0, static_cast<int>(std::round(0.6 * width)));
    table()->setColumnWidth(1, static_cast<int>(std::round(0.4 * width)));
}

NameValueListDialog::NameValueListDialog(QList<NameValues> const& list, QList<QString> const& headers, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::NameValueListDialog>())
{
    setUpForm();
    updateList(list, &headers);
    show();

    int columns = 0;
    for (int column = 0; column < table()->columnCount(); ++column)
        columns += table()->columnWidth(column);
    resize(columns + 2 * (width() - table()->width()), height());
}

NameValueListDialog::~NameValueListDialog() = default;

void NameValueListDialog::setUpForm()
{
    ui->setupUi(this);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    tarnis::PlainTextDelegate::installOn(*table());
    connect(ui->buttonBox, &QDialogButtonBox::clicked, this, &NameValueListDialog::onButtonClicked);
}

void NameValueListDialog::updateList(QList<NameValue> const& list)
{
    table()->setRowCount(static_cast<int>(list.size()));
    int row = 0;
    for (const NameValue& record : list) {
        setCell(*table(), row, 0, record.name, Qt::AlignLeft);
        setCell(*table(), row, 1, record.value, Qt::AlignRight);
        ++row;
    }
}

void NameValueListDialog::updateList(QList<NameValues> const& list, QList<QString> const* headers)
{
    if (headers) {
        table()->setColumnCount(static_cast<int>(headers->size()));
        table()->setHorizontalHeaderLabels(*headers);
    }
    table()->setRowCount(static_cast<int>(list.size()));
    int row = 0;
    for (const NameValues& record : list) {
        setCell(*table(), row, 0, record.name, Qt::AlignLeft);
        int column = 1;
        for (const QString& value : record.values)
            setCell(*table(), row, column++, value, Qt::AlignRight);
        ++row;
    }
}

QTableWidget* NameValueListDialog::table()
{
    return ui->tableWidget;
}

void NameValueListDialog::onButtonClicked(QAbstractButton* button)
{
    if (button == ui->buttonBox->button(QDialogButtonBox::Save))
        onSave();
}

void NameValueListDialog::onSave()
{
    tarnis::saveTable(this, tr("Save"), tr("CSV Files (*.csv *.txt)"), [this] { return tarnis::tableText(*table()); });
}

void NameValueListDialog::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        ui->retranslateUi(this);
}
