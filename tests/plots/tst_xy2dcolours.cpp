// Changing the colours of the 2D plot: palettes, the colour dialogs, the limits of the scale, the log scale.
#include "support/cases.h"
#include "support/map2dprobe.h"
#include "support/modalwatchdog.h"
#include "support/plotmouse.h"
#include "support/support.h"

#include <QColorDialog>
#include <QSignalSpy>
#include <QTest>

#include <cmath>

using namespace tarnis::testing;

namespace {

using Colours = std::array<QColor, 5>;

/// From the upper end of the scale to its lower one.
Colours scaleColours()
{
    return { XY2DGraphWidget::colMax, XY2DGraphWidget::colHalfMax, XY2DGraphWidget::colHalf,
        XY2DGraphWidget::colHalfMin, XY2DGraphWidget::colMin };
}

class Plot : public MapProbe {
public:
    using MapProbe::MapProbe;

    bool wasBarRefreshed() { return std::exchange(m_colorBar->m_refreshRequired, false); }
    QList<QColor> barColours() const { return m_colorBar->*(&BarProbe::m_colors); }
    double barMin() const { return m_colorBar->*(&BarProbe::m_min); }
    double barMax() const { return m_colorBar->*(&BarProbe::m_max); }
};

using Slot = void (XY2DGraphWidget::*)();

} // namespace

Q_DECLARE_METATYPE(Slot)

