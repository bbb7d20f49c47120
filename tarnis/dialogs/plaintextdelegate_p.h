// Shows texts from a server in lists and tables.
#pragma once

#include <QStyledItemDelegate>

class QAbstractItemView;
class QModelIndex;

namespace tarnis {

/// Draws and measures only the beginning of an item's text; the item keeps the full text. A cell that is too narrow
/// shows it as a plain tool tip.
class PlainTextDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Installs such a delegate on the view. A double click on a truncated text opens it in a window.
    static void installOn(QAbstractItemView& view);

    QString displayText(const QVariant& value, const QLocale& locale) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
        const QModelIndex& index) override;
};

} // namespace tarnis
