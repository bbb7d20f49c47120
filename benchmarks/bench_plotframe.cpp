// The plot frame alone, 800 x 400: ticks, labels, names, notes and grid, against the frame drawn call by call; and a
// repaint with nothing stale against one drawPixmap(). Limit: a frame with ticks and labels takes less than 1 ms.
#include "headless.h"
#include "support/frameoracle.h"
#include "support/frameprobe.h"
#include "tarnis/plots/xygraphwidget.h"

#include <QApplication>

#include <benchmark/benchmark.h>

namespace {

constexpr QSize plotSize(800, 400);

class Plot : public tarnis::testing::FrameProbe<XYGraphWidget> {
public:
    explicit Plot(bool logScale = false)
    {
        m_doubleBuffered = true;
        init(QStringLiteral("Energy [keV]"), QStringLiteral("Counts"), 16384.0, 100000.0, true, true);
        m_logScaleY = logScale;
        setNotes(QStringLiteral("Total: 123456 / Time: 3600 s"));
        resize(plotSize);
        refresh();
    }
    void refresh()
    {
        m_refreshRequired = true;
        refreshPixmapIfRequired();
    }
};

/// The minimal widget that shows a picture.
class Picture : public QWidget {
public:
    explicit Picture(const QPixmap& pixmap)
        : m_pixmap(pixmap)
    {
        setAutoFillBackground(true); // as the plots do
        resize(plotSize);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        painter.drawPixmap(0, 0, m_pixmap);
    }

private:
    QPixmap m_pixmap;
};

void frame(benchmark::State& state, bool logScale)
{
    Plot plot(logScale);
    QImage image(plotSize, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    for (auto _ : state)
        plot.paint(painter, nullptr);
}

void frameSpeltOut(benchmark::State& state, bool logScale)
{
    const Plot plot(logScale);
    tarnis::testing::FrameState frameState = plot.frameState();
    QImage image(plotSize, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    for (auto _ : state)
        tarnis::testing::paintFrame(frameState, painter, nullptr);
}

void refreshThroughCache(benchmark::State& state)
{
    Plot plot;
    for (auto _ : state)
        plot.refresh();
}

void repaintWithNothingStale(benchmark::State& state)
{
    Plot plot;
    QImage image(plotSize, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state)
        plot.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
}

void repaintOfAPicture(benchmark::State& state)
{
    const Plot plot;
    Picture picture(plot.m_pixmap);
    QImage image(plotSize, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state)
        picture.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
}

} // namespace

int main(int argc, char** argv)
{
    prepareHeadless();
    const QApplication application(argc, argv);
    using benchmark::RegisterBenchmark;
    for (auto* entry : { RegisterBenchmark("frame/linear", frame, false),
             RegisterBenchmark("frame/linear spelt out", frameSpeltOut, false),
             RegisterBenchmark("frame/log", frame, true), RegisterBenchmark("frame/log spelt out", frameSpeltOut, true),
             RegisterBenchmark("refresh through the cache", refreshThroughCache),
             RegisterBenchmark("repaint/nothing stale", repaintWithNothingStale),
             RegisterBenchmark("repaint/one drawPixmap", repaintOfAPicture) })
        entry->Unit(benchmark::kMicrosecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
