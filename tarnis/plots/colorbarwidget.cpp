#include "tarnis/plots/colorbarwidget.h"

#include "tarnis/foundation/helpers.h"
#include "tarnis/plots/labelcache_p.h"
#include "tarnis/plots/labeleditor_p.h"
#include "tarnis/plots/math/colourbar_p.h"
#include "tarnis/plots/math/floatcomparison_p.h"
#include "tarnis/plots/plotpixmap_p.h"
#include "tarnis/plots/plotstyling_p.h"
#include "tarnis/plots/raster/devicepixels_p.h"

#include <QLineEdit>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>

ColorBarWidget::ColorBarWidget(QWidget* parent)
    : DoubleBufferedWidget(parent)
    , m_labels(std::make_unique<tarnis::LabelCache>())
{
}

ColorBarWidget::~ColorBarWidget() = default;

void ColorBarWidget::setTicks(int ticks)
{
    if (ticks >= 1)
        m_ticks = ticks;
}

void ColorBarWidget::setLogScale(bool on)
{
    m_logScale = on;
}

void ColorBarWidget::setMin(double min)
{
    if (tarnis::plotEqual(min, m_min))
        return;
    m_min = min;
    refreshPixmap();
}

void ColorBarWidget::setMax(double max)
{
    if (tarnis::plotEqual(max, m_max))
        return;
    m_max = max;
    refreshPixmap();
}

bool ColorBarWidget::isAutoScale() const
{
    return m_autoScale;
}

void ColorBarWidget::setAutoScale(bool on)
{
    m_autoScale = on;
}

bool ColorBarWidget::isEditing()
{
    return m_editLine != nullptr && m_editLine->hasFocus();
}

void ColorBarWidget::deleteEditLine()
{
    if (m_editLine == nullptr)
        return;
    m_editLine->deleteLater();
    m_editLine = nullptr;
    Q_EMIT EditLineDeleted();
}

void ColorBarWidget::updatePos(double position, QColor colour)
{
    for (qsizetype i = 0; i < m_positions.size(); ++i) {
        if (tarnis::plotEqual(m_positions.at(i), position)) {
            m_colors[i] = colour;
            return;
        }
    }
    m_positions.append(position);
    m_colors.append(colour);
}

QPixmap ColorBarWidget::getPixmap()
{
    QPixmap pixmap = tarnis::windowPixmap(*this, size());
    QPainter painter;
    if (pixmap.isNull() || !painter.begin(&pixmap))
        return pixmap; // a bar without size, or too large for the memory
    initPainter(&painter);
    tarnis::useWidgetCoordinates(painter, pixmap, size());
    paint(painter, nullptr);
    return pixmap;
}

void ColorBarWidget::paint(QPainter& painter, QRect* rect)
{
    const QRect frame = rect != nullptr ? *rect : painter.viewport();
    if (tarnis::PlotStyling* const styling = tarnis::stylingOf(parentWidget())) {
        const auto layout = styling->paintColourBar(painter, frame, *this);
        m_minRect = layout.minLabel;
        m_maxRect = layout.maxLabel;
        if (frame.width() < layout.width)
            Q_EMIT sizeChanging(layout.width);
        return;
    }
    const QFontMetrics metrics = fontMetrics();
    const QSize charSize(metrics.averageCharWidth(), metrics.height());
    painter.fillRect(frame, QBrush(Qt::lightGray));

    QRect bar;
    bar.setCoords(frame.left(), frame.top() + charSize.height(), frame.left() + 12, frame.bottom() - charSize.height());
    // Spans the complete frame, so the ends of the bar are slightly inside of the gradient.
    QLinearGradient gradient(0, frame.height(), 0, 0);
    for (qsizetype i = 0; i < m_positions.size(); ++i)
        gradient.setColorAt(m_positions.at(i), m_colors.at(i));
    painter.setBrush(gradient);
    if (const auto pixels = tarnis::DevicePixels::of(painter))
        pixels->drawFrame(painter, bar, painter.pen().color(), gradient);
    else
        painter.drawRects(&bar, 1);
    painter.setPen(Qt::black);

    const int textWidth = (frame.width() - 1) - (bar.right() - bar.left());
    const int left = bar.right() + charSize.width();
    const int right = bar.right() + textWidth - 1;
    m_minRect.setCoords(left, bar.bottom() - charSize.height(), right, bar.bottom() + charSize.height() - 1);
    m_maxRect.setCoords(left, 0, right, 2 * charSize.height() - 1);

    const int widest = paintTicks(painter, frame, bar, charSize);
    if (textWidth - charSize.width() < widest)
        Q_EMIT sizeChanging(charSize.width() + bar.width() + widest);
}

