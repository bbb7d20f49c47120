// Tools that move repaint only what changes: the screen then shows the pixels of a complete repaint.
#include "support/randomcases.h"
#include "support/support.h"
#include "support/visibleplot.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/binaggregation.h>
#include <tarnis/tools/errorbars.h>
#include <tarnis/tools/lineprofile.h>
#include <tarnis/tools/plotcrosshair.h>
#include <tarnis/tools/plotlegend.h>
#include <tarnis/tools/plotmarkers.h>
#include <tarnis/tools/plotnavigator.h>
#include <tarnis/tools/plotruler.h>
#include <tarnis/tools/plotstyle.h>
#include <tarnis/tools/referencecurves.h>

#include <QAction>
#include <QApplication>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QScreen>
#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <memory>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

constexpr int columns = 900;
constexpr int rows = 60;

std::unique_ptr<XYGraphWidget> curves()
{
    auto plot = std::make_unique<MultiVectorGraphWidget>();
    plot->m_groupSize = 1;
    plot->init(QStringLiteral("Channel"), QStringLiteral("Counts"), 0, 0, true, true);
    plot->initManualX(0, columns);
    auto random = seededGenerator(11);
    for (int i = 0; i < 3; ++i) {
        QList<double> values(columns);
        for (double& value : values)
            value = whole(random, 0, 100 * (i + 1));
        plot->setData(i, values, 300.0);
    }
    return plot;
}

std::unique_ptr<XYGraphWidget> map()
{
    auto plot = std::make_unique<XY2DGraphWidget>();
    plot->init(QStringLiteral("x"), QStringLiteral("y"), columns, rows, true, true);
    plot->initManualX(0, columns);
    plot->initManualY(0, rows);
    auto random = seededGenerator(12);
    for (int row = 0; row < rows; ++row) {
        QList<double> bins(columns);
        for (double& bin : bins)
            bin = whole(random, 0, 50);
        plot->setData(row, bins, 50.0, row == rows - 1);
    }
    return plot;
}

/// Area of the last repaint of a widget, as a fraction of it.
class PaintWatch : public QObject {
public:
    explicit PaintWatch(QWidget& widget)
        : QObject(&widget)
    {
        widget.installEventFilter(this);
    }
    double share = 0.0;

    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            double painted = 0.0;
            for (const QRect& part : static_cast<QPaintEvent*>(event)->region())
                painted += double(part.width()) * part.height();
            const auto* const widget = static_cast<QWidget*>(object);
            share = painted / (double(widget->width()) * widget->height());
        }
        return QObject::eventFilter(object, event);
    }
};

void moveTo(XYGraphWidget& plot, const QPointF& at, Qt::MouseButtons buttons = Qt::NoButton)
{
    QMouseEvent event(QEvent::MouseMove, at, plot.mapToGlobal(at), Qt::NoButton, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(&plot, &event);
}

QImage screenOf(const QWidget& widget)
{
    return widget.screen()->grabWindow(widget.winId()).toImage();
}

/// A complete repaint, to another place.
QImage pictureOf(QWidget& widget)
{
    return widget.grab().toImage().convertToFormat(screenOf(widget).format());
}

/// Of a channel of a pixel; 255 for pictures of different sizes.
int largestDifference(const QImage& a, const QImage& b)
{
    if (a.size() != b.size())
        return 255;
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QColor one = a.pixelColor(x, y);
            const QColor other = b.pixelColor(x, y);
            largest = std::max({ largest, std::abs(one.red() - other.red()), std::abs(one.green() - other.green()),
                std::abs(one.blue() - other.blue()) });
        }
    }
    return largest;
}

struct Tools {
    explicit Tools(XYGraphWidget& plot)
        : navigator(new PlotNavigator(&plot))
        , cross(new PlotCrosshair(&plot))
        , markers(new PlotMarkers(&plot))
        , ruler(new PlotRuler(&plot))
    {
        if (auto* const map = qobject_cast<XY2DGraphWidget*>(&plot)) {
            profile = new LineProfile(map);
            profile->profilePlot()->setWindowFlags(Qt::Widget); // not a window of its own, above this one
            return;
        }
        new PlotLegend(&plot);
        (new ErrorBars(&plot))->setOn(true);
        (new ReferenceCurves(&plot))->freeze(QStringLiteral("before"));
        (new BinAggregation(&plot))->setMethod(BinAggregation::Method::Mean);
    }
    PlotNavigator* navigator;
    PlotCrosshair* cross;
    PlotMarkers* markers;
    PlotRuler* ruler;
    LineProfile* profile = nullptr;
};

QPointF valueIn(const XYGraphWidget& plot, Generator& random)
{
    const QRect rect = PlotMapping::of(plot).plotRect();
    return PlotMapping::of(plot).valueAt(
        QPointF(whole(random, rect.left() - 40, rect.right() + 40), whole(random, rect.top(), rect.bottom())));
}

