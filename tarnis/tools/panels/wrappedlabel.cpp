#include "tarnis/tools/panels/wrappedlabel_p.h"

#include <QFontMetrics>

namespace tarnis {

WrappedLabel::WrappedLabel(QWidget* parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    setWordWrap(true);
}

QSize WrappedLabel::sizeHint() const
{
    const int width = fontMetrics().averageCharWidth() * 50;
    return { width, heightForWidth(width) };
}

QSize WrappedLabel::minimumSizeHint() const
{
    return { fontMetrics().averageCharWidth() * 20, fontMetrics().lineSpacing() };
}

int WrappedLabel::heightForWidth(int width) const
{
    const QMargins margins = contentsMargins();
    const int inside = width - margins.left() - margins.right() - 2 * margin();
    const QRect space(0, 0, qMax(1, inside), QWIDGETSIZE_MAX);
    const int lines = fontMetrics().boundingRect(space, int(alignment()) | Qt::TextWordWrap, text()).height();
    return lines + fontMetrics().leading() + margins.top() + margins.bottom() + 2 * margin();
}

} // namespace tarnis
