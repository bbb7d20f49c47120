// The bar beside a plot: its actions and keys.
#include "support/support.h"
#include "support/wait.h"

#include <tarnis/foundation/translation.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/tools/binaggregation.h>
#include <tarnis/tools/plotcrosshair.h>
#include <tarnis/tools/plotnavigator.h>
#include <tarnis/tools/plottoolbar.h>

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QTest>
#include <QToolButton>

#include <algorithm>

using namespace tarnis;

namespace {

/// The names of the visible actions, "|" for a separator.
QStringList namesOf(const QWidget& widget)
{
    QStringList names;
    for (const QAction* const action : widget.actions()) {
        if (action->isVisible())
            names << (action->isSeparator() ? QStringLiteral("|") : action->objectName());
    }
    return names;
}

QAction* actionOf(const PlotToolBar& bar, const QString& name)
{
    for (QAction* const action : bar.actions()) {
        if (action->objectName() == name)
            return action;
    }
    return nullptr;
}

const QStringList navigatorNames { QStringLiteral("back"), QStringLiteral("forward"), QStringLiteral("home"),
    QStringLiteral("zoomIn"), QStringLiteral("zoomOut"), QStringLiteral("logScale"), QStringLiteral("grid") };
const QStringList plotNames { QStringLiteral("zoomRectangle"), QStringLiteral("move") };
const QStringList crossNames { QStringLiteral("crosshair"), QStringLiteral("pinCrosshair"),
    QStringLiteral("copyValues") };

} // namespace