class TestXY2DColours : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        Plot plot;
        plot.onPatternRainbow1();
        XYGraphWidget::m_backGroundColor = Qt::black;
    }

    void coloursBitByBit()
    {
        std::mt19937_64 generator = seededGenerator(1);
        const auto real = [&](double low, double high) {
            return std::uniform_real_distribution<>(low, high)(generator);
        };
        Plot plot;
        MapState map;
        for (int i = 0; i < 2000; ++i) {
            plot.onLogScale(map.logScale = generator() % 2 == 0);
            plot.m_minZ = map.minZ = real(-5.0, 50.0);
            plot.m_maxZ = map.maxZ = real(-5.0, 500.0);
            for (QColor& colour : map.colors)
                colour = QColor(static_cast<QRgb>(generator()) | 0xff000000U);
            plot.updateColor(
                map.colors[4], map.colors[3], map.colors[2], map.colors[1], map.colors[0], QColor(Qt::black));
            for (int k = 0; k < 1000; ++k) {
                const double value = real(-10.0, 600.0);
                if (plot.getColor(value) != oracleColour(map, value))
                    QFAIL(qPrintable(QString::number(value, 'g', 17)));
            }
        }
    }

    void equalLimitsHaveColoursOnlyOutside()
    {
        Plot plot;
        plot.m_minZ = plot.m_maxZ = 5.0;
        QCOMPARE(plot.getColor(4.0), XY2DGraphWidget::colMin);
        QCOMPARE(plot.getColor(6.0), XY2DGraphWidget::colMax);
        QVERIFY(!plot.getColor(5.0).isValid());
        QVERIFY(!plot.getColor(std::nan("")).isValid());
        QCOMPARE(plot.getColor(-1.0), XY2DGraphWidget::colMin);
    }

    void logScaleBelowOne()
    {
        Plot plot;
        plot.onLogScale(true);
        plot.m_minZ = -5.0; // counts as 1
        plot.m_maxZ = 10000.0;
        QCOMPARE(plot.getColor(1.0), QColor("#000000"));
        QCOMPARE(plot.getColor(-7.0), QColor("#000000"));
        QCOMPARE(plot.getColor(10.0), QColor("#0000ff"));
        QCOMPARE(plot.getColor(100.0), QColor("#00ff00"));
        QCOMPARE(plot.getColor(1000.0), QColor("#ffff00"));
        QCOMPARE(plot.getColor(10000.0), QColor("#ff0000"));
        QCOMPARE(plot.getColor(0.5), QColor("#000000")); // below the lower end
    }

    void patternsSetAllFiveColours_data()
    {
        using X = XY2DGraphWidget;
        addColumns<Slot, QStringList>("slot", "colors");
        addCase("Rainbow1", Slot(&X::onPatternRainbow1),
            QStringList { "#ff0000", "#ffff00", "#00ff00", "#0000ff", "#000000" });
        addCase("Rainbow2", Slot(&X::onPatternRainbow2),
            QStringList { "#ff0000", "#ffff00", "#00ff00", "#0000ff", "#ff00ff" });
        addCase(
            "Grays", Slot(&X::onPatternGrays), QStringList { "#ffffff", "#c0c0c0", "#808080", "#404040", "#000000" });
        addCase("BlueRedGreen", Slot(&X::onPatternBlueRedGreen),
            QStringList { "#00ff00", "#808000", "#ff0000", "#800080", "#0000ff" });
        addCase("RedWhiteBlue", Slot(&X::onPatternRedWhiteBlue),
            QStringList { "#0000ff", "#8080ff", "#ffffff", "#ff8080", "#ff0000" });
        addCase("CyanMagenta", Slot(&X::onPatternCyanMagenta),
            QStringList { "#ff00ff", "#c040ff", "#8080ff", "#40c0ff", "#00ffff" });
        addCase("YellowHot", Slot(&X::onPatternYellowHot),
            QStringList { "#ffffff", "#ffff00", "#ff0000", "#800000", "#000000" });
        addCase("Blue", Slot(&X::onPatternBlue), QStringList { "#ffffff", "#c0c0ff", "#0000ff", "#000080", "#000000" });
    }
    void patternsSetAllFiveColours()
    {
        QFETCH(Slot, slot);
        QFETCH(QStringList, colors);
        XYGraphWidget::m_backGroundColor = Qt::magenta;
        Plot plot;
        plot.wasRefreshed();
        plot.wasBarRefreshed();
        QSignalSpy changed(&plot, &XY2DGraphWidget::onColorBarChanged);
        (plot.*slot)();
        Colours expected;
        std::copy(colors.begin(), colors.end(), expected.begin());
        QCOMPARE(scaleColours(), expected);
        QCOMPARE(plot.barColours(), (QList<QColor>(expected.rbegin(), expected.rend())));
        QVERIFY(plot.wasRefreshed());
        QVERIFY(!plot.wasBarRefreshed());
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed.at(0).at(0).value<XY2DGraphWidget*>(), &plot);
        QCOMPARE(XYGraphWidget::m_backGroundColor, QColor(Qt::magenta));
    }

    void patternsOfOtherPlotsAreNotEmitted()
    {
        Plot plot;
        Plot other;
        other.wasRefreshed();
        QSignalSpy changed(&other, &XY2DGraphWidget::onColorBarChanged);
        plot.onPatternGrays();
        QVERIFY(changed.isEmpty());
        QVERIFY(!other.wasRefreshed());
        QCOMPARE(other.getColor(other.m_maxZ), QColor("#ffffff")); // the colours are those of all
    }

    void reverseExchangesTheEndsOfTheScale()
    {
        Plot plot;
        plot.onPatternRainbow2();
        QSignalSpy changed(&plot, &XY2DGraphWidget::onColorBarChanged);
        plot.onColorReverse();
        QCOMPARE(scaleColours(), (Colours { "#ff00ff", "#0000ff", "#00ff00", "#ffff00", "#ff0000" }));
        QCOMPARE(changed.size(), 1);
        plot.onColorReverse();
        QCOMPARE(scaleColours(), (Colours { "#ff0000", "#ffff00", "#00ff00", "#0000ff", "#ff00ff" }));
    }

    void updateColorTakesAll()
    {
        Plot plot;
        plot.wasRefreshed();
        QSignalSpy changed(&plot, &XY2DGraphWidget::onColorBarChanged);
        QVERIFY(plot.updateColor("#010101", "#020202", "#030303", "#040404", "#050505", "#060606"));
        QCOMPARE(scaleColours(), (Colours { "#010101", "#020202", "#030303", "#040404", "#050505" }));
        QCOMPARE(XYGraphWidget::m_backGroundColor, QColor("#060606"));
        QVERIFY(plot.wasRefreshed());
        QCOMPARE(changed.size(), 1);
    }

    void updateColorRefusesAnInvalidColor_data()
    {
        QTest::addColumn<int>("which");
        QTest::newRow("max") << 0;
        QTest::newRow("half max") << 1;
        QTest::newRow("half") << 2;
        QTest::newRow("half min") << 3;
        QTest::newRow("min") << 4;
    }
    void updateColorRefusesAnInvalidColor()
    {
        QFETCH(int, which);
        Plot plot;
        plot.wasRefreshed();
        const Colours before = scaleColours();
        QList<QColor> colors(5, QColor(Qt::white));
        colors[which] = QColor();
        QSignalSpy changed(&plot, &XY2DGraphWidget::onColorBarChanged);
        QVERIFY(!plot.updateColor(colors[0], colors[1], colors[2], colors[3], colors[4], Qt::white));
        QCOMPARE(scaleColours(), before);
        QCOMPARE(XYGraphWidget::m_backGroundColor, QColor(Qt::black));
        QVERIFY(changed.isEmpty() && !plot.wasRefreshed());
    }

    void updateColorKeepsTheBackgroundForAnInvalidOne()
    {
        Plot plot;
        QVERIFY(plot.updateColor(Qt::red, Qt::red, Qt::red, Qt::red, Qt::red, QColor()));
        QCOMPARE(XYGraphWidget::m_backGroundColor, QColor(Qt::black));
        QCOMPARE(XY2DGraphWidget::colHalf, QColor(Qt::red));
    }

    void dialogsChangeOneColour_data()
    {
        using X = XY2DGraphWidget;
        addColumns<Slot, QColor*>("slot", "colour");
        QTest::newRow("Min Color") << Slot(&X::onMinColor) << &X::colMin;
        QTest::newRow("Half Min Color") << Slot(&X::onHalfMinColor) << &X::colHalfMin;
        QTest::newRow("Half Color") << Slot(&X::onHalfColor) << &X::colHalf;
        QTest::newRow("Half Max Color") << Slot(&X::onHalfMaxColor) << &X::colHalfMax;
        QTest::newRow("Max Color") << Slot(&X::onMaxColor) << &X::colMax;
        QTest::newRow("Background Color") << Slot(&X::onBackGroundColor) << &XYGraphWidget::m_backGroundColor;
    }
    void dialogsChangeOneColour()
    {
        QFETCH(Slot, slot);
        QFETCH(QColor*, colour);
        Plot plot;
        QSignalSpy changed(&plot, &XY2DGraphWidget::onColorBarChanged);
        ModalWatchdog watchdog({ [&](QWidget& window) {
            auto* dialog = qobject_cast<QColorDialog*>(&window);
            QVERIFY(dialog);
            QCOMPARE(dialog->windowTitle(), QString(QTest::currentDataTag()));
            QCOMPARE(dialog->parentWidget(), &plot);
            QCOMPARE(dialog->currentColor(), *colour);
            dialog->setCurrentColor(QColor("#123456"));
            dialog->accept();
        } });
        (plot.*slot)();
        QVERIFY(watchdog.isContent());
        QCOMPARE(*colour, QColor("#123456"));
        QCOMPARE(changed.size(), 1);
    }

    void dialogsCancelled_data() { dialogsChangeOneColour_data(); }
    void dialogsCancelled()
    {
        QFETCH(Slot, slot);
        QFETCH(QColor*, colour);
        Plot plot;
        plot.wasRefreshed();
        const QColor before = *colour;
        QSignalSpy changed(&plot, &XY2DGraphWidget::onColorBarChanged);
        ModalWatchdog watchdog({ reject() });
        (plot.*slot)();
        QVERIFY(watchdog.isContent());
        QCOMPARE(*colour, before);
        QVERIFY(changed.isEmpty() && !plot.wasRefreshed());
    }

    void dialogMayLoseItsPlot()
    {
        const QPointer<Plot> plot = new Plot;
        ModalWatchdog watchdog({ [&](QWidget&) { delete plot; } });
        plot->onMaxColor();
        QVERIFY(plot.isNull() && watchdog.isContent());
    }

    void limitsFromTheBar()
    {
        Plot plot;
        plot.onAutoScaleZToggled(false);
        plot.wasRefreshed();
        Q_EMIT plot.m_colorBar->onMaxChanged(7.0);
        QCOMPARE(plot.m_maxZ, 7.0);
        QCOMPARE(plot.barMax(), 7.0);
        QVERIFY(plot.wasRefreshed() && plot.wasBarRefreshed());
        Q_EMIT plot.m_colorBar->onMinChanged(-2.0);
        QCOMPARE(plot.m_minZ, -2.0);
        QCOMPARE(plot.barMin(), -2.0);
        QVERIFY(plot.wasRefreshed());
        double maxZ = 0.0;
        QVERIFY(!plot.getMaxZ(maxZ));
        QCOMPARE(maxZ, 7.0);
    }

    void limitsWithinTheTolerance()
    {
        Plot plot;
        plot.wasRefreshed();
        plot.onMaxZChanged(100.0);
        plot.onMaxZChanged(std::nextafter(100.0, 0.0));
        plot.onMinZChanged(1e-17);
        QVERIFY(!plot.wasRefreshed());
        QCOMPARE(plot.m_maxZ, 100.0);
        QCOMPARE(plot.m_minZ, 0.0);
    }

    void typingOnTheBar()
    {
        Plot plot;
        plot.resize(400, 300);
        plot.m_autoButton->click();
        plot.m_colorBar->getPixmap();
        const QRect label = plot.m_colorBar->*(&BarProbe::m_maxRect);
        PlotMouse(*plot.m_colorBar).click(label.center());
        auto* editor = plot.m_colorBar->findChild<QLineEdit*>();
        QVERIFY(editor);
        QVERIFY(plot.m_editingColorBar && !plot.m_finishedEditingColorBar);
        editor->setText("42");
        plot.wasRefreshed();
        QTest::keyClick(editor, Qt::Key_Return);
        QCOMPARE(plot.m_maxZ, 42.0);
        QVERIFY(plot.wasRefreshed());
        QVERIFY(!plot.m_finishedEditingColorBar); // that means: dropped without a value
    }

    void autoButton()
    {
        Plot plot;
        plot.wasRefreshed();
        plot.m_autoButton->click();
        QCOMPARE(plot.m_autoButton->text(), QString("Manual"));
        QVERIFY(!plot.m_colorBar->isAutoScale() && plot.wasRefreshed());
        plot.onAutoScaleZToggled(true);
        QCOMPARE(plot.m_autoButton->text(), QString("Auto"));
        QVERIFY(plot.m_colorBar->isAutoScale() && plot.m_autoButton->isChecked() && plot.wasRefreshed());
    }

    void automaticLimits()
    {
        Plot plot;
        plot.resize(300, 200);
        plot.setData(0, { 5.0, 70.0 }, 30.0, false); // the maximum is set by the caller
        delete plot.toPixmap();
        QCOMPARE(plot.m_minZ, 0.0);
        QCOMPARE(plot.m_maxZ, 30.0);
        QCOMPARE(plot.barMax(), 30.0);
        plot.m_autoButton->click();
        plot.setData(0, { 5.0 }, 500.0, false);
        delete plot.toPixmap();
        QCOMPARE(plot.m_maxZ, 30.0);
    }

    void automaticMinimumOfALogScale()
    {
        Plot plot;
        plot.resize(300, 200);
        plot.onLogScale(true);
        plot.init("x", "y", 4.0, 1.0, false, false);
        const auto minimumOf = [&](const QList<double>& row) {
            plot.clearData();
            plot.setData(0, row, 100.0, false);
            plot.setMinMaxX(0.0, 1.0); // the other bins are out of sight and count all the same
            delete plot.toPixmap();
            return plot.m_minZ;
        };
        QCOMPARE(minimumOf({ 5.0, 0.25, 0.0, -3.0 }), 0.25);
        QCOMPARE(minimumOf({ 5.0, 7.0 }), 1.0); // never above 1
        QCOMPARE(minimumOf({ 5.0, 1e-17 }), 1.0); // 0 within the tolerance
        QCOMPARE(minimumOf({}), 1.0);
        plot.onLogScale(false);
        QCOMPARE(minimumOf({ 5.0, 0.25 }), 0.0);
    }

    void logScaleByItsAction()
    {
        Plot plot;
        QAction* action = plot.entry("Log Scale");
        plot.wasRefreshed();
        action->setChecked(true); // checked by a program: no signal
        QVERIFY(!plot.m_logScale);
        action->setChecked(false);
        action->trigger();
        QVERIFY(action->isChecked() && plot.m_logScale && plot.wasRefreshed());
        QVERIFY(plot.m_colorBar->*(&BarProbe::m_logScale));
        QVERIFY(plot.m_cutXWindows.map.isEmpty());
    }

    void remembersThatTheColourBarIsEdited()
    {
        Plot plot;
        Q_EMIT plot.m_colorBar->beginEditingText();
        QVERIFY(plot.m_editingColorBar && !plot.m_finishedEditingColorBar);
        Q_EMIT plot.m_colorBar->EditLineDeleted();
        QVERIFY(plot.m_editingColorBar && plot.m_finishedEditingColorBar);
    }

    void pressDropsAnEditorOnTheBar()
    {
        Plot plot;
        plot.resize(400, 300);
        plot.m_autoButton->click();
        plot.m_colorBar->getPixmap();
        PlotMouse(*plot.m_colorBar).click((plot.m_colorBar->*(&BarProbe::m_minRect)).center());
        QVERIFY(plot.m_colorBar->*(&BarProbe::m_editLine));
        plot.m_cutDragEdge = 3;
        PlotMouse(plot).press(QPoint(50, 60));
        QVERIFY(!(plot.m_colorBar->*(&BarProbe::m_editLine)));
        QVERIFY(plot.m_finishedEditingColorBar);
        QCOMPARE(plot.m_pressPos, QPoint(50, 60));
        QCOMPARE(plot.m_cutDragEdge, 0);
    }

    void wideLabelsWidenTheMargin()
    {
        Plot plot;
        plot.resize(400, 300);
        plot.show();
        plot.onAutoScaleZToggled(false);
        plot.onMaxZChanged(1.0);
        QCoreApplication::processEvents();
        plot.grab();
        const int before = plot.m_margin.right();
        const int graphBefore = plot.m_graphRect.width();
        plot.onMinZChanged(-1.234567e-100);
        plot.onMaxZChanged(1.234567e+100);
        plot.grab(); // the bar requests its width while it is painted
        const int after = plot.m_margin.right();
        QVERIFY(after > before);
        QCOMPARE(plot.m_colorBar->geometry(), QRect(400 - after, 30, after, 240));
        plot.grab();
        QCOMPARE(plot.m_graphRect.width(), graphBefore - (after - before));
        QCOMPARE(plot.m_margin.right(), after);
    }
};

QTEST_MAIN(TestXY2DColours)
#include "tst_xy2dcolours.moc"
