// The live 2D window against a scripted server, and its filter.
#include "dialogs/graph2dwindow.h"
#include "dialogs/livewindow.h"
#include "support/cases.h"
#include "support/metamethods.h"
#include "support/virtualorder.h"
#include "support/wait.h"

#include <tarnis/dialogs/graph2ddialog.h>
#include <tarnis/plots/colorbarwidget.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include <QAction>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>

using namespace tarnis::testing;

namespace {

Graph2DFilterDialog* openFilter(Graph2DDialog& window)
{
    window.findChild<QPushButton*>("filterPushButton")->click();
    return window.findChild<Graph2DFilterDialog*>();
}

QList<Graph2DDialog*> filteredWindows(Graph2DDialog& window)
{
    return window.findChildren<Graph2DDialog*>(QString(), Qt::FindDirectChildrenOnly);
}

/// Access to the plot's protected members.
class PlotInside : public XY2DGraphWidget {
public:
    static QList<double> rowMaxima(XY2DGraphWidget& plot) { return plot.*(&PlotInside::m_rowMax); }
    static QAction* cutAction(XY2DGraphWidget& plot) { return plot.*(&PlotInside::m_act1dCut); }
};

class BarInside : public ColorBarWidget {
public:
    static int ticks(ColorBarWidget& bar) { return bar.*(&BarInside::m_ticks); }
};

/// The windows of the two cuts, which the plot opens.
QList<QWidget*> cutWindows(Graph2DDialog& window)
{
    QList<QWidget*> windows;
    for (VectorGraphWidget* const plot : window.getGraphWidget()->findChildren<VectorGraphWidget*>())
        windows.append(plot->window());
    return windows;
}

} // namespace

