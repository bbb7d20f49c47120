// Selecting an X range: the two menu entries, the floating box, the lines on the plot, the signals and the log.
#include "support/frameprobe.h"
#include "support/logfile.h"
#include "support/plotmouse.h"
#include "support/wait.h"
#include "tarnis/plots/xrangeinputdialog.h"

#include <tarnis/plots/xygraphwidget.h>

#include <QLabel>
#include <QPaintEvent>
#include <QPointer>
#include <QSignalSpy>

#include <cmath>

namespace {

class Plot : public tarnis::testing::FrameProbe<XYGraphWidget> {
public:
    explicit Plot(QWidget* parent = nullptr)
        : FrameProbe(parent)
    {
        m_doubleBuffered = true;
        init(QStringLiteral("x"), QStringLiteral("y"), 1000.0, 100.0, true, true);
        resize(500, 400);
        m_refreshRequired = true;
        refreshPixmapIfRequired();
    }
    void paintEvent(QPaintEvent* event) override
    {
        ++paintEvents;
        XYGraphWidget::paintEvent(event);
    }

    int paintEvents = 0;
};

QLineEdit* editOf(const Plot& plot, const char* name)
{
    return plot.m_xRangeDialog->findChild<QLineEdit*>(QString::fromLatin1(name));
}

void enter(QLineEdit* edit, const QString& text)
{
    edit->selectAll();
    QTest::keyClicks(edit, text);
    QTest::keyClick(edit, Qt::Key_Return);
}

using Range = QPair<double, double>;

Range rangeOf(const Plot& plot)
{
    Range range { -1.0, -1.0 };
    const bool exists = plot.GetXRange(range.first, range.second);
    return exists ? range : Range();
}

} // namespace

