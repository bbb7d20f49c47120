#include "app/columnscroll.h"

#include <QScrollBar>

#include <algorithm>

namespace console {

namespace {

constexpr int minLines = 5;

} // namespace

ColumnScroll::ColumnScroll(QWidget* content)
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus); // its content gets the focus
    setWidget(content);
}

QSize ColumnScroll::minimumSizeHint() const
{
    const QSize content = widget()->minimumSizeHint().expandedTo(widget()->minimumSize());
    const int height = std::min(content.height(), fontMetrics().height() * minLines);
    return { content.width() + verticalScrollBar()->sizeHint().width(), height };
}

QSize ColumnScroll::sizeHint() const
{
    return widget()->sizeHint() + QSize(verticalScrollBar()->sizeHint().width(), 0);
}

} // namespace console