class TestGraph2DDialog : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QCoreApplication::setApplicationName("map test"); }

    void methodOrder()
    {
        const QMetaObject& meta = Graph2DDialog::staticMetaObject;
        QCOMPARE(ownMethods(meta),
            QStringList({ "slot update()", "slot result(PTarnisCmd,QByteArray)", "slot error(int,QString)",
                "slot onAutoUpdateToggled(bool)", "slot onFilterAccepted(Graph2DFilter)", "slot onFilter()",
                "slot onTimeout()" }));
        const int first = meta.methodOffset();
        QCOMPARE(meta.method(first + 1).parameterNames(), QList<QByteArray>({ "cmd", "" }));
        QCOMPARE(meta.method(first + 2).parameterNames(), QList<QByteArray>({ "socketError", "message" }));
        QCOMPARE(meta.method(first + 3).parameterNames(), QList<QByteArray>({ "checked" }));
        QCOMPARE(meta.method(first + 4).parameterNames(), QList<QByteArray>({ "filter" }));
    }

    void virtualOrder()
    {
        using D = Graph2DDialog;
        const std::ptrdiff_t first = virtualIndex(&D::setCmd);
        QVERIFY(first > virtualIndex(&QDialog::reject));
        QCOMPARE(virtualIndex(&D::getCmd), first + 1);
        QCOMPARE(virtualIndex(&D::update), first + 2);
        QCOMPARE(virtualIndex(&D::result), first + 3);
        QCOMPARE(virtualIndex(&D::error), first + 4);
        QCOMPARE(virtualIndex(&D::onAutoUpdateToggled), first + 5);
        QCOMPARE(virtualIndex(&D::onResultExInfo), first + 6);
    }

    void formHasTheGivenSizeAndTexts()
    {
        const ConnectedWindow window;
        QCOMPARE(window->windowTitle(), "Title");
        QCOMPARE(window->size(), QSize(467, 440));
        QVERIFY(Window(nullptr).testAttribute(Qt::WA_DeleteOnClose));
        QCOMPARE(window->child<QPushButton>("updatePushButton").text(), "Update");
        QCOMPARE(window->child<QPushButton>("updatePushButton").focusPolicy(), Qt::NoFocus);
        QCOMPARE(window->child<QCheckBox>("autoUpdateCheckBox").text(), "AutoUpdate");
        QCOMPARE(window->child<QPushButton>("filterPushButton").text(), "Filter");
        QVERIFY(!window->child<QProgressBar>("progressBar").isVisible());
        QVERIFY(!window->child<QLabel>("infoLabel").isVisible());
        QVERIFY(window->isAutoUpdate() && Graph2DDialog::initialAutoUpdate);
        XY2DGraphWidget& plot = window->child<XY2DGraphWidget>("graphWidget");
        QCOMPARE(plot.getNameX(), "East");
        QCOMPARE(plot.getNameY(), "North");
        QCOMPARE(plot.getDecimalX(), 1);
        QCOMPARE(plot.getDecimalY(), 2);
        QVERIFY(plot.m_doubleBuffered);
        double min = 0;
        double max = 0;
        plot.getMinMaxX(min, max);
        QCOMPARE(min, 0.0);
        QCOMPARE(max, 30.0);
        plot.getMinMaxY(min, max);
        QCOMPARE(min, 5.0);
        QCOMPARE(max, 7.0);
        QCOMPARE(window->timer->interval(), 1000);
        QVERIFY(window->timer->isSingleShot() && !window->timer->isActive());
    }

    void staticWindowHasNoUpdateControls()
    {
        const WindowPointer window = shown(nullptr);
        QVERIFY(!window->child<QPushButton>("updatePushButton").isVisible());
        QVERIFY(!window->child<QCheckBox>("autoUpdateCheckBox").isVisible());
        QVERIFY(window->child<QPushButton>("filterPushButton").isVisible());
        QVERIFY(!window->timer && !window->session);
        window->update(); // harmless
        window->onAutoUpdateToggled(false);
        window->setCmd("other");
        QCOMPARE(window->getCmd(), "other");
    }

    // --- replies

    void reportsRepliesWithAWrongShape_data()
    {
        addColumns<QString, QByteArray, QString, int>("text", "payload", "box", "rows");
        addCase("as constructed", "OK:", bytesOf(ramp(6)), "", 2);
        addCase("map announced twice", "OK: exported 2 x 3 y\n", bytesOf(ramp(6)), "", 3);
        addCase("announced in the first line: ignored", "exported 2 x 3 y", bytesOf(ramp(6)), "", 2);
        addCase("spare bytes", "OK:", bytesOf(ramp(6)) + "1234567", "", 2);
        addCase("too short", "OK:", bytesOf(ramp(5)), "graph data size mismatched! 10 != 6 ( 3 * 2 )", 0);
        addCase("cut short", "OK:", bytesOf(ramp(6)).chopped(1), "graph data size mismatched! 11 != 6 ( 3 * 2 )", 0);
        addCase("no rows, but data", "OK: exported 3 x 0 y", bytesOf(ramp(1)),
            "graph data size mismatched! 2 != 0 ( 3 * 0 )", 0);
        addCase("both negative", "OK: exported -2 x -3 y", bytesOf(ramp(6)),
            "graph data size mismatched! 12 != 6 ( -2 * -3 )", 0);
        addCase("product beyond 32 bits", "OK: exported 65536 x 65536 y", bytesOf(ramp(6)),
            "graph data size mismatched! 12 != 4294967296 ( 65536 * 65536 )", 0);
        addCase("no columns, many rows", "OK: exported 0 x 2000000000 y", QByteArray("1234567"),
            "graph data size mismatched! 1 != 0 ( 0 * 2000000000 )", 0);
        addCase("empty", "OK: exported 3 x 0 y", QByteArray(), "", 0);
    }

    void reportsRepliesWithAWrongShape()
    {
        QFETCH(QString, text);
        QFETCH(QByteArray, payload);
        QFETCH(QString, box);
        QFETCH(int, rows);
        MessageBoxWatcher boxes;
        const ConnectedWindow window;
        window->reply(text, payload);
        QCOMPARE(boxes.texts.value(0), box);
        QCOMPARE(boxes.texts.size(), box.isEmpty() ? 0 : 1);
        if (!box.isEmpty())
            QCOMPARE(boxes.icons.value(0), QMessageBox::Information);
        QCOMPARE(window->rows().size(), rows);
        QCOMPARE(window->timer->isActive(), box.isEmpty());
        window->grab(); // paints with the current shape
    }

    void mismatchKeepsThePicture()
    {
        MessageBoxWatcher boxes;
        const ConnectedWindow window;
        window->reply("OK:", bytesOf(ramp(6)));
        window->reply("OK:", bytesOf({ 9, 9 }));
        QCOMPARE(window->rows(), QList<QList<double>>({ { 1, 2, 3 }, { 4, 5, 6 } }));
        QVERIFY(!window->timer->isActive());
    }

    void keepsTheAnnouncedBinCounts()
    {
        const ConnectedWindow window;
        window->reply("OK: exported 6 x 1 y", bytesOf(ramp(6)));
        QCOMPARE(window->binsX, 6);
        QCOMPARE(window->binsY, 1);
        window->reply("OK:", bytesOf(ramp(6)));
        QCOMPARE(window->binsX, 6);
    }

    void emptyReplyClearsThePlot()
    {
        const ConnectedWindow window;
        window->reply("OK:", bytesOf(ramp(6)));
        window->reply("OK: exported 3 x 0 y\n", QByteArray());
        QVERIFY(window->rows().isEmpty());
        QVERIFY(PlotInside::rowMaxima(*window->getGraphWidget()).isEmpty());
        QCOMPARE(window->binsY, 0);
        QVERIFY(window->timer->isActive());
    }

    void keepsThePeakOfEachRow()
    {
        const ConnectedWindow window;
        XY2DGraphWidget& plot = *window->getGraphWidget();
        window->reply("OK:", bytesOf({ -3, -1, -2, 4, 6, 5 }));
        QCOMPARE(PlotInside::rowMaxima(plot), QList<double>({ -1, 6 }));
        // One row now: the upper one keeps its values and its peak.
        window->reply("OK: exported 2 x 1 y", bytesOf({ -7, -8 }));
        QCOMPARE(PlotInside::rowMaxima(plot), QList<double>({ -7, 6 }));
        QCOMPARE(plot.getMaxValue(), 6.0);
        window->reply("OK: exported 1 x 3 y", bytesOf({ 1, 2, 3 }));
        QCOMPARE(PlotInside::rowMaxima(plot), QList<double>({ 1, 2, 3 }));
    }

    void aMillionRows()
    {
        const ConnectedWindow window;
        constexpr int count = 1000000;
        // Rows are set one by one; a scan of all rows for each would take minutes.
        window->reply(QStringLiteral("OK: exported 1 x %1 y").arg(count), bytesOf(ramp(count)));
        QCOMPARE(window->rows().size(), count);
        QCOMPARE(window->rows().constLast(), QList<double>({ double(count) }));
        double min = 0;
        double max = 0;
        window->getGraphWidget()->getMinMaxX(min, max);
        QCOMPARE(min, 0.0);
        QCOMPARE(max, 30.0);
        window->grab();
    }

    void staticWindowDrawsReplies()
    {
        const WindowPointer window = shown(nullptr);
        window->result(answered("map", true, "OK:"), bytesOf(ramp(6)));
        QCOMPARE(window->rows(), QList<QList<double>>({ { 1, 2, 3 }, { 4, 5, 6 } }));
        window->drawReplies = false;
        window->result(answered("map", true, "OK:"), bytesOf({ 6, 5, 4, 3, 2, 1 }));
        QCOMPARE(window->rows().first(), QList<double>({ 1, 2, 3 }));
        window->drawReplies = true;
        window->result(answered("map", true, "OK:"), QByteArray());
        QVERIFY(window->rows().isEmpty());
    }

    // --- the filter

    void filterOpensOnce()
    {
        const WindowPointer window = shown(nullptr);
        Graph2DFilterDialog* const dialog = openFilter(*window);
        QVERIFY(dialog && dialog->isVisible() && dialog->testAttribute(Qt::WA_DeleteOnClose));
        QCOMPARE(window->filterDialogs.map.value(window.get()), static_cast<QWidget*>(dialog));
        dialog->hide();
        window->onFilter();
        QVERIFY(dialog->isVisible());
        QCOMPARE(window->findChildren<Graph2DFilterDialog*>().size(), 1);
        dialog->close();
        QVERIFY(eventually([&] { return window->filterDialogs.map.isEmpty(); }));
        QVERIFY(openFilter(*window));
    }

    void filterOfNothingOpensNothing()
    {
        const WindowPointer window = shown(nullptr);
        window->onFilterAccepted(Graph2DFilter());
        QVERIFY(filteredWindows(*window).isEmpty());
    }

    void filteredMapIsAStaticWindow()
    {
        const ConnectedWindow window;
        window->reply("OK: exported 5 x 5 y", bytesOf(ramp(25)));
        Graph2DFilterDialog* const dialog = openFilter(*window);
        dialog->findChild<QLineEdit*>("matrix33LineEdit")->setText("4");
        dialog->findChild<QLineEdit*>("divisorLineEdit")->setText("2");
        dialog->findChild<QDialogButtonBox*>("buttonBox")->button(QDialogButtonBox::Ok)->click();
        Graph2DDialog* const result = filteredWindows(*window).value(0);
        QVERIFY(result && result->isVisible());
        QCOMPARE(result->windowTitle(), "Title");
        QList<QList<double>> expected = window->rows();
        QCOMPARE(expected[2][2], 13.0);
        expected[2][2] = 26.0;
        QCOMPARE(rowsOf(*result), expected);
        QCOMPARE(window->rows()[2][2], 13.0);
        QCOMPARE(result->getGraphWidget()->getNameX(), "East");
        QCOMPARE(result->getGraphWidget()->getNameY(), "North");
        QCOMPARE(result->getGraphWidget()->getDecimalX(), 1);
        QCOMPARE(result->getGraphWidget()->getDecimalY(), 2);
        double min = 0;
        double max = 0;
        result->getGraphWidget()->getInitMinMaxY(min, max); // the X range of the first window
        QCOMPARE(min, 0.0);
        QCOMPARE(max, 30.0);
        // A filter of a filter.
        result->onFilterAccepted(Graph2DFilter());
        QCOMPARE(rowsOf(*filteredWindows(*result).value(0)), expected);
    }

    void unchangedFieldsAreTheIdentity()
    {
        const WindowPointer window = shown(nullptr);
        for (int row = 0; row < 6; ++row)
            window->getGraphWidget()->setData(row, { -1.5, 2, row * 0.1, 4, -5, 6e300 }, 6e300, row == 5);
        Graph2DFilterDialog* const dialog = openFilter(*window);
        for (int field = 0; field < 25; ++field)
            dialog->findChild<QLineEdit*>(QStringLiteral("matrix%1%2LineEdit").arg(field / 5 + 1).arg(field % 5 + 1))
                ->setText(field == 12 ? "1" : "0");
        dialog->findChild<QLineEdit*>("divisorLineEdit")->setText("1");
        dialog->findChild<QDialogButtonBox*>("buttonBox")->button(QDialogButtonBox::Ok)->click();
        Graph2DFilterDialog* const again = openFilter(*window);
        again->onAccepted(); // as it was opened
        QCOMPARE(filteredWindows(*window).size(), 2);
        for (Graph2DDialog* const result : filteredWindows(*window))
            QCOMPARE(rowsOf(*result), window->rows());
    }

    void peaksOfTheFilteredRows_data()
    {
        addColumns<int, QList<double>>("firstRow", "peaks");
        QTest::newRow("negative rows") << 0 << QList<double>({ -1, -1, -1, -1 });
        QTest::newRow("no columns: row 0 has none") << 3 << QList<double>({ 0, 0, 0, 0 });
    }

    void peaksOfTheFilteredRows()
    {
        QFETCH(int, firstRow);
        QFETCH(QList<double>, peaks);
        const WindowPointer window = shown(nullptr);
        for (int row = firstRow; row < 4; ++row)
            window->getGraphWidget()->setData(row, firstRow == 0 ? QList<double>({ -2, -1 }) : ramp(9), 9, row == 3);
        window->onFilterAccepted(Graph2DFilter());
        QCOMPARE(PlotInside::rowMaxima(*filteredWindows(*window).value(0)->getGraphWidget()), peaks);
    }

    void filterOnFourRowsShowsTheSame()
    {
        const WindowPointer window = shown(nullptr);
        for (int row = 0; row < 4; ++row)
            window->getGraphWidget()->setData(row, ramp(9), 9, row == 3);
        window->onFilterAccepted(Graph2DFilter());
        QCOMPARE(rowsOf(*filteredWindows(*window).value(0)), window->rows());
    }

    // --- controls

    void progressAndInformation()
    {
        const WindowPointer window = shown(nullptr);
        auto& bar = window->child<QProgressBar>("progressBar");
        window->setProgressInfo(true, 29, 100);
        QVERIFY(bar.isVisible());
        QCOMPARE(bar.value(), 28);
        window->setProgressInfo(false, 0, 0);
        QVERIFY(!bar.isVisible());
        window->setInfoText("  words \n");
        QCOMPARE(window->child<QLabel>("infoLabel").text(), "words");
        window->setVisibleUpdateControls(true);
        QVERIFY(window->child<QPushButton>("updatePushButton").isVisible());
        window->setEnabledUpdateControls(false);
        QVERIFY(!window->child<QCheckBox>("autoUpdateCheckBox").isEnabled());
        QVERIFY(window->child<QPushButton>("filterPushButton").isEnabled());
    }

    void stepsAndTicksGoToThePlot()
    {
        const WindowPointer window = shown(nullptr);
        window->setStep(2.5, 7);
        QCOMPARE(window->getGraphWidget()->getStepX(), 2.5);
        QCOMPARE(window->getGraphWidget()->getStepY(), 7.0);
        window->setColorBarTicks(4);
        QCOMPARE(BarInside::ticks(*window->getGraphWidget()->findChild<ColorBarWidget*>()), 4);
    }

    void cutWindowsFollowTheWindow()
    {
        const WindowPointer window = shown(nullptr);
        window->move(100, 100);
        for (int row = 0; row < 5; ++row)
            window->getGraphWidget()->setData(row, ramp(5), 5, row == 4);
        PlotInside::cutAction(*window->getGraphWidget())->trigger();
        const QList<QWidget*> cuts = cutWindows(*window);
        QCOMPARE(cuts.size(), 2);
        const auto places = [&] { return QList<QRect>({ cuts[0]->geometry(), cuts[1]->geometry() }); };
        const QList<QRect> before = places();
        window->move(160, 140);
        QVERIFY(eventually([&] {
            return places() == QList<QRect>({ before[0].translated(60, 40), before[1].translated(60, 40) });
        }));
        window->resize(window->width() + 50, window->height() + 30);
        QVERIFY(eventually(
            [&] { return places()[0].size() != before[0].size() && places()[1].size() != before[1].size(); }));
        window->activateWindow();
        QEvent activation(QEvent::ActivationChange);
        QApplication::sendEvent(window.get(), &activation); // raises them; harmless where they are up
        QCOMPARE(cutWindows(*window), cuts);
    }

    void languageChangePutsThePlaceholdersBack()
    {
        const WindowPointer window = shown(nullptr);
        QEvent event(QEvent::LanguageChange);
        QApplication::sendEvent(window.get(), &event);
        QCOMPARE(window->windowTitle(), "Dialog");
        QCOMPARE(window->child<QLabel>("infoLabel").text(), "infoLabel");
    }
};

QTEST_MAIN(TestGraph2DDialog)
#include "tst_graph2ddialog.moc"