class TestPlotToolBar : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_plot = std::make_unique<VectorGraphWidget>();
        m_plot->init(QStringLiteral("Time"), QStringLiteral("Counts"), 100, 10, true, true);
        m_plot->m_doubleBuffered = true;
        m_plot->resize(400, 300);
        m_bar = std::make_unique<PlotToolBar>(m_plot.get());
    }

    void cleanup()
    {
        setLanguage(QLocale(QLocale::English));
        m_bar.reset();
        m_plot.reset();
    }

    void collectsToolsInOrderAndFollowsThem()
    {
        const QStringList separator { QStringLiteral("|") };
        QCOMPARE(namesOf(*m_bar), plotNames);
        auto* const navigator = new PlotNavigator(m_plot.get());
        TRY_COMPARE(namesOf(*m_bar), plotNames + separator + navigatorNames);
        new PlotCrosshair(m_plot.get());
        TRY_COMPARE(namesOf(*m_bar), plotNames + separator + navigatorNames + separator + crossNames);
        delete navigator;
        TRY_COMPARE(namesOf(*m_bar), plotNames + separator + crossNames);
    }

    void hostActionsStayAtTheEnd()
    {
        m_bar->addAction(QStringLiteral("Save"))->setObjectName(QStringLiteral("save"));
        QCOMPARE(namesOf(*m_bar), (plotNames + QStringList { QStringLiteral("|"), QStringLiteral("save") }));
        new PlotCrosshair(m_plot.get());
        TRY_COMPARE(namesOf(*m_bar),
            (plotNames + QStringList { QStringLiteral("|") } + crossNames
                + QStringList { QStringLiteral("|"), QStringLiteral("save") }));
        delete actionOf(*m_bar, QStringLiteral("save"));
        QCOMPARE(namesOf(*m_bar), (plotNames + QStringList { QStringLiteral("|") } + crossNames));
    }

    void menuHasTheSameActions()
    {
        m_bar->addAction(QStringLiteral("Save"))->setObjectName(QStringLiteral("save"));
        new PlotNavigator(m_plot.get());
        TRY_VERIFY(namesOf(*m_bar).contains(QStringLiteral("home")));
        QCOMPARE(m_bar->menu()->actions(), m_bar->actions());
    }

    void mouseToolsOfThePlotAreMirrored()
    {
        QAction* const rectangle = actionOf(*m_bar, QStringLiteral("zoomRectangle"));
        QAction* const move = actionOf(*m_bar, QStringLiteral("move"));
        rectangle->trigger();
        QVERIFY(rectangle->isChecked());
        move->trigger();
        QVERIFY(move->isChecked());
        QVERIFY(!rectangle->isChecked());
        move->trigger();
        QVERIFY(!move->isChecked());
    }

    void buttonsHaveNamesAndKeys()
    {
        new PlotNavigator(m_plot.get());
        TRY_VERIFY(actionOf(*m_bar, QStringLiteral("grid")) != nullptr);
        QAction* const grid = actionOf(*m_bar, QStringLiteral("grid"));
        const QWidget* const button = m_bar->widgetForAction(grid);
        QCOMPARE(button->accessibleName(), QStringLiteral("Grid"));
        QCOMPARE(button->toolTip(), QStringLiteral("Grid (G)"));
        QVERIFY(!m_bar->accessibleName().isEmpty());
    }

    void disabledButtonsSayWhy()
    {
        auto* const navigator = new PlotNavigator(m_plot.get());
        TRY_VERIFY(actionOf(*m_bar, QStringLiteral("back")) != nullptr);
        QAction* const back = actionOf(*m_bar, QStringLiteral("back"));
        const QWidget* const button = m_bar->widgetForAction(back);
        const QString reason = QStringLiteral("There is no earlier view.");
        QVERIFY(!back->isEnabled());
        QVERIFY(button->toolTip().endsWith(u'\n' + reason));
        QVERIFY(button->accessibleDescription().endsWith(reason));
        navigator->zoomIn();
        QVERIFY(back->isEnabled());
        QVERIFY(!button->toolTip().contains(reason));
        navigator->goBack();
        QVERIFY(button->toolTip().endsWith(reason));
    }

    void followsTheLanguage()
    {
        m_bar->show();
        new PlotNavigator(m_plot.get());
        TRY_VERIFY(actionOf(*m_bar, QStringLiteral("grid")) != nullptr);
        QVERIFY(setLanguage(QLocale(QLocale::German)));
        QAction* const grid = actionOf(*m_bar, QStringLiteral("grid"));
        TRY_COMPARE(m_bar->widgetForAction(grid)->accessibleName(), QStringLiteral("Gitter"));
        QCOMPARE(m_bar->widgetForAction(grid)->toolTip(), QStringLiteral("Gitter (G)"));
        TRY_COMPARE(actionOf(*m_bar, QStringLiteral("move"))->text(), QStringLiteral("Mit der Maus verschieben"));
        QCOMPARE(m_bar->windowTitle(), QStringLiteral("Werkzeuge des Diagramms"));
    }

    void arrowsMoveTheFocusAndTabLeaves()
    {
        new PlotCrosshair(m_plot.get());
        TRY_VERIFY(actionOf(*m_bar, QStringLiteral("crosshair")) != nullptr);
        const auto button = [this](const char* name) {
            return m_bar->widgetForAction(actionOf(*m_bar, QLatin1String(name)));
        };
        m_bar->resize(600, 40);
        m_bar->show();
        m_bar->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_bar.get()));
        int stops = 0;
        for (const QToolButton* const each : m_bar->findChildren<QToolButton*>())
            stops += each->isVisible() && each->focusPolicy() != Qt::NoFocus ? 1 : 0;
        QCOMPARE(stops, 1);
        button("zoomRectangle")->setFocus();
        QTest::keyClick(button("zoomRectangle"), Qt::Key_Right);
        QVERIFY(button("move")->hasFocus());
        QTest::keyClick(button("move"), Qt::Key_Right);
        QVERIFY(button("crosshair")->hasFocus());
        QTest::keyClick(button("crosshair"), Qt::Key_Space);
        QVERIFY(!actionOf(*m_bar, QStringLiteral("crosshair"))->isChecked());
        QTest::keyClick(button("crosshair"), Qt::Key_End); // the copy has nothing to copy
        QVERIFY(button("pinCrosshair")->hasFocus());
        QTest::keyClick(button("pinCrosshair"), Qt::Key_Right);
        QVERIFY(button("zoomRectangle")->hasFocus());
    }

    void clickLeavesTheFocusWithThePlot()
    {
        QWidget window;
        m_plot->setParent(&window);
        m_bar->setParent(&window);
        m_bar->resize(300, 30);
        new PlotNavigator(m_plot.get());
        TRY_VERIFY(actionOf(*m_bar, QStringLiteral("grid")) != nullptr);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        m_plot->setFocus();
        QAction* const grid = actionOf(*m_bar, QStringLiteral("grid"));
        const bool wasShown = grid->isChecked();
        QTest::mouseClick(m_bar->widgetForAction(grid), Qt::LeftButton);
        QCOMPARE(grid->isChecked(), !wasShown);
        QVERIFY(m_plot->hasFocus());
        m_plot->setParent(nullptr);
        m_bar->setParent(nullptr);
    }

    void aClickOpensTheMenuOfAnAction()
    {
        new BinAggregation(m_plot.get());
        TRY_VERIFY(actionOf(*m_bar, QStringLiteral("binAggregation")) != nullptr);
        QAction* const choose = actionOf(*m_bar, QStringLiteral("binAggregation"));
        QMenu* const menu = choose->menu();
        int shown = 0;
        connect(menu, &QMenu::aboutToShow, this, [&shown] { ++shown; });
        connect(menu, &QMenu::aboutToShow, menu, &QWidget::close, Qt::QueuedConnection);
        m_bar->resize(600, 30);
        m_bar->show();
        QTest::mouseClick(m_bar->widgetForAction(choose), Qt::LeftButton, {}, { 6, 6 });
        QCOMPARE(shown, 1);
        QTest::keyClick(m_bar->widgetForAction(choose), Qt::Key_Space);
        QCOMPARE(shown, 2);
    }

    void theExtensionIsReadableOnDarkBars()
    {
        const QPalette light = QApplication::palette();
        QApplication::setPalette(QPalette(QColor(45, 45, 45)));
        new PlotNavigator(m_plot.get());
        TRY_VERIFY(actionOf(*m_bar, QStringLiteral("grid")) != nullptr);
        m_bar->resize(120, 30);
        m_bar->show();
        const auto contrast = [this] {
            const QImage button =
                m_bar->findChild<QToolButton*>(QStringLiteral("qt_toolbar_ext_button"))->grab().toImage();
            int lightest = 0;
            int darkest = 255;
            for (int y = 3; y < button.height() - 3; ++y) {
                for (int x = 3; x < button.width() - 3; ++x) {
                    lightest = std::max(lightest, button.pixelColor(x, y).lightness());
                    darkest = std::min(darkest, button.pixelColor(x, y).lightness());
                }
            }
            return lightest - darkest;
        };
        const int horizontal = contrast();
        m_bar->setOrientation(Qt::Vertical);
        m_bar->resize(30, 120);
        const int vertical = contrast();
        QApplication::setPalette(light);
        QVERIFY2(horizontal > 100 && vertical > 100, qPrintable(QStringLiteral("%1 %2").arg(horizontal).arg(vertical)));
    }

    void outlivesThePlot()
    {
        new PlotNavigator(m_plot.get());
        TRY_VERIFY(namesOf(*m_bar).contains(QStringLiteral("grid")));
        m_plot.reset();
        QCOMPARE(namesOf(*m_bar), QStringList());
        QVERIFY(m_bar->plot() == nullptr);
        QTest::ignoreMessage(QtWarningMsg, "PlotToolBar: a tool bar without a plot stays empty");
        const PlotToolBar empty(nullptr);
        QCOMPARE(namesOf(empty), QStringList());
    }

    void toolDeletedInItsOwnAction()
    {
        auto* const cross = new PlotCrosshair(m_plot.get());
        TRY_VERIFY(actionOf(*m_bar, QStringLiteral("crosshair")) != nullptr);
        connect(cross, &PlotCrosshair::onChanged, cross, &QObject::deleteLater);
        actionOf(*m_bar, QStringLiteral("crosshair"))->trigger();
        TRY_COMPARE(namesOf(*m_bar), plotNames);
    }

private:
    std::unique_ptr<VectorGraphWidget> m_plot;
    std::unique_ptr<PlotToolBar> m_bar;
};

QTEST_MAIN(TestPlotToolBar)
#include "tst_plottoolbar.moc"
