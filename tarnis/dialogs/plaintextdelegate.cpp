#include "tarnis/dialogs/plaintextdelegate_p.h"

#include "tarnis/foundation/shorttext_p.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QToolTip>

namespace tarnis {

namespace {

constexpr qsizetype maxChars = 500;

} // namespace

void PlainTextDelegate::installOn(QAbstractItemView& view)
{
    view.setItemDelegate(new PlainTextDelegate(&view));
    connect(&view, &QAbstractItemView::doubleClicked, &view, [&view](const QModelIndex& index) {
        const QString text = index.data().toString();
        if (text.size() > maxChars)
            showFullText(view.window(), view.window()->windowTitle(), text);
    });
}

QString PlainTextDelegate::displayText(const QVariant& value, const QLocale& locale) const
{
    // A row has one line; more lines would overlap the adjacent rows.
    return shortText(QStyledItemDelegate::displayText(value, locale), maxChars, 1);
}

bool PlainTextDelegate::helpEvent(
    QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option, const QModelIndex& index)
{
    const QString text = index.data().toString();
    const bool isOwn = event->type() == QEvent::ToolTip && index.data(Qt::ToolTipRole).isNull() && !text.isEmpty();
    if (!isOwn || (text.size() <= maxChars && sizeHint(option, index).width() <= option.rect.width()))
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    QToolTip::showText(event->globalPos(), toolTipOf(text), view->viewport(), option.rect);
    return true;
}

} // namespace tarnis
