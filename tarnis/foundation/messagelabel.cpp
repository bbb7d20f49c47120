#include "tarnis/foundation/messagelabel.h"

#include "tarnis/foundation/shorttext_p.h"

#include <QAction>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QMenu>
#include <QPainter>
#include <QStyle>
#include <QTextLayout>
#include <QTextOption>
#include <QToolTip>

#include <algorithm>

namespace tarnis {

namespace {

constexpr int maxLines = 5;
constexpr qsizetype maxChars = 2000; // more than five lines of a wide window
constexpr int minChars = 10;
constexpr int usualChars = 40;

} // namespace

MessageLabel::MessageLabel(QWidget* parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true); // enables height-for-width
}

QString MessageLabel::shownText() const
{
    QString shown = shortText(text(), maxChars, maxLines + 1);
    return shown.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
}

// Returns the number of lines, those beyond the limit as one.
int MessageLabel::layOut(QTextLayout& layout, int width) const
{
    QTextOption option(QStyle::visualAlignment(layoutDirection(), alignment() & Qt::AlignHorizontal_Mask));
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    const int spacing = fontMetrics().lineSpacing();
    layout.beginLayout();
    int count = 0;
    for (QTextLine line = layout.createLine(); line.isValid() && count <= maxLines; line = layout.createLine()) {
        line.setLineWidth(std::max(width, 1));
        line.setPosition(QPointF(0, count * spacing));
        ++count;
    }
    layout.endLayout();
    return count;
}

bool MessageLabel::isShortened() const
{
    QTextLayout layout(shownText(), font());
    return text().size() > maxChars || layOut(layout, contentsRect().width()) > maxLines;
}

QSize MessageLabel::sizeHint() const
{
    const int width = fontMetrics().averageCharWidth() * usualChars;
    return { width, heightForWidth(width) };
}

QSize MessageLabel::minimumSizeHint() const
{
    return { fontMetrics().averageCharWidth() * minChars, fontMetrics().lineSpacing() };
}

int MessageLabel::heightForWidth(int width) const
{
    QTextLayout layout(shownText(), font());
    const QMargins margins = contentsMargins();
    const int lines = std::clamp(layOut(layout, width - margins.left() - margins.right()), 1, maxLines);
    return lines * fontMetrics().lineSpacing() + margins.top() + margins.bottom();
}

void MessageLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    QRect area = contentsRect();
    QTextLayout layout(shownText(), font());
    const int room = std::clamp(area.height() / std::max(fontMetrics().lineSpacing(), 1), 1, maxLines);
    const int lines = layOut(layout, area.width());
    const QSize block(area.width(), std::min(lines, room) * fontMetrics().lineSpacing());
    area = QStyle::alignedRect(layoutDirection(), alignment() & Qt::AlignVertical_Mask, block, area);
    for (int i = 0; i < std::min(lines, room); ++i) {
        const QTextLine line = layout.lineAt(i);
        if (i + 1 < room || lines <= room) {
            line.draw(&painter, area.topLeft());
            continue;
        }
        QString rest = layout.text().mid(line.textStart());
        rest.replace(QChar(QChar::LineSeparator), QLatin1Char(' '));
        const QPointF baseline(area.left(), area.top() + line.y() + line.ascent());
        painter.drawText(baseline, fontMetrics().elidedText(rest, Qt::ElideRight, area.width()));
    }
}

bool MessageLabel::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip || !toolTip().isEmpty() || !isShortened())
        return QLabel::event(event);
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), toolTipOf(text()), this);
    return true;
}

void MessageLabel::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (isShortened())
        showAll();
    else
        QLabel::mouseDoubleClickEvent(event);
}

void MessageLabel::contextMenuEvent(QContextMenuEvent* event)
{
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("Copy"), this, [this] { QGuiApplication::clipboard()->setText(text()); });
    menu->addAction(tr("Show All..."), this, &MessageLabel::showAll);
    menu->popup(event->globalPos());
}

void MessageLabel::showAll()
{
    showFullText(window(), window()->windowTitle(), text());
}

} // namespace tarnis