class TestXYGraphRange : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void featureIsHiddenAtFirst()
    {
        const Plot plot;
        QVERIFY(!plot.IsEnableSelectXRangeFeature());
        QVERIFY(!plot.IsEnableSelectXRange());
        QVERIFY(!plot.m_actClearXRange->isVisible() && !plot.m_actClearXRange->isEnabled());
        QCOMPARE(rangeOf(plot), Range());
    }

    void featureShowsAndNamesItsEntries()
    {
        Plot plot;
        plot.SetEnableSelectXRangeFeature(true, "TOF");
        QVERIFY(plot.IsEnableSelectXRangeFeature());
        QCOMPARE(plot.m_actSelectXRange->text(), QString("Select TOF Range"));
        QCOMPARE(plot.m_actClearXRange->text(), QString("Clear TOF Range"));
        QCOMPARE(plot.m_xRangeName, QString("TOF"));
        plot.SetEnableSelectXRangeFeature(false, "Mass");
        QVERIFY(!plot.IsEnableSelectXRangeFeature() && !plot.m_actClearXRange->isVisible());
        QCOMPARE(plot.m_actSelectXRange->text(), QString("Select Mass Range"));
    }

    void clearIsDisabledUntilThereIsARange()
    {
        Plot plot;
        plot.SetEnableSelectXRangeFeature(true, "X");
        QVERIFY(plot.m_actSelectXRange->isEnabled());
        QVERIFY(plot.m_actClearXRange->isVisible() && !plot.m_actClearXRange->isEnabled());
        plot.SetXRange(10.0, 20.0);
        QVERIFY(plot.m_actClearXRange->isEnabled());
        plot.SetXRange(20.0, 20.0);
        QVERIFY(!plot.m_actClearXRange->isEnabled());
    }

    void clearIsEnabledByARangeSetWhileHidden()
    {
        Plot plot;
        plot.SetXRange(10.0, 20.0);
        plot.SetEnableSelectXRangeFeature(true, "X");
        QVERIFY(plot.m_actClearXRange->isEnabled());
    }

    void checkingRunsTheSlot()
    {
        Plot plot;
        QSignalSpy begin(&plot, &XYGraphWidget::xRangeSelectBegin);
        QSignalSpy end(&plot, &XYGraphWidget::xRangeSelectEnd);
        plot.SetEnableSelectXRange(true);
        QVERIFY(plot.IsEnableSelectXRange());
        QCOMPARE(begin.count(), 1);
        plot.SetEnableSelectXRange(true);
        QCOMPARE(begin.count(), 1);
        plot.SetEnableSelectXRange(false);
        QCOMPARE(end.count(), 1);
    }

    void boxOpensEmptyAndNamed()
    {
        Plot plot;
        plot.SetEnableSelectXRangeFeature(true, "TOF");
        plot.SetXRange(5.0, 6.0); // selected earlier: not shown
        plot.SetEnableSelectXRange(true);
        const XRangeInputDialog* box = plot.m_xRangeDialog;
        QVERIFY(box != nullptr && box->isVisible() && box->isWindow());
        QCOMPARE(box->parentWidget(), &plot);
        QCOMPARE(box->findChild<QLabel*>("xMinLabel")->text(), QString("TOF-min"));
        QCOMPARE(box->findChild<QLabel*>("xMaxLabel")->text(), QString("TOF-max"));
        QVERIFY(editOf(plot, "xMinEdit")->text().isEmpty());
        QVERIFY(editOf(plot, "xMaxEdit")->text().isEmpty());
        plot.SetXRange(1.0 / 3.0, 7.0);
        QCOMPARE(editOf(plot, "xMinEdit")->text(), QString("0.333333333")); // 'g', 9
    }

    void boxDocksToTheRightOfTheParent()
    {
        QWidget window;
        window.setGeometry(100, 80, 600, 500);
        QWidget pane(&window);
        pane.setGeometry(30, 40, 520, 420);
        Plot plot(&pane);
        window.show();
        plot.SetEnableSelectXRange(true);
        QCOMPARE(plot.m_xRangeDialog->pos(), QPoint(30 + 519, 40)); // the parent widget's frame, not the window's
    }

    void boxDocksToAPlotWithoutAParent()
    {
        Plot plot;
        plot.move(50, 60);
        plot.show();
        plot.SetEnableSelectXRange(true);
        QCOMPARE(plot.m_xRangeDialog->pos(), plot.frameGeometry().topRight());
    }

    void boxFollowsTheOwner()
    {
        QWidget window;
        window.setGeometry(100, 80, 600, 500);
        Plot plot(&window);
        window.show();
        plot.SetEnableSelectXRange(true);
        window.move(200, 180);
        QVERIFY(plot.m_xRangeDialog->pos() != window.frameGeometry().topRight());
        plot.onParentMoved();
        QCOMPARE(plot.m_xRangeDialog->pos(), window.frameGeometry().topRight());
        plot.onParentActivate(); // raises the box, which cannot be observed here
        QVERIFY(plot.m_xRangeDialog->isVisible());
    }

    void ownerCallsWithoutABoxDoNothing()
    {
        Plot plot;
        plot.onParentMoved();
        plot.onParentActivate();
        QVERIFY(plot.m_xRangeDialog == nullptr);
    }

    void beginComesWithTheBoxReady()
    {
        Plot plot;
        bool ready = false;
        connect(&plot, &XYGraphWidget::xRangeSelectBegin, this, [&] {
            ready = plot.m_xRangeDialog != nullptr && plot.m_xRangeDialog->isVisible() && plot.m_mode == 1;
            plot.SetXRange(3.0, 4.0); // a host may fill the box now
        });
        plot.SetEnableSelectXRange(true);
        QVERIFY(ready);
        QCOMPARE(editOf(plot, "xMaxEdit")->text(), QString("4"));
        QCOMPARE(plot.cursor().shape(), Qt::CrossCursor);
    }

    void endComesWhileTheBoxIsStillThere()
    {
        Plot plot;
        plot.SetEnableSelectXRange(true);
        const QPointer<QWidget> box = plot.m_xRangeDialog;
        bool there = false;
        connect(&plot, &XYGraphWidget::xRangeSelectEnd, this,
            [&] { there = plot.m_xRangeDialog != nullptr && plot.m_mode == 0; });
        plot.SetEnableSelectXRange(false);
        QVERIFY(there);
        QVERIFY(plot.m_xRangeDialog == nullptr);
        TRY_VERIFY(box.isNull());
        QCOMPARE(plot.cursor().shape(), Qt::ArrowCursor);
    }

    void selectingExcludesTheOtherTools()
    {
        Plot plot;
        for (QAction* tool : { plot.m_actRectangle, plot.m_actZoomIn, plot.m_actZoomOut, plot.m_actMove }) {
            tool->trigger();
            plot.SetEnableSelectXRange(true);
            QVERIFY(!tool->isChecked());
            QCOMPARE(plot.m_mode, 1);
            plot.SetEnableSelectXRange(false);
        }
    }

    void anotherToolEndsTheSelection()
    {
        Plot plot;
        for (QAction* tool : { plot.m_actRectangle, plot.m_actZoomIn, plot.m_actZoomOut, plot.m_actMove }) {
            plot.SetEnableSelectXRange(true);
            QSignalSpy end(&plot, &XYGraphWidget::xRangeSelectEnd);
            tool->trigger();
            QVERIFY(!plot.IsEnableSelectXRange());
            QCOMPARE(end.count(), 1);
            QVERIFY(plot.m_xRangeDialog == nullptr);
            tool->trigger();
        }
    }

    void switchingOffInsideOnSurvives()
    {
        class Refusing : public Plot {
        public:
            void onSelectXRange(bool checked) override
            {
                if (checked)
                    m_actSelectXRange->setChecked(false); // re-enters with false, there is no box
                else
                    XYGraphWidget::onSelectXRange(false);
            }
        };
        Refusing plot;
        QSignalSpy end(&plot, &XYGraphWidget::xRangeSelectEnd);
        plot.SetEnableSelectXRange(true);
        QVERIFY(!plot.IsEnableSelectXRange());
        QCOMPARE(end.count(), 1);
    }

    void askingTwiceLeavesOneBox()
    {
        Plot plot;
        plot.onSelectXRange(true);
        plot.onSelectXRange(true);
        TRY_COMPARE(plot.findChildren<XRangeInputDialog*>().size(), 1);
        QCOMPARE(plot.findChild<XRangeInputDialog*>(), plot.m_xRangeDialog);
    }

    void boxIsDestroyedWithThePlot()
    {
        auto plot = std::make_unique<Plot>();
        plot->SetEnableSelectXRange(true);
        const QPointer<QWidget> box = plot->m_xRangeDialog;
        plot.reset();
        QVERIFY(box.isNull());
    }

    void setStoresInOrder()
    {
        Plot plot;
        QSignalSpy selected(&plot, &XYGraphWidget::xRangeSelected);
        plot.SetXRange(5.0, 3.0);
        QCOMPARE(rangeOf(plot), Range(3.0, 5.0));
        QCOMPARE(selected, (QList<QVariantList> { { 3.0, 5.0 } }));
        plot.onTofRangeEdited(9.0, 8.0);
        QCOMPARE(rangeOf(plot), Range(8.0, 9.0));
    }

    void setFillsTheBoxEvenIfUnchanged()
    {
        Plot plot;
        plot.SetXRange(3.0, 5.0);
        plot.SetEnableSelectXRange(true);
        QSignalSpy selected(&plot, &XYGraphWidget::xRangeSelected);
        plot.SetXRange(5.0, 3.0);
        QCOMPARE(editOf(plot, "xMinEdit")->text(), QString("3"));
        QCOMPARE(editOf(plot, "xMaxEdit")->text(), QString("5"));
        QCOMPARE(selected.count(), 0);
    }

    void settingTheStoredValuesEmitsNothing()
    {
        Plot plot;
        QSignalSpy selected(&plot, &XYGraphWidget::xRangeSelected);
        plot.SetXRange(0.0, 0.0);
        QCOMPARE(selected.count(), 0);
        plot.SetXRange(0.3, 0.7);
        QCOMPARE(selected.count(), 1);
        plot.SetXRange(0.1 + 0.2, 0.7); // equal within the tolerance
        QCOMPARE(selected.count(), 1);
        plot.SetXRange(0.3, 0.8); // one of them is enough
        QCOMPARE(selected.count(), 2);
    }

    void setRepaintsAtOnceWithoutANewPicture()
    {
        Plot plot;
        plot.show();
        QVERIFY(QTest::qWaitForWindowExposed(&plot));
        QSignalSpy painting(&plot, &XYGraphWidget::painting);
        TRY_VERIFY(plot.paintEvents > 0);
        const int before = plot.paintEvents;
        int atSignal = 0;
        connect(&plot, &XYGraphWidget::xRangeSelected, this, [&] { atSignal = plot.paintEvents; });
        plot.SetXRange(100.0, 200.0);
        QCOMPARE(atSignal, before);
        QCOMPARE(plot.paintEvents, before + 1);
        QVERIFY(!plot.m_refreshRequired);
        QCOMPARE(painting.count(), 0);
    }

    void oddRangesAreHarmless()
    {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        Plot plot;
        plot.show();
        QVERIFY(QTest::qWaitForWindowExposed(&plot));
        plot.SetEnableSelectXRange(true);
        const double odd[] = { infinity, -infinity, std::nan(""), 1e308, -1e308, 5e-324, 0.0 };
        for (const double min : odd) {
            for (const double max : odd) {
                plot.SetXRange(min, max);
                plot.repaint();
            }
        }
        plot.setMinMaxX(3.0, 3.0);
        plot.SetXRange(1.0, 2.0);
        plot.repaint();
        QCOMPARE(rangeOf(plot), Range(1.0, 2.0));
    }

    void clearAlwaysEmits()
    {
        Plot plot;
        plot.SetEnableSelectXRangeFeature(true, "X");
        QSignalSpy cleared(&plot, &XYGraphWidget::xRangeSelectClear);
        QSignalSpy selected(&plot, &XYGraphWidget::xRangeSelected);
        plot.onClearXRange();
        QCOMPARE(cleared.count(), 1);
        QCOMPARE(selected.count(), 0);
        plot.SetXRange(1.0, 2.0);
        tarnis::testing::PlotMouse mouse(plot);
        QVERIFY(mouse.pick("Clear X Range"));
        QCOMPARE(cleared.count(), 2);
        QCOMPARE(selected.last(), (QVariantList { 0.0, 0.0 }));
        QCOMPARE(rangeOf(plot), Range());
        QVERIFY(!mouse.pick("Clear X Range")); // disabled now
    }

    void rangeStaysAfterTheToolIsOff()
    {
        Plot plot;
        plot.SetEnableSelectXRange(true);
        plot.SetXRange(1.0, 2.0);
        plot.SetEnableSelectXRange(false);
        QCOMPARE(rangeOf(plot), Range(1.0, 2.0));
    }

    void bandSelects()
    {
        Plot plot;
        plot.show();
        plot.SetEnableSelectXRangeFeature(true, "X");
        tarnis::testing::PlotMouse mouse(plot);
        QVERIFY(mouse.pick("Select X Range"));
        QSignalSpy selected(&plot, &XYGraphWidget::xRangeSelected);
        const QRect graph = plot.m_graphRect;
        mouse.drag(QPoint(graph.left() + 50, graph.center().y()), QPoint(graph.left() + 149, graph.center().y() + 5));
        QCOMPARE(selected.count(), 1);
        QCOMPARE(selected.first().at(0).toDouble(), 50.0 * 1000.0 / graph.width());
        QVERIFY(qFuzzyCompare(selected.first().at(1).toDouble(), 150.0 * 1000.0 / graph.width()));
        QCOMPARE(plot.m_maxX, 1000.0); // it selects, it does not zoom
        QVERIFY(plot.m_autoScaleX);
        QCOMPARE(editOf(plot, "xMinEdit")->text(), QString::number(50.0 * 1000.0 / graph.width(), 'g', 9));
    }

    void boxSelects()
    {
        Plot plot;
        plot.SetEnableSelectXRange(true);
        QSignalSpy selected(&plot, &XYGraphWidget::xRangeSelected);
        enter(editOf(plot, "xMinEdit"), "100");
        // The maximum is still 0: the pair is sorted, and the box shows it sorted.
        QCOMPARE(rangeOf(plot), Range(0.0, 100.0));
        QCOMPARE(editOf(plot, "xMaxEdit")->text(), QString("100"));
        enter(editOf(plot, "xMinEdit"), "50");
        QCOMPARE(rangeOf(plot), Range(50.0, 100.0));
        enter(editOf(plot, "xMaxEdit"), "x");
        QCOMPARE(rangeOf(plot), Range(50.0, 100.0));
        QCOMPARE(editOf(plot, "xMaxEdit")->text(), QString("100"));
        QCOMPARE(selected.count(), 2);
    }

    void plotShowsInTheBox()
    {
        Plot plot;
        plot.SetEnableSelectXRange(true);
        QSignalSpy selected(&plot, &XYGraphWidget::xRangeSelected);
        plot.SetXRange(12.5, 80.0);
        QCOMPARE(editOf(plot, "xMinEdit")->text(), QString("12.5"));
        QCOMPARE(editOf(plot, "xMaxEdit")->text(), QString("80"));
        QCOMPARE(selected.count(), 1); // no loop through the box
        plot.onClearXRange();
        QCOMPARE(editOf(plot, "xMaxEdit")->text(), QString("0"));
    }

    void linesAreDrawnAtTheRange()
    {
        Plot plot;
        const QImage before = plot.m_pixmap.toImage();
        plot.SetXRange(300.0, 750.0);
        QImage seen(plot.size(), QImage::Format_RGB32);
        plot.render(&seen);
        const QRect graph = plot.m_graphRect;
        const auto whiteInColumn = [&](int x) {
            int white = 0;
            for (int y = graph.top(); y <= graph.bottom(); ++y)
                white += seen.pixelColor(x, y) == QColor(Qt::white) ? 1 : 0;
            return white;
        };
        for (const double bound : { 300.0, 750.0 }) {
            const int column = plot.calcWidgetPoint(QPoint(static_cast<int>(bound), 0)).x();
            const int white = std::max(whiteInColumn(column), whiteInColumn(column - 1));
            QVERIFY(white > graph.height() / 2 && white < graph.height()); // dashed
        }
        QCOMPARE(plot.m_pixmap.toImage(), before); // over the picture, not in it
        const std::unique_ptr<QPixmap> saved(plot.toPixmap());
        QCOMPARE(saved->toImage(), before);
    }

    void logEmitsAChange()
    {
        Plot plot;
        const tarnis::testing::LogFile log;
        plot.SetXRange(5.0, 3.0);
        QCOMPARE(log.messages(),
            (QStringList { "BLCK XYGraphWidget::SetXRange(min[5.000000], max[3.000000])",
                "DBG compare, 1[3.000000] 2[0.000000] diff[3.000000e+00] epsilon[2.220446e-16] tolerance[6.661338e-16]",
                "DBG compare, 1[5.000000] 2[0.000000] diff[5.000000e+00] epsilon[2.220446e-16] tolerance[1.110223e-15]",
                "DBG     changed", "DBG     emit xRangeSelected(min[3.000000], max[5.000000])" }));
    }

    void logEmitsNothingWithoutAChange()
    {
        Plot plot;
        const tarnis::testing::LogFile log;
        plot.SetXRange(0.0, 0.0);
        QCOMPARE(log.messages().last(), QString("DBG     not changed"));
        QCOMPARE(log.messages().size(), 4);
    }
};

QTEST_MAIN(TestXYGraphRange)
#include "tst_xygraphrange.moc"
