// Common behaviour of all tools for tool bars and stored views.
#include "support/support.h"
#include "support/wait.h"

#include <tarnis/foundation/translation.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/tools/plotcrosshair.h>
#include <tarnis/tools/plotmarkers.h>
#include <tarnis/tools/plotnavigator.h>

#include <QAction>
#include <QImage>
#include <QJsonArray>
#include <QTest>

using namespace tarnis;

namespace {

QAction* actionOf(const InteractiveTool& tool, const char* name)
{
    return tool.findChild<QAction*>(QLatin1String(name), Qt::FindDirectChildrenOnly);
}

/// Pixels that are not transparent.
int inkOf(const QIcon& icon, int size)
{
    const QImage image = icon.pixmap(QSize(size, size)).toImage();
    int count = 0;
    for (int row = 0; row < image.height(); ++row) {
        for (int column = 0; column < image.width(); ++column)
            count += qAlpha(image.pixel(column, row)) > 0 ? 1 : 0;
    }
    return count;
}

/// A tool of a host with a box in the upper right corner.
class CornerTool : public InteractiveTool {
public:
    explicit CornerTool(XYGraphWidget* plot)
        : InteractiveTool(plot, Nothing)
    {
    }

protected:
    QList<QRect> cornerBoxes() const override
    {
        return { QRect(PlotMapping::of(*plot()).frameRect().topRight() - QPoint(99, 0), QSize(100, 60)) };
    }
};

} // namespace

class TestInteractiveTool : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_plot = std::make_unique<VectorGraphWidget>();
        m_plot->init(QStringLiteral("Time"), QStringLiteral("Counts"), 100, 10, true, true);
        m_plot->initManualX(0, 100);
        m_plot->setData(QList<double> { 1, 5, 3, 0 });
        m_plot->setMaxValue(5);
        m_plot->m_doubleBuffered = true;
        m_plot->resize(400, 300);
        m_plot->grab();
    }

    void cleanup()
    {
        setLanguage(QLocale(QLocale::English));
        m_plot.reset();
    }

    void toolsAreListedInTheOrderOfAttachment()
    {
        auto* const cross = new PlotCrosshair(m_plot.get());
        auto* const navigator = new PlotNavigator(m_plot.get());
        QCOMPARE(InteractiveTool::toolsOf(*m_plot), (QList<InteractiveTool*> { cross, navigator }));
        delete cross;
        QCOMPARE(InteractiveTool::toolsOf(*m_plot), (QList<InteractiveTool*> { navigator }));
    }

    void namesAvoidTheCornerBoxOfAHostsTool()
    {
        PlotMarkers markers(m_plot.get());
        const PlotMapping mapping = PlotMapping::of(*m_plot);
        markers.add(mapping.valueAt(mapping.plotRect().center() + QPoint(100, 0)));
        const QRect alone = markers.overlayBoxes().value(0);
        const CornerTool tool(m_plot.get());
        const QRect corner = tool.overlayBoxes().value(0);
        QVERIFY2(alone.intersects(corner), "a name that has to move");
        QVERIFY(!markers.overlayBoxes().value(0).intersects(corner));
    }

    void actionsHaveTextIconAndShownKeys()
    {
        new PlotNavigator(m_plot.get());
        new PlotCrosshair(m_plot.get());
        for (const InteractiveTool* const tool : InteractiveTool::toolsOf(*m_plot)) {
            for (const QAction* const action : tool->actions()) {
                QVERIFY2(!action->text().isEmpty(), qPrintable(action->objectName()));
                QVERIFY2(!action->objectName().isEmpty(), qPrintable(action->text()));
                QVERIFY2(inkOf(action->icon(), 16) > 10, qPrintable(action->objectName()));
                QVERIFY2(inkOf(action->icon(), 48) > 90, qPrintable(action->objectName()));
                QCOMPARE(action->shortcutContext(), Qt::WidgetShortcut);
            }
        }
    }

    void actionsFollowTheLanguage()
    {
        const PlotCrosshair& cross = *new PlotCrosshair(m_plot.get());
        QCOMPARE(actionOf(cross, "pinCrosshair")->text(), QStringLiteral("Pin the Cross"));
        QVERIFY(setLanguage(QLocale(QLocale::German)));
        TRY_COMPARE(actionOf(cross, "pinCrosshair")->text(), QStringLiteral("Kreuz festhalten"));
    }

    void crossIsSwitchedByItsAction()
    {
        PlotCrosshair& cross = *new PlotCrosshair(m_plot.get());
        cross.setOn(false);
        QVERIFY(!actionOf(cross, "crosshair")->isChecked());
        actionOf(cross, "crosshair")->trigger();
        QVERIFY(cross.isOn());
        actionOf(cross, "pinCrosshair")->trigger();
        QVERIFY(cross.isPinned());
        QVERIFY(actionOf(cross, "copyValues")->isEnabled());
        actionOf(cross, "crosshair")->trigger();
        QVERIFY(!cross.isPinned());
        QVERIFY(!actionOf(cross, "pinCrosshair")->isChecked());
    }

    void stateOfTheCrossComesBack()
    {
        PlotCrosshair& cross = *new PlotCrosshair(m_plot.get());
        cross.pinAt({ 1.5, 2.0 });
        const QString text = cross.text();
        QVERIFY(text.contains(QStringLiteral("bin 0")));
        const QJsonObject state = cross.saveState();
        cross.setOn(false);
        cross.restoreState(state);
        QVERIFY(cross.isPinned());
        QCOMPARE(cross.text(), text);
    }

    void wrongStateChangesNothing()
    {
        PlotCrosshair& cross = *new PlotCrosshair(m_plot.get());
        cross.restoreState({ { QStringLiteral("on"), QStringLiteral("yes") },
            { QStringLiteral("pin"), QJsonArray { 1 } }, { QStringLiteral("other"), 5 } });
        QVERIFY(cross.isOn());
        QVERIFY(!cross.isPinned());
    }

private:
    std::unique_ptr<VectorGraphWidget> m_plot;
};

QTEST_MAIN(TestInteractiveTool)
#include "tst_interactivetool.moc"
