#include "tables/tabledialog.h"

#include <tarnis/dialogs/namevaluelistdialog.h>
#include <tarnis/foundation/messagelabel.h>

#include <QBoxLayout>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPushButton>
#include <QTableWidget>

#include <algorithm>

namespace console {

QDialogButtonBox& buttonBoxOf(NameValueListDialog& dialog)
{
    return *dialog.findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"));
}

QPushButton* mainButtonOf(NameValueListDialog& dialog)
{
    QDialogButtonBox& box = buttonBoxOf(dialog);
    const auto others = box.buttons();
    for (QAbstractButton* const other : others) {
        if (auto* const button = qobject_cast<QPushButton*>(other)) {
            button->setAutoDefault(false);
            button->setDefault(false); // the button box set one when the library showed the dialog
        }
    }
    auto* const button = box.addButton(QString(), QDialogButtonBox::ActionRole);
    button->setDefault(true);
    return button;
}

QLabel* stateLabelOf(NameValueListDialog& dialog)
{
    auto* const label = new tarnis::MessageLabel(&dialog);
    label->setObjectName(QStringLiteral("stateLabel"));
    if (auto* const box = qobject_cast<QBoxLayout*>(dialog.layout()))
        box->insertWidget(box->count() - 1, label);
    return label;
}

void putOnTop(NameValueListDialog& dialog, QLayout& form)
{
    if (auto* const box = qobject_cast<QBoxLayout*>(dialog.layout()))
        box->insertLayout(0, &form);
}

void putOnTop(NameValueListDialog& dialog, QWidget& form)
{
    if (auto* const box = qobject_cast<QBoxLayout*>(dialog.layout()))
        box->insertWidget(0, &form);
}

void layTable(QTableWidget& table)
{
    table.horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    table.verticalHeader()->hide();
    table.verticalHeader()->setDefaultSectionSize(table.fontMetrics().height() + 6);
    table.setAlternatingRowColors(true);
    table.setTabKeyNavigation(false);
}

void fitNames(QTableWidget& table)
{
    QHeaderView& header = *table.horizontalHeader();
    const int wanted = static_cast<const QAbstractItemView&>(table).sizeHintForColumn(0) + 1;
    header.setSectionResizeMode(0, QHeaderView::Interactive); // the others share the rest
    header.resizeSection(0, std::min(wanted, header.width() / 2));
}

} // namespace console
