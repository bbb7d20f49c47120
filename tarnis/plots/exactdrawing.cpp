#include "tarnis/plots/exactdrawing_p.h"

#include "tarnis/plots/raster/bincolouring_p.h"

#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QPolygonF>

#include <algorithm>
#include <array>
#include <cmath>

namespace tarnis {

namespace {

/// File formats and viewers calculate in single precision: samples far outside of the clip are clamped to this.
constexpr double farOutside = 1e5;

constexpr int largestFactor = 16;
constexpr qsizetype enlargedPixels = 1024;

QPointF vertex(double x, double y)
{
    return { std::clamp(x, -farOutside, farOutside), std::clamp(y, -farOutside, farOutside) };
}

bool countsAsZero(double value)
{
    return plotEqual(value, 0.0);
}

/// Draws lines through points, with a gap between two zeros and at NaN.
class JoinedLine {
public:
    explicit JoinedLine(QPainter& painter)
        : m_painter(painter)
    {
    }
    ~JoinedLine() { finish(); }
    JoinedLine(const JoinedLine&) = delete;
    JoinedLine& operator=(const JoinedLine&) = delete;

    void append(double x, double y, bool zero)
    {
        if (std::isnan(x) || std::isnan(y))
            return finish();
        if (zero && m_zero)
            finish();
        m_points.append(vertex(x, y));
        m_zero = zero;
    }

private:
    void finish()
    {
        if (m_points.size() > 1)
            m_painter.drawPolyline(m_points);
        m_points.clear();
        m_zero = false;
    }

    QPainter& m_painter;
    QPolygonF m_points;
    bool m_zero = false;
};

/// Appends the samples of [begin, end) that are drawn when they cannot be distinguished: first, smallest, largest,
/// last.
template <typename Append> void appendExtremes(const SampleRun& samples, int begin, int end, const Append& append)
{
    int least = begin;
    int largest = begin;
    for (int i = begin + 1; i < end; ++i) {
        least = samples[i] < samples[least] ? i : least;
        largest = samples[i] > samples[largest] ? i : largest;
    }
    std::array<int, 4> drawn { begin, least, largest, end - 1 };
    std::sort(drawn.begin(), drawn.end());
    const auto last = std::unique(drawn.begin(), drawn.end());
    std::for_each(drawn.begin(), last, append);
}

template <typename Scale>
void paintJoined(
    QPainter& painter, const SampleRun& samples, SampleRange range, const Scale& x, const ValueScale& y, double finest)
{
    JoinedLine line(painter);
    const auto append = [&](int i) { line.append(x.position(i), y.position(samples[i]), countsAsZero(samples[i])); };
    for (int begin = range.begin; begin < range.end;) {
        int end = begin + 1;
        while (end < range.end && std::fabs(x.position(end) - x.position(begin)) < finest)
            ++end;
        appendExtremes(samples, begin, end, append);
        begin = end;
    }
}

template <typename Scale>
void paintColumns(
    QPainter& painter, const SampleRun& samples, SampleRange range, const Scale& x, const CurveDrawing& drawing)
{
    const double width = drawing.shape.pixelsPerSample;
    painter.save();
    painter.setBrush(painter.pen().color());
    painter.setPen(Qt::NoPen);
    for (int i = range.begin; i < range.end; ++i) {
        if (!(samples[i] > 0.0) || std::isnan(width))
            continue;
        const double left = x.position(i) - width * 0.5;
        painter.drawRect(
            QRectF(vertex(left, drawing.y.position(samples[i])), vertex(left + width, drawing.shape.baseRow))
                .normalized());
    }
    painter.restore();
}

template <typename Scale>
void paintCrosses(QPainter& painter, const SampleRun& samples, SampleRange range, const Scale& x, const ValueScale& y)
{
    constexpr double arm = 2.0;
    for (int i = range.begin; i < range.end; ++i) {
        const double rowOfSample = y.position(samples[i]);
        if (std::isnan(rowOfSample))
            continue;
        const QPointF centre = vertex(x.position(i), rowOfSample);
        painter.drawLine(centre + QPointF(-arm, -arm), centre + QPointF(arm, arm));
        painter.drawLine(centre + QPointF(arm, -arm), centre + QPointF(-arm, arm));
    }
}

template <typename Scale>
void paintOn(QPainter& painter, const SampleRun& samples, SampleRange range, const Scale& x,
    const CurveDrawing& drawing, double finest)
{
    if (drawing.columnChart)
        paintColumns(painter, samples, range, x, drawing);
    else if (drawing.joined)
        paintJoined(painter, samples, range, x, drawing.y, finest);
    else
        paintCrosses(painter, samples, range, x, drawing.y);
}

/// One pixel for each visible bin, the highest row on top.
QImage imageOf(const BinGeometry& view, const BinRows& rows, const ColourScale& scale)
{
    QImage image(view.x.end - view.x.first, view.y.end - view.y.first, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    const bool opaque = scale.isOpaque();
    bool isFilled = opaque;
    for (int row = view.y.first; row < view.y.end && !image.isNull(); ++row) {
        auto* const line = reinterpret_cast<QRgb*>(image.scanLine(view.y.end - 1 - row));
        const QList<double>& values = rows.at(row);
        const auto end = static_cast<int>(std::min<qsizetype>(view.x.end, values.size()));
        for (int column = view.x.first; column < end; ++column) {
            if (isEmptyBin(values.at(column)))
                isFilled = false;
            else
                line[column - view.x.first] =
                    opaque ? scale.pixel(values.at(column)) : scale.colour(values.at(column)).rgba();
        }
        isFilled = isFilled && end == view.x.end;
    }
    // A file without transparency needs no mask.
    if (isFilled)
        image.reinterpretAsFormat(QImage::Format_RGB32);
    return image;
}

} // namespace

const ExactDevice* exactDeviceBehind(const QPainter& painter)
{
    return dynamic_cast<const ExactDevice*>(painter.device());
}

void paintCurveExactly(QPainter& painter, const SampleRun& samples, SampleRange range, const CurveDrawing& drawing,
    const ExactDevice& device)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (drawing.plotX)
        paintOn(painter, samples, range, *drawing.plotX, drawing, device.finest());
    else
        paintOn(painter, samples, range, drawing.x, drawing, device.finest());
    painter.restore();
}

void paintMapExactly(QPainter& painter, const BinGeometry& view, const BinRows& rows, const ColourScale& scale)
{
    if (view.x.first >= view.x.end || view.y.first >= view.y.end || !(view.x.pixels > 0.0) || !(view.y.pixels > 0.0))
        return;
    QImage image = imageOf(view, rows, scale);
    const QRectF target(view.rect.left() + (view.x.first - view.x.low) * view.x.pixels,
        view.rect.bottom() - (view.y.end - view.y.low) * view.y.pixels, image.width() * view.x.pixels,
        image.height() * view.y.pixels);
    // Viewers smooth small images when they enlarge them, so the image is enlarged here.
    const qsizetype larger = std::max(image.width(), image.height());
    const int factor =
        static_cast<int>(std::clamp<qsizetype>(enlargedPixels / std::max<qsizetype>(larger, 1), 1, largestFactor));
    if (painter.paintEngine()->type() != QPaintEngine::Raster && factor > 1)
        image = image.scaled(image.size() * factor, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter.setRenderHint(QPainter::LosslessImageRendering);
    painter.drawImage(target, image);
    painter.restore();
}

} // namespace tarnis