int ColorBarWidget::paintTicks(QPainter& painter, const QRect& rect, const QRect& bar, QSize charSize) const
{
    if (tarnis::plotEqual(m_min, m_max))
        return 0;
    const QFontMetrics metrics = fontMetrics();
    const int intervals = tarnis::fittingIntervals(m_ticks, bar.height(), charSize.height());
    const int right = bar.left() + bar.width();
    int widest = 0;
    for (int i = 0; i <= intervals; ++i) {
        const double y = bar.top() + i * (static_cast<double>(bar.height()) / intervals);
        tarnis::drawEvenLine(painter, QLineF(right, y, right + charSize.width() / 2, y));
        const QString label = numStr(m_squareRoot && !m_logScale
                ? tarnis::squareRootBarValue({ m_min, m_max }, intervals - i, intervals)
                : tarnis::colourBarValue({ m_min, m_max }, m_logScale, intervals - i, intervals));
        m_labels->draw(painter,
            QRectF(right + charSize.width(), y - charSize.height() / 2, rect.width() - bar.width() - charSize.width(),
                charSize.height()),
            Qt::AlignLeft | Qt::AlignVCenter, label);
        widest = qMax(widest, m_labels->advanceOf(label, metrics));
    }
    return widest;
}

void ColorBarWidget::mousePressEvent(QMouseEvent* event)
{
    deleteEditLine();
    DoubleBufferedWidget::mousePressEvent(event);
}

void ColorBarWidget::mouseReleaseEvent(QMouseEvent* event)
{
    if (!m_autoScale && event->button() == Qt::LeftButton && m_editLine == nullptr)
        openEditorAt(event->position().toPoint());
    DoubleBufferedWidget::mouseReleaseEvent(event);
}

void ColorBarWidget::openEditorAt(const QPoint& point)
{
    const bool onMax = m_maxRect.contains(point, true);
    if (onMax || m_minRect.contains(point, true))
        openEditor(onMax);
}

void ColorBarWidget::openEditor(bool onMax)
{
    deleteEditLine();
    QRect geometry = onMax ? m_maxRect : m_minRect;
    m_editLine = new tarnis::LabelEditor(QString::number(onMax ? m_max : m_min, 'g', 6), this);
    Q_EMIT beginEditingText();
    if (m_editLine == nullptr)
        return; // a receiver has deleted the editor
    connect(m_editLine, &QLineEdit::returnPressed, this,
        onMax ? &ColorBarWidget::onMaxEntered : &ColorBarWidget::onMinEntered);
    stretchRect(geometry, 1.5, 1.0);
    moveIn(geometry, rect());
    m_editLine->resize(geometry.size());
    m_editLine->move(geometry.topLeft());
    m_editLine->show();
    m_editLine->setFocus();
}

void ColorBarWidget::onMaxEntered()
{
    if (m_editLine == nullptr)
        return;
    setMax(takeNumber());
    Q_EMIT onMaxChanged(m_max);
}

void ColorBarWidget::onMinEntered()
{
    if (m_editLine == nullptr)
        return;
    setMin(takeNumber());
    Q_EMIT onMinChanged(m_min);
}

double ColorBarWidget::takeNumber()
{
    const double number = m_editLine->text().toDouble();
    m_editLine->deleteLater();
    m_editLine = nullptr;
    return number;
}
