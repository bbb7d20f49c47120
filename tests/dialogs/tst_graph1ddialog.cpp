// The live 1D window against a scripted server.
#include "dialogs/graph1dwindow.h"
#include "dialogs/livewindow.h"
#include "support/cases.h"
#include "support/metamethods.h"
#include "support/virtualorder.h"
#include "support/wait.h"

#include <tarnis/dialogs/graph1ddialog.h>
#include <tarnis/dialogs/selectcheckeddialog.h>
#include <tarnis/plots/multivectorgraphwidget.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLayout>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

#include <cmath>

using namespace tarnis::testing;

namespace {

class EventCount : public QObject {
public:
    EventCount(QObject& object, QEvent::Type type)
        : m_type(type)
    {
        object.installEventFilter(this);
    }
    int count = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == m_type ? 1 : 0;
        return false;
    }

private:
    QEvent::Type m_type;
};

} // namespace

class TestGraph1DDialog : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QCoreApplication::setApplicationName("live test"); }

    void methodOrder()
    {
        QCOMPARE(ownMethods(Graph1DDialog::staticMetaObject),
            QStringList({ "signal onGraphUpdated()", "slot update()", "slot result(PTarnisCmd,QByteArray)",
                "slot error(int,QString)", "slot onAutoUpdateToggled(bool)", "slot onTypeChanged(QString)",
                "slot onTimeout()" }));
    }

    void formHasTheGivenSizeAndTexts()
    {
        const ConnectedWindow window;
        QCOMPARE(window->windowTitle(), "Title");
        QCOMPARE(window->size(), QSize(567, 361));
        QVERIFY(
            Graph1DDialog(nullptr, "", "", 0, 1, 1, 0, "", {}, "", 0, 0, nullptr).testAttribute(Qt::WA_DeleteOnClose));
        QCOMPARE(window->child<QComboBox>("typeComboBox").count(), 2);
        QCOMPARE(window->child<QComboBox>("typeComboBox").itemText(0), "Each");
        QCOMPARE(window->child<QComboBox>("typeComboBox").itemText(1), "All");
        QCOMPARE(window->child<QToolButton>("toolButton").text(), "...");
        QCOMPARE(window->child<QLabel>("descLabel").text(), "Ch 0-1");
        QVERIFY(!window->child<QProgressBar>("progressBar").isVisible());
        QVERIFY(!window->child<QLabel>("infoLabel").isVisible());
        QVERIFY(window->isAutoUpdate() && Graph1DDialog::initialAutoUpdate);
        const auto& plot = window->child<MultiVectorGraphWidget>("graphWidget");
        QCOMPARE(&plot, window->getGraphWidget());
        QCOMPARE(plot.sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
        QCOMPARE(plot.sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
        QCOMPARE(plot.getNameX(), "Time");
        QCOMPARE(plot.getNameY(), "Intensity");
        QCOMPARE(plot.m_groupSize, 1);
        QCOMPARE(plot.m_firstNumber, 0);
        QCOMPARE(plot.m_groupName, "Ch");
        QCOMPARE(plot.getDecimalX(), 2);
        QVERIFY(plot.m_doubleBuffered);
        QCOMPARE(window->timer->interval(), 1000);
        QVERIFY(window->timer->isSingleShot() && !window->timer->isActive());
    }

    void singleRowHasNoChoice_data()
    {
        QTest::addColumn<QString>("desc");
        QTest::newRow("with description") << " Sum ";
        QTest::newRow("without") << "  ";
    }

    void singleRowHasNoChoice()
    {
        QFETCH(QString, desc);
        Options options;
        options.desc = desc;
        options.end = options.start = 3;
        const WindowPointer window = shown(nullptr, options);
        QVERIFY(!window->child<QComboBox>("typeComboBox").isVisible());
        QVERIFY(!window->child<QToolButton>("toolButton").isVisible());
        QCOMPARE(window->child<QLabel>("descLabel").text(), desc.trimmed());
        QCOMPARE(window->child<QLabel>("descLabel").isVisible(), !desc.trimmed().isEmpty());
        QLayout* const row = window->findChild<QLayout*>("horizontalLayout");
        int spacerWidth = -1;
        for (int i = 0; i < row->count(); ++i) {
            if (QSpacerItem* const spacer = row->itemAt(i)->spacerItem())
                spacerWidth = spacer->sizeHint().width();
        }
        QCOMPARE(spacerWidth, desc.trimmed().isEmpty() ? 0 : 40);
    }

    void showsARampWithoutASession()
    {
        Options options;
        options.resolution = 1000;
        options.end = 2;
        const WindowPointer window = shown(nullptr, options);
        QVERIFY(!window->timer && !window->session);
        QCOMPARE(window->series(2).size(), 10);
        QCOMPARE(window->series(2).at(9), 9.0 * 3 * 0.111);
        QCOMPARE(window->series(3), QList<double>({})); // one of the plot's first records
        window->update(); // harmless
        window->setAutoUpdate(false);
        window->setAutoUpdate(true);
        window->setCmd("other");
        options.resolution = 0; // counts as 1
        QCOMPARE(shown(nullptr, options)->series(0).size(), 10000);
        options.resolution = -5;
        QCOMPARE(shown(nullptr, options)->series(0).size(), 0);
    }

    void repliesInTheDemonstration()
    {
        const WindowPointer window = shown(nullptr);
        MessageBoxWatcher boxes;
        window->result(answered("hist", true, "OK:"), bytesOf({ 1, 2 }));
        QCOMPARE(window->series(1), QList<double>({ 2 }));
        window->drawReplies = false;
        window->result(answered("hist", true, "OK:"), bytesOf({ 1, 2 }));
        window->onTimeout();
        window->error(1, "a socket");
        QCOMPARE(boxes.texts.size(), 1);
    }

    void axisOfTheConstructorReachesThePlot()
    {
        Options options;
        options.xMin = -5.0;
        options.xMax = 20.0;
        options.resolution = 3;
        const WindowPointer window = shown(nullptr, options);
        MultiVectorGraphWidget& plot = *window->getGraphWidget();
        double min = 0.0;
        double max = 0.0;
        plot.getInitMinMaxX(min, max);
        QCOMPARE(min, -5.0);
        QCOMPARE(max, 20.0);
        QCOMPARE(plot.getMaxCount(), 3 * (10000 / 3)); // samples times resolution
    }

    void virtualOrder()
    {
        const auto first = virtualIndex(&Graph1DDialog::update);
        QVERIFY(first > 0);
        QCOMPARE(virtualIndex(&Graph1DDialog::result), first + 1);
        QCOMPARE(virtualIndex(&Graph1DDialog::error), first + 2);
        QCOMPARE(virtualIndex(&Graph1DDialog::onAutoUpdateToggled), first + 3);
        QCOMPARE(virtualIndex(&Graph1DDialog::onResultExInfo), first + 4);
        QCOMPARE(virtualIndex(&Graph1DDialog::onTypeChanged), -1);
        QCOMPARE(virtualIndex(&Graph1DDialog::onTimeout), -1);
    }

    void pairModeNeedsBothEndsAtZero_data()
    {
        addColumns<double, double, bool>("xMin", "xMax", "pairMode");
        QTest::newRow("zeros") << 0.0 << 0.0 << true;
        QTest::newRow("just within") << 2.220446049250313e-16 << -2.220446049250313e-16 << true;
        QTest::newRow("just beyond") << 0.0 << 2.3e-16 << false;
        QTest::newRow("one end") << -1.0 << 0.0 << false;
    }

    void pairModeNeedsBothEndsAtZero()
    {
        QFETCH(double, xMin);
        QFETCH(double, xMax);
        QFETCH(bool, pairMode);
        Options options;
        options.xMin = xMin;
        options.xMax = xMax;
        QCOMPARE(shown(nullptr, options)->pairMode, pairMode);
    }

    // --- the row format

    void setsTheRowsOfAReply_data()
    {
        addColumns<QByteArray, QList<double>, QList<double>>("payload", "first", "second");
        addCase("sample-major", bytesOf({ 1, 2, 3, 4, 5, 6 }), QList<double>({ 1, 3, 5 }), QList<double>({ 2, 4, 6 }));
        addCase("remainder dropped", bytesOf({ 1, 2, 3 }) + "abc", QList<double>({ 1 }), QList<double>({ 2 }));
        addCase("empty", QByteArray(), QList<double>(), QList<double>());
        addCase("less than a sample", bytesOf({ 1 }), QList<double>(), QList<double>());
    }

    void setsTheRowsOfAReply()
    {
        QFETCH(QByteArray, payload);
        QFETCH(QList<double>, first);
        QFETCH(QList<double>, second);
        const ConnectedWindow window;
        QSignalSpy updated(window.get(), &Graph1DDialog::onGraphUpdated);
        window->result(answered("hist", true, "OK:\n"), payload);
        QCOMPARE(window->series(0), first);
        QCOMPARE(window->series(1), second);
        QCOMPARE(window->series(2), QList<double>({ -1 })); // no record after the last row
        QCOMPARE(updated.count(), 1);
        QVERIFY(window->timer->isActive());
    }

    void peakOfARowStartsFromZero()
    {
        Options options;
        options.end = 0;
        const ConnectedWindow window(options);
        window->result(answered("hist", true, "OK:\n"), bytesOf({ -5, -3 }));
        QCOMPARE(window->getGraphWidget()->getMaxValue(), 0.0);
        window->result(answered("hist", true, "OK:\n"), bytesOf({ -5, 7, 3 }));
        QCOMPARE(window->getGraphWidget()->getMaxValue(), 7.0);
    }

    // --- the pair format

    void pairsFillTheirBins()
    {
        const ConnectedWindow window(pairs());
        QSignalSpy updated(window.get(), &Graph1DDialog::onGraphUpdated);
        window->result(answered("hist", true, "OK: t (10 20 5)\n"), bytesOf({ 14, 8, 10, 3, 99 }));
        QCOMPARE(window->series(0), QList<double>({ 3, 0, 8, 0, 0 }));
        // The positions as they came are the first column of the CSV file.
        QCOMPARE(window->getGraphWidget()->vector2Csv({ { window->series(0) } }), "14,3\n10,0\n0,8\n0,0\n0,0\n");
        double min = 0;
        double max = 0;
        window->getGraphWidget()->getMinMaxX(min, max);
        QCOMPARE(min, 10.0);
        QCOMPARE(max, 20.0);
        QCOMPARE(updated.count(), 1);
        QVERIFY(window->timer->isActive());
    }

    void upperEndIsBeyondTheLastBin()
    {
        MessageBoxWatcher boxes;
        const ConnectedWindow window(pairs());
        window->result(answered("hist", true, "OK: (0 4 5)"), bytesOf({ 4, 1 }));
        QCOMPARE(boxes.texts, QStringList("Invalid index!"));
        QCOMPARE(boxes.icons.value(0), QMessageBox::Warning);
        QVERIFY(!window->timer->isActive());
        double min = 0;
        double max = 0;
        window->getGraphWidget()->getMinMaxX(min, max);
        QCOMPARE(max, 4.0); // the axis has changed nevertheless
        window->extendLastBin = true;
        window->result(answered("hist", true, "OK: (0 4 5)"), bytesOf({ 4, 1 }));
        QCOMPARE(window->series(0), QList<double>({ 0, 0, 0, 0, 1 }));
        window->getGraphWidget()->getMinMaxX(min, max);
        QCOMPARE(max, 5.0);
    }

    void reportsAParseFailureAndKeepsThePlot()
    {
        MessageBoxWatcher boxes;
        const ConnectedWindow window(pairs());
        window->result(answered("hist", true, "OK: (0 4 4)"), bytesOf({ 1, 7 }));
        window->timer->stop();
        window->result(answered("hist", true, "OK: 0 4 4"), bytesOf({ 2, 9 }));
        QCOMPARE(boxes.texts, QStringList("failed to parse information - 'OK: 0 4 4'"));
        QCOMPARE(boxes.icons.value(0), QMessageBox::Information);
        QCOMPARE(boxes.titles, QStringList("live test"));
        QCOMPARE(window->series(0), QList<double>({ 0, 7, 0, 0 }));
        QVERIFY(!window->timer->isActive());
    }

    void oddPairReplies_data()
    {
        addColumns<QString, QList<double>, int>("text", "payload", "boxes");
        QTest::newRow("no bins, no pairs") << "a (0 1 0)" << QList<double>() << 0;
        QTest::newRow("no bins, a pair") << "a (0 1 0)" << QList<double>({ 0, 1 }) << 1;
        QTest::newRow("negative bins") << "a (0 1 -3)" << QList<double>({ 0, 1 }) << 1;
        QTest::newRow("equal ends") << "a (1 1 3)" << QList<double>({ 1, 1 }) << 1;
        QTest::newRow("reversed ends") << "a (4 0 4)" << QList<double>({ 4, 1 }) << 0;
        QTest::newRow("not a number") << "a (x nan 4)" << QList<double>({ std::nan(""), 1 }) << 1;
        QTest::newRow("more pairs than bins") << "a (0 2 2)" << QList<double>({ 0, 1, 0, 2, 0, 3, 0, 4 }) << 0;
        QTest::newRow("bins beyond memory") << "a (0 2 2000000000)" << QList<double>({ 0, 1 }) << 1;
    }

    void oddPairReplies()
    {
        QFETCH(QString, text);
        QFETCH(QList<double>, payload);
        QFETCH(int, boxes);
        MessageBoxWatcher watch;
        const ConnectedWindow window(pairs());
        window->result(answered("hist", true, text), bytesOf(payload));
        QCOMPARE(watch.texts.size(), boxes);
        QCOMPARE(window->timer->isActive(), boxes == 0);
        window->grab(); // paints with the current axis
    }

    // --- controls

    void typeChoosesWhatIsDrawn()
    {
        const ConnectedWindow window;
        window->getGraphWidget()->setData(0, { 1 }, 1);
        window->getGraphWidget()->setData(1, { 2 }, 2);
        // Curve by curve the plot reaches 2, their sum 3.
        const auto reach = [&] { return window->getGraphWidget()->getMaxValue(); };
        QCOMPARE(reach(), 2.0);
        window->child<QComboBox>("typeComboBox").setCurrentIndex(1);
        QCOMPARE(reach(), 3.0);
        window->child<QComboBox>("typeComboBox").setCurrentIndex(0);
        QCOMPARE(reach(), 2.0);
        window->onTypeChanged("each");
        QCOMPARE(reach(), 3.0);
    }

    void toolButtonOpensTheVisibleItems()
    {
        const WindowPointer window = shown(nullptr);
        QVERIFY(window->findChild<SelectCheckedDialog*>() == nullptr);
        window->child<QToolButton>("toolButton").click();
        const auto* const dialog = window->findChild<SelectCheckedDialog*>();
        QVERIFY(dialog != nullptr);
        QCOMPARE(dialog->parentWidget(), window->getGraphWidget());
        QVERIFY(dialog->isVisible());
    }

    void rangeBoxFollowsTheWindow()
    {
        const WindowPointer window = shown(nullptr);
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        MultiVectorGraphWidget& plot = *window->getGraphWidget();
        plot.SetEnableSelectXRangeFeature(true, "X");
        plot.SetEnableSelectXRange(true);
        auto* const box = plot.findChild<QDialog*>();
        QVERIFY(box != nullptr);
        const auto docked = [&] { return QPoint(window->frameGeometry().right(), window->frameGeometry().top()); };
        QCOMPARE(box->pos(), docked());
        window->move(window->pos() + QPoint(33, 21));
        TRY_COMPARE(box->pos(), docked());
        window->resize(window->size() + QSize(40, 10));
        TRY_COMPARE(box->pos(), docked());

        EventCount raised(*box, QEvent::ZOrderChange);
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        QEvent activation(QEvent::ActivationChange);
        raised.count = 0;
        QCoreApplication::sendEvent(window.get(), &activation);
        QCOMPARE(raised.count, 1);
    }

    void progressAndInformation()
    {
        const WindowPointer window = shown(nullptr);
        auto& bar = window->child<QProgressBar>("progressBar");
        window->setProgressInfo(true, 29, 100);
        QVERIFY(bar.isVisible());
        QCOMPARE(bar.value(), 28);
        QCOMPARE(bar.maximum(), 100);
        window->setProgressInfo(true, 5, 0);
        QCOMPARE(bar.value(), 0);
        window->setProgressInfo(false, 1, 1);
        QVERIFY(!bar.isVisible());
        window->setInfoText("  words \n");
        QCOMPARE(window->child<QLabel>("infoLabel").text(), "words");
        QVERIFY(window->child<QLabel>("infoLabel").isVisible());
        window->setInfoText(" ");
        QVERIFY(!window->child<QLabel>("infoLabel").isVisible());
    }

    void updateControlsChangeTogether()
    {
        const WindowPointer window = shown(nullptr);
        auto& button = window->child<QPushButton>("updatePushButton");
        auto& box = window->child<QCheckBox>("autoUpdateCheckBox");
        window->setVisibleUpdateControls(false);
        QVERIFY(!button.isVisible() && !box.isVisible());
        window->setVisibleUpdateControls(true);
        QVERIFY(button.isVisible() && box.isVisible());
        window->setEnabledUpdateControls(false);
        QVERIFY(!button.isEnabled() && !box.isEnabled());
        window->setEnabledUpdateControls(true);
        QVERIFY(button.isEnabled() && box.isEnabled());
    }

    void languageChangePutsThePlaceholdersBack()
    {
        const WindowPointer window = shown(nullptr);
        QEvent event(QEvent::LanguageChange);
        QApplication::sendEvent(window.get(), &event);
        QCOMPARE(window->windowTitle(), "Dialog");
        QCOMPARE(window->child<QLabel>("descLabel").text(), "desc");
        QCOMPARE(window->child<QLabel>("infoLabel").text(), "infoLabel");
        QCOMPARE(window->child<QComboBox>("typeComboBox").count(), 2);
    }
};

QTEST_MAIN(TestGraph1DDialog)
#include "tst_graph1ddialog.moc"
