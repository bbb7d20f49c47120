#include "settings/settingstable.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QStyledItemDelegate>

#include <algorithm>

namespace console {

namespace {

constexpr int maxNameChars = 40; // a longer name is elided

/// Keeps what the user is typing when the values are read again.
class SettingsDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void setEditorData(QWidget* editor, const QModelIndex& index) const override
    {
        const auto* const edit = qobject_cast<const QLineEdit*>(editor);
        if (!edit || !edit->isModified())
            QStyledItemDelegate::setEditorData(editor, index);
    }
};

} // namespace

SettingsTable::SettingsTable(QWidget* parent)
    : QTableView(parent)
{
    setItemDelegate(new SettingsDelegate(this));
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    horizontalHeader()->setHighlightSections(false);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
}

void SettingsTable::setModel(QAbstractItemModel* model)
{
    QTableView::setModel(model);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
}

void SettingsTable::updateGeometries()
{
    QTableView::updateGeometries();
    QHeaderView& header = *horizontalHeader();
    const int last = header.count() - 1;
    int rest = viewport()->width() - header.sectionSize(0);
    // From the last one, whose header has the longest text.
    for (int column = last; column > 0; --column) {
        const int width = std::max(rest / column, header.sectionSizeHint(column));
        rest -= width;
        if (width != header.sectionSize(column))
            header.resizeSection(column, width);
    }
}

int SettingsTable::sizeHintForColumn(int column) const
{
    return std::min(QTableView::sizeHintForColumn(column), fontMetrics().averageCharWidth() * maxNameChars);
}

} // namespace console
