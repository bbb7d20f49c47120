// How lists and tables of the dialogs show texts that come from a server.
#pragma once

#include <QStyledItemDelegate>

class QAbstractItemView;
class QModelIndex;

namespace tarnis {

/// Draws and measures the beginning of an item's text only; the item keeps all of it. A cell that is too narrow shows
/// the text as a plain tool tip.
class PlainTextDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Gives the view a delegate of this kind, and opens a text that is not shown whole in a window on a double click.
    static void installOn(QAbstractItemView& view);

    QString displayText(const QVariant& value, const QLocale& locale) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
        const QModelIndex& index) override;
};

} // namespace tarnis
