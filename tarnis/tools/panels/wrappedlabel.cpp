#include "tarnis/tools/panels/wrappedlabel_p.h"

#include <QFontMetrics>

#include <algorithm>

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

// A layout asks several times for the same widths, and each answer lays out the text.
int WrappedLabel::heightForWidth(int width) const
{
    if (m_measuredText != text() || m_measuredFont != font()) {
        m_measuredText = text();
        m_measuredFont = font();
        m_heights.clear();
    }
    const auto known = m_heights.constFind(width);
    if (known != m_heights.constEnd())
        return *known;
    const int height = measuredHeight(width);
    m_heights.insert(width, height);
    return height;
}

int WrappedLabel::measuredHeight(int width) const
{
    const QMargins margins = contentsMargins();
    const int inside = width - margins.left() - margins.right() - 2 * margin();
    const QRect space(0, 0, qMax(1, inside), QWIDGETSIZE_MAX);
    const int lines = fontMetrics().boundingRect(space, int(alignment()) | Qt::TextWordWrap, text()).height();
    return lines + fontMetrics().leading() + margins.top() + margins.bottom() + 2 * margin();
}

MessageArea::MessageArea(WrappedLabel* label, QWidget* parent)
    : QScrollArea(parent)
    , m_label(label)
{
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    setWidget(label);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    // Without it the viewport has the colour of lists.
    viewport()->setAutoFillBackground(false);
    label->setAutoFillBackground(false);
}

QSize MessageArea::sizeHint() const
{
    return m_label->sizeHint();
}

// A few lines, so that the first reason of a verdict can be read without scrolling.
QSize MessageArea::minimumSizeHint() const
{
    const int lines = 3 * m_label->fontMetrics().lineSpacing();
    return { m_label->minimumSizeHint().width(), std::min(lines, heightForWidth(std::max(1, width()))) };
}

int MessageArea::heightForWidth(int width) const
{
    return m_label->heightForWidth(width);
}

} // namespace tarnis
