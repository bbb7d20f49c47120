#include "tarnis/plots/labelcache_p.h"

#include <QPainter>
#include <QTextLayout>

#include <algorithm>

namespace tarnis {

namespace {

constexpr qsizetype maxLabels = 256;
constexpr qreal endlessLine = 0x01000000; // width that QPainter::drawText() uses for lines that do not wrap

/// True for text without spaces, control characters, and letters that a layout would reorder, break or combine.
bool isPlain(const QString& text)
{
    return !text.isEmpty()
        && std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c > u' ' && c.unicode() < 0x7f; });
}

} // namespace

LabelCache::LabelCache() = default;
LabelCache::~LabelCache() = default;

void LabelCache::draw(QPainter& painter, const QRectF& rect, int flags, const QString& text)
{
    if (!isPlain(text) || painter.layoutDirection() == Qt::RightToLeft || painter.pen().style() == Qt::NoPen) {
        painter.drawText(rect, flags, text);
        return;
    }
    // The following steps are those of qt_format_text().
    const Label& label = labelOf(text, painter.font());
    qreal up = 0.0;
    if ((flags & Qt::AlignBottom) != 0)
        up = rect.height() - label.height;
    else if ((flags & Qt::AlignVCenter) != 0)
        up = (rect.height() - label.height) / 2;
    qreal left = 0.0;
    qreal lineLeft = 0.0;
    if ((flags & Qt::AlignRight) != 0) {
        left = rect.width() - label.width;
        lineLeft = rect.width() - label.advance;
    } else if ((flags & Qt::AlignHCenter) != 0) {
        left = (rect.width() - label.width) / 2;
        lineLeft = (rect.width() - label.advance) / 2;
    }
    const bool isCut = !rect.contains(QRectF(rect.x() + left, rect.y() + up, label.width, label.height));
    if (isCut) {
        painter.save();
        painter.setClipRect(rect, Qt::IntersectClip);
    }
    label.layout->lineAt(0).draw(&painter, QPointF(rect.x() + lineLeft, rect.y() + up));
    if (isCut)
        painter.restore();
}

int LabelCache::advanceOf(const QString& text, const QFontMetrics& metrics)
{
    if (m_metrics != metrics || m_advances.size() >= maxLabels) {
        m_advances.clear();
        m_metrics = metrics;
    }
    const auto known = m_advances.constFind(text);
    return known != m_advances.cend() ? *known : *m_advances.insert(text, metrics.horizontalAdvance(text));
}

const LabelCache::Label& LabelCache::labelOf(const QString& text, const QFont& font)
{
    if (m_font != font || m_labels.size() >= maxLabels) {
        m_labels.clear();
        m_font = font;
    }
    std::shared_ptr<Label>& label = m_labels[text];
    if (label)
        return *label;
    label = std::make_shared<Label>();
    label->layout = std::make_unique<QTextLayout>(text, font);
    QTextLayout& layout = *label->layout;
    layout.setCacheEnabled(true);
    QTextOption option;
    option.setTextDirection(Qt::LeftToRight);
    option.setAlignment(Qt::AlignLeft);
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(endlessLine);
    line.setPosition(QPointF(0.0, 0.0));
    label->height = line.ascent() + line.descent(); // height() would be rounded up
    label->width = line.naturalTextWidth();
    label->advance = line.horizontalAdvance();
    layout.endLayout();
    return *label;
}

} // namespace tarnis
