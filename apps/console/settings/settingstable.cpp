#include "settings/settingstable.h"

#include <QHeaderView>

#include <algorithm>

namespace console {

namespace {

constexpr int maxNameChars = 40; // a longer name is elided

} // namespace

SettingsTable::SettingsTable(QWidget* parent)
    : QTableView(parent)
{
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    horizontalHeader()->setHighlightSections(false);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
}

void SettingsTable::setModel(QAbstractItemModel* model)
{
    QTableView::setModel(model);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
}

void SettingsTable::updateGeometries()
{
    QHeaderView& header = *horizontalHeader();
    int widest = 0;
    for (int column = 0; column < header.count(); ++column)
        widest = std::max(widest, header.sectionSizeHint(column));
    if (widest != header.minimumSectionSize())
        header.setMinimumSectionSize(widest);
    QTableView::updateGeometries();
}

int SettingsTable::sizeHintForColumn(int column) const
{
    return std::min(QTableView::sizeHintForColumn(column), fontMetrics().averageCharWidth() * maxNameChars);
}

} // namespace console
