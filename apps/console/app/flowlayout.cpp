#include "app/flowlayout.h"

#include <QStyle>
#include <QWidget>

#include <algorithm>

namespace console {

namespace {

bool expands(const QLayoutItem& item)
{
    return item.expandingDirections().testFlag(Qt::Horizontal);
}

/// An expanding item may be as narrow as its minimum; all others have their preferred width.
int widthOf(const QLayoutItem& item)
{
    return expands(item) ? item.minimumSize().width() : item.sizeHint().width();
}

} // namespace

FlowLayout::FlowLayout(QWidget* parent)
    : QLayout(parent)
{
    setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout()
{
    qDeleteAll(m_items);
}

void FlowLayout::addItem(QLayoutItem* item)
{
    m_items.append(item);
}

QLayoutItem* FlowLayout::takeAt(int index)
{
    return index >= 0 && index < m_items.size() ? m_items.takeAt(index) : nullptr;
}

int FlowLayout::gap() const
{
    if (const int own = spacing(); own >= 0)
        return own;
    const QWidget* const widget = parentWidget();
    return widget ? widget->style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing, nullptr, widget) : 0;
}

QList<FlowLayout::Line> FlowLayout::lines(int width) const
{
    QList<Line> found;
    bool isBehind = false; // a spacer
    const auto hasRoom = [&](int wanted) { return !found.isEmpty() && found.last().width + gap() + wanted <= width; };
    for (int i = 0; i < m_items.size(); ++i) {
        QLayoutItem* const item = m_items.at(i);
        if (item->spacerItem() != nullptr) {
            isBehind = true;
            const int behind = widthBehind(i, width);
            if (!found.isEmpty() && (behind == 0 || behind > width || hasRoom(gap() + behind)))
                append(found.last(), item, width);
            else
                found.append(Line { {}, 0, 0, true });
            continue;
        }
        if (item->isEmpty()) // a hidden control
            continue;
        const bool isFirst = !found.isEmpty() && found.last().items.isEmpty();
        if (!isFirst && !hasRoom(std::min(widthOf(*item), width)))
            found.append(Line { {}, 0, 0, isBehind });
        append(found.last(), item, width);
    }
    return found;
}

/// Width of the items between a spacer and the next one.
int FlowLayout::widthBehind(int spacer, int width) const
{
    Line line;
    for (int i = spacer + 1; i < m_items.size() && m_items.at(i)->spacerItem() == nullptr; ++i) {
        if (!m_items.at(i)->isEmpty())
            append(line, m_items.at(i), width);
    }
    return line.width;
}

void FlowLayout::append(Line& line, QLayoutItem* item, int width) const
{
    line.width += (line.items.isEmpty() ? 0 : gap()) + std::min(widthOf(*item), width);
    line.height = std::max(line.height, item->sizeHint().height());
    line.items.append(item);
}

void FlowLayout::place(const Line& line, const QRect& rect) const
{
    const auto expanding = int(
        std::count_if(line.items.begin(), line.items.end(), [](const QLayoutItem* item) { return expands(*item); }));
    int spare = std::max(0, rect.width() - line.width);
    int left = expanding;
    int x = rect.left() + (line.isAtEnd && expanding == 0 ? spare : 0);
    for (QLayoutItem* const item : line.items) {
        int width = std::min(widthOf(*item), rect.width());
        if (expands(*item)) {
            const int share = spare / std::max(left, 1); // whole pixels; the last one gets the rest
            --left;
            spare -= share;
            width += share;
        }
        const int height = std::min(item->sizeHint().height(), line.height);
        const QRect cell(x, rect.top() + (line.height - height) / 2, width, height);
        item->setGeometry(
            QStyle::visualRect(parentWidget() ? parentWidget()->layoutDirection() : Qt::LeftToRight, rect, cell));
        x += width + gap();
    }
}

int FlowLayout::heightForWidth(int width) const
{
    const QMargins margins = contentsMargins();
    int height = margins.top() + margins.bottom();
    const QList<Line> all = lines(width - margins.left() - margins.right());
    for (const Line& line : all)
        height += line.height;
    return height + gap() * std::max<int>(0, int(all.size()) - 1);
}

QSize FlowLayout::minimumSize() const
{
    QSize size;
    for (const QLayoutItem* const item : m_items) {
        if (!item->isEmpty())
            size = size.expandedTo(QSize(widthOf(*item), item->sizeHint().height()));
    }
    const QMargins margins = contentsMargins();
    return size + QSize(margins.left() + margins.right(), margins.top() + margins.bottom());
}

QSize FlowLayout::sizeHint() const
{
    const QMargins margins = contentsMargins();
    QSize size;
    const QList<Line> all = lines(QLAYOUTSIZE_MAX);
    for (const Line& line : all)
        size = QSize(std::max(size.width(), line.width), size.height() + line.height);
    return size + QSize(margins.left() + margins.right(), margins.top() + margins.bottom());
}

void FlowLayout::setGeometry(const QRect& rect)
{
    QLayout::setGeometry(rect);
    QRect free = rect.marginsRemoved(contentsMargins());
    const QList<Line> all = lines(free.width());
    for (const Line& line : all) {
        place(line, free);
        free.setTop(free.top() + line.height + gap());
    }
}

} // namespace console