/// Anything that moves a tool.
void step(XYGraphWidget& plot, Tools& tools, Generator& random)
{
    if (tools.profile != nullptr && chance(random, 0.2)) {
        tools.profile->setOn(chance(random, 0.9));
        tools.profile->setBandWidth(whole(random, 1, 30));
        tools.profile->setLine(valueIn(plot, random), valueIn(plot, random));
    }
    switch (whole(random, 0, 9)) {
    case 0:
        tools.ruler->setEnds(valueIn(plot, random), valueIn(plot, random));
        break;
    case 1:
        tools.ruler->clear();
        break;
    case 2:
        tools.markers->add(valueIn(plot, random));
        break;
    case 3:
        tools.markers->move(QStringLiteral("A"), valueIn(plot, random));
        break;
    case 4:
        tools.cross->pinAt(valueIn(plot, random));
        break;
    case 5:
        tools.cross->release();
        break;
    default:
        moveTo(plot, QPointF(whole(random, 0, plot.width()), whole(random, 0, plot.height())));
    }
}

} // namespace

class TestOverlayAreas : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void showsThePixelsOfACompleteRepaint_data()
    {
        QTest::addColumn<bool>("isMap");
        QTest::addColumn<bool>("hasStyle");
        QTest::addColumn<double>("rotation");
        QTest::newRow("curves") << false << false << 0.0;
        QTest::newRow("curves with a style") << false << true << 0.0;
        QTest::newRow("map") << true << false << 0.0;
        QTest::newRow("map with a style") << true << true << 0.0;
        QTest::newRow("turned curves") << false << false << 90.0;
    }
    void showsThePixelsOfACompleteRepaint()
    {
        QFETCH(bool, isMap);
        QFETCH(bool, hasStyle);
        QFETCH(double, rotation);
        const std::unique_ptr<XYGraphWidget> plot = isMap ? map() : curves();
        plot->m_doubleBuffered = true;
        plot->m_rotation = rotation;
        plot->resize(500, 360);
        if (hasStyle)
            new PlotStyle(plot.get());
        Tools tools(*plot);
        showActive(*plot);
        QCoreApplication::processEvents();
        auto random = seededGenerator(13);
        for (int round = 0; round < 120; ++round) {
            step(*plot, tools, random);
            QCoreApplication::processEvents();
            // A text that makes room for another tool follows in the next frame.
            TRY_COMPARE(screenOf(*plot), pictureOf(*plot));
        }
    }

    /// The rubber band has the colours of a plot without tools, and its drag repaints only what it changes.
    void rubberBandLooksAsWithoutTools()
    {
        const std::unique_ptr<XYGraphWidget> bare = map();
        const std::unique_ptr<XYGraphWidget> plot = map();
        new PlotNavigator(plot.get());
        for (XYGraphWidget* const each : { bare.get(), plot.get() }) {
            each->m_doubleBuffered = true;
            each->resize(700, 500);
            showActive(*each);
            const QList<QAction*> actions = each->actions();
            const auto zoom = std::find_if(actions.begin(), actions.end(),
                [](const QAction* action) { return action->text() == QLatin1String("Rectangle"); });
            QVERIFY(zoom != actions.end());
            (*zoom)->trigger();
            const QPointF from = PlotMapping::of(*each).plotRect().topLeft() + QPoint(100, 20);
            QMouseEvent press(QEvent::MouseButtonPress, from, each->mapToGlobal(from), Qt::LeftButton, Qt::LeftButton,
                Qt::NoModifier);
            QCoreApplication::sendEvent(each, &press);
            moveTo(*each, from + QPointF(260, 330), Qt::LeftButton);
            QCoreApplication::processEvents();
        }
        const PaintWatch watch(*plot);
        for (XYGraphWidget* const each : { bare.get(), plot.get() }) {
            moveTo(*each, PlotMapping::of(*each).plotRect().topLeft() + QPointF(300, 340), Qt::LeftButton);
            QCoreApplication::processEvents();
        }
        TRY_VERIFY(largestDifference(screenOf(*plot), pictureOf(*bare)) <= 3);
        QVERIFY2(watch.share > 0.0 && watch.share < 0.5, qPrintable(QString::number(watch.share)));
    }

    void repaintsLittleForAMove_data()
    {
        QTest::addColumn<bool>("isMap");
        QTest::newRow("curves") << false;
        QTest::newRow("map") << true;
    }
    void repaintsLittleForAMove()
    {
        QFETCH(bool, isMap);
        const std::unique_ptr<XYGraphWidget> plot = isMap ? map() : curves();
        plot->m_doubleBuffered = true;
        plot->resize(700, 500);
        Tools tools(*plot);
        showActive(*plot);
        tools.ruler->setEnds({ 10, 5 }, { 800, 50 });
        moveTo(*plot, { 300, 200 });
        QCoreApplication::processEvents();
        const PaintWatch watch(*plot);
        moveTo(*plot, { 340, 220 });
        QCoreApplication::processEvents();
        QVERIFY2(watch.share > 0.0 && watch.share < 0.3, qPrintable(QString::number(watch.share)));
        tools.ruler->setEnds({ 10, 5 }, { 780, 40 });
        QCoreApplication::processEvents();
        QVERIFY2(watch.share > 0.0 && watch.share < 0.4, qPrintable(QString::number(watch.share)));
    }
};

QTEST_MAIN(TestOverlayAreas)
#include "tst_overlayareas.moc"
