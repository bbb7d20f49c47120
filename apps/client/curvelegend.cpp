#include "curvelegend.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace cli {

namespace {

constexpr double pointRadius = 1.6; // in line widths

} // namespace

CurveLegend::CurveLegend(const std::vector<LegendEntry>& entries, const QFont& font, int width, int maxHeight)
    : m_font(font)
{
    if (entries.empty())
        return;
    const QFontMetrics metrics(font);
    const int line = metrics.height() + metrics.height() / 4;
    m_sample = 2 * metrics.height();
    m_space = metrics.height() / 2;
    const int right = width - m_space;
    const int bottom = std::max(maxHeight - m_space, line);
    QPoint place(m_space, 0);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const int maxWidth = right - m_space - m_sample - m_space;
        const QString name = metrics.elidedText(entries[i].name, Qt::ElideMiddle, maxWidth);
        const int wide = m_sample + m_space + metrics.horizontalAdvance(name);
        const QString rest = QStringLiteral("+%1").arg(entries.size() - i);
        const bool isLast = i + 1 == entries.size();
        const bool isLastRow = place.y() + 2 * line > bottom;
        const int kept = isLastRow && !isLast ? m_space + metrics.horizontalAdvance(rest) : 0;
        const bool isFirstInRow = place.x() == m_space;
        if (place.x() + wide + kept > right && isLastRow && !(isFirstInRow && isLast)) {
            m_items.push_back(
                { { rest, QPen(Qt::NoPen), false }, QRect(place, QSize(metrics.horizontalAdvance(rest), line)) });
            break;
        }
        if (place.x() + wide > right && !isFirstInRow)
            place = QPoint(m_space, place.y() + line);
        m_items.push_back({ { name, entries[i].pen, entries[i].isPoint }, QRect(place, QSize(wide, line)) });
        place.rx() += wide + 2 * m_space;
    }
    m_height = m_items.back().rect.bottom() + 1 + m_space;
}

void CurveLegend::paint(QPainter& painter, QPoint topLeft, const QColor& text) const
{
    painter.setFont(m_font);
    for (const Item& item : m_items) {
        const QRect rect = item.rect.translated(topLeft);
        const bool isCurve = item.entry.pen.style() != Qt::NoPen;
        if (isCurve) {
            QPen pen = item.entry.pen;
            pen.setCapStyle(Qt::FlatCap);
            painter.setPen(pen);
            const QPointF middle(rect.left() + m_sample / 2.0, rect.center().y());
            painter.setBrush(pen.color());
            if (item.entry.isPoint)
                painter.drawEllipse(middle, pointRadius * pen.widthF(), pointRadius * pen.widthF());
            else
                painter.drawLine(rect.left(), rect.center().y(), rect.left() + m_sample, rect.center().y());
        }
        painter.setPen(text);
        painter.drawText(rect.adjusted(isCurve ? m_sample + m_space : 0, 0, m_space, 0),
            Qt::AlignLeft | Qt::AlignVCenter, item.entry.name);
    }
}

} // namespace cli
