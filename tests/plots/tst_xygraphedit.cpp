// The editors of the axis ends: in place on the labels and as dialogs, in both directions.
#include "plots/visibleframe.h"
#include "support/cases.h"
#include "support/modalwatchdog.h"
#include "support/plotmouse.h"
#include "support/wait.h"

#include <tarnis/foundation/helpers.h>
#include <tarnis/plots/xygraphwidget.h>

#include <QDialog>
#include <QInputDialog>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>

using namespace tarnis::testing;

namespace {

class Plot : public VisibleFrame {
public:
    Plot() { m_refreshRequired = false; }

    void onAutoScaleX(bool checked) override
    {
        calls << QStringLiteral("autoX %1 at %2..%3").arg(checked).arg(m_minX).arg(m_maxX);
        XYGraphWidget::onAutoScaleX(checked);
    }
    void onAutoScaleY(bool checked) override
    {
        calls << QStringLiteral("autoY %1 at %2..%3").arg(checked).arg(m_minY).arg(m_maxY);
        XYGraphWidget::onAutoScaleY(checked);
    }

    QStringList calls;
};

enum End { MinX, MaxX, MinY, MaxY };

QRect labelOf(const Plot& plot, int end)
{
    const QRect labels[] = { plot.m_labelRectMinX, plot.m_labelRectMaxX, plot.m_labelRectMinY, plot.m_labelRectMaxY };
    return labels[end];
}

double valueOf(const Plot& plot, int end)
{
    const double values[] = { plot.m_minX, plot.m_maxX, plot.m_minY, plot.m_maxY };
    return values[end];
}

} // namespace

class TestXYGraphEdit : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        setNumberFormat('g', 6);
        plot = std::make_unique<Plot>();
        mouse = std::make_unique<tarnis::testing::PlotMouse>(*plot);
        QVERIFY(QTest::qWaitForWindowExposed(plot.get()));
        plot->wasRefreshed();
        plot->calls.clear();
    }

    void cleanup()
    {
        mouse.reset();
        plot.reset();
        setNumberFormat('g', 6);
    }

    void labelsOpenTheirEditor_data()
    {
        addColumns<int, QString>("end", "text");
        QTest::newRow("min x") << int(MinX) << "0";
        QTest::newRow("max x") << int(MaxX) << "1000";
        QTest::newRow("min y") << int(MinY) << "0";
        QTest::newRow("max y") << int(MaxY) << "100";
    }
    void labelsOpenTheirEditor()
    {
        QFETCH(int, end);
        const QLineEdit* edit = openEditor(end);
        QVERIFY(edit != nullptr && edit->isVisible());
        QCOMPARE(edit->parentWidget(), plot.get());
        QTEST(edit->text(), "text");
        QCOMPARE(edit->styleSheet(), QString("color:black; background-color:white;"));
        const QRect label = labelOf(*plot, end);
        QCOMPARE(edit->height(), label.height());
        QCOMPARE(edit->width(), std::max(50, static_cast<int>(label.width() * 1.5)));
        QVERIFY(plot->rect().contains(edit->geometry()));
        QVERIFY(edit->geometry().contains(label.center()));
        TRY_VERIFY(edit->hasFocus());
    }

    void onlyTheInsideOfALabelCounts()
    {
        const QRect label = plot->m_labelRectMaxX; // no other label is near
        for (const QPoint& edge : { label.topLeft(), label.bottomRight(), QPoint(label.center().x(), label.top()) }) {
            mouse->click(edge);
            QVERIFY(plot->m_edit == nullptr);
        }
        mouse->click(label.topLeft() + QPoint(1, 1));
        QVERIFY(plot->m_edit != nullptr);
    }

    void theFirstLabelWins()
    {
        plot->m_labelRectMaxX = plot->m_labelRectMaxY = plot->m_labelRectMinY;
        QCOMPARE(openEditor(MinY)->text(), QString("1000"));
    }

    void editorsOpenInSomeModesOnly()
    {
        for (QAction* tool : { plot->m_actZoomIn, plot->m_actZoomOut }) {
            tool->trigger();
            QVERIFY(openEditor(MaxX) != nullptr);
            type("1000");
        }
        for (QAction* tool : { plot->m_actRectangle, plot->m_actMove }) {
            tool->trigger();
            QVERIFY(openEditor(MaxX) == nullptr);
        }
        plot->m_actMove->trigger();
        mouse->click(plot->m_labelRectMaxX.center(), Qt::MiddleButton);
        QVERIFY(plot->m_edit == nullptr);
        QVERIFY(openEditor(MaxX) != nullptr);
    }

    void editorStaysInsideTheWidget()
    {
        plot->setMinMaxX(0.0, 12345.6);
        plot->setMinMaxY(-99999.0, 123456.0);
        plot->paintNow();
        for (const int end : { MinX, MaxX, MinY, MaxY }) {
            const QLineEdit* edit = openEditor(end);
            QVERIFY(edit != nullptr);
            QVERIFY(plot->rect().contains(edit->geometry()));
            mouse->press(plot->m_graphRect.center());
        }
    }

    void editorOfAVerticalLabelIsHorizontal()
    {
        plot->m_rotation = 90.0;
        plot->resize(300, 400);
        plot->setMinMaxX(0.0, 1000000.0);
        plot->paintNow();
        const QRect label = plot->m_labelRectMaxX;
        QVERIFY(label.height() > label.width());
        const QLineEdit* edit = openEditor(MaxX);
        QVERIFY(edit != nullptr);
        QCOMPARE(edit->size(), QSize(std::max(50, static_cast<int>(label.height() * 1.5)), label.width()));
        QVERIFY(edit->geometry().contains(label.center()));
    }

    void theEditorIgnoresTheNumberFormat()
    {
        plot->setMinMaxY(0.0, 1234567.0);
        plot->paintNow();
        setNumberFormat('n', 3);
        QCOMPARE(openEditor(MaxY)->text(), QString("1.23457e+06"));
    }

    void labelsShowTheNumberFormatAgain()
    {
        const QImage before = plot->m_pixmap.toImage();
        openEditor(MaxX);
        type("1500");
        setNumberFormat('n', 3);
        plot->paintNow();
        QVERIFY(plot->m_pixmap.toImage() != before);
        QCOMPARE(plot->getLabelX(plot->m_maxX), QString("1.5e+3"));
        QCOMPARE(openEditor(MaxX)->text(), QString("1500"));
    }

    void acceptedText_data()
    {
        addColumns<int, QList<double>, QString, double, bool>("end", "ranges", "text", "value", "applied");
        const QList<double> plain { 10.0, 1000.0, 5.0, 100.0 };
        const QList<double> reversed { 1000.0, 10.0, 100.0, 5.0 };
        const QList<double> empty { 10.0, 10.0, 5.0, 5.0 };
        const auto row = [](const char* name, int end, const QList<double>& ranges, const char* text, double value,
                             bool applied) { QTest::newRow(name) << end << ranges << text << value << applied; };
        row("min x", MinX, plain, "200", 200.0, true);
        row("min x negative", MinX, plain, "-1e3", -1000.0, true);
        row("min x at the maximum", MinX, plain, "1000", 10.0, false);
        row("min x above the maximum", MinX, plain, "1200", 10.0, false);
        row("min x unchanged", MinX, plain, "10.0", 10.0, false);
        row("min x unreadable is 0", MinX, plain, "ten", 0.0, true);
        row("min x empty is 0", MinX, plain, "", 0.0, true);
        row("min x not a number", MinX, plain, "nan", 10.0, false);
        row("min x reversed", MinX, reversed, "2000", 2000.0, true);
        row("min x reversed below the maximum", MinX, reversed, "5", 1000.0, false);
        row("min x of an empty range", MinX, empty, "5", 10.0, false);
        row("max x", MaxX, plain, "200", 200.0, true);
        row("max x at the minimum", MaxX, plain, "10", 1000.0, false);
        row("max x below the minimum", MaxX, plain, "5", 1000.0, false);
        row("max x unreadable is 0", MaxX, plain, "1,5", 1000.0, false);
        row("max x reversed", MaxX, reversed, "-3", -3.0, true);
        row("max x reversed above the minimum", MaxX, reversed, "1001", 10.0, false);
        row("max x of an empty range", MaxX, empty, "50", 10.0, false);
        row("min y", MinY, plain, "7.25", 7.25, true);
        row("min y above", MinY, plain, "100", 5.0, false);
        row("min y reversed", MinY, reversed, "200", 100.0, false);
        row("min y reversed, below", MinY, reversed, "3", 3.0, true);
        row("min y unreadable is 0", MinY, plain, "?", 0.0, true);
        row("max y", MaxY, plain, "7.25", 7.25, true);
        row("max y below", MaxY, plain, "5", 100.0, false);
        row("max y infinite", MaxY, plain, "inf", 100.0, false);
        row("max y of an empty range", MaxY, empty, "50", 50.0, true);
    }
    void acceptedText()
    {
        QFETCH(int, end);
        QFETCH(QList<double>, ranges);
        QFETCH(QString, text);
        QFETCH(bool, applied);
        plot->setMinMaxX(ranges.at(0), ranges.at(1));
        plot->setMinMaxY(ranges.at(2), ranges.at(3));
        plot->paintNow();
        // An empty range has no labels to click on, so their positions are set.
        plot->m_labelRectMinX = QRect(100, 300, 60, 15);
        plot->m_labelRectMaxX = QRect(300, 300, 60, 15);
        plot->m_labelRectMinY = QRect(0, 250, 40, 15);
        plot->m_labelRectMaxY = QRect(0, 20, 40, 15);
        plot->wasRefreshed();
        const QPointer<QLineEdit> edit = openEditor(end);
        QVERIFY(edit);
        type(text);
        QTEST(valueOf(*plot, end), "value");
        QCOMPARE(plot->wasRefreshed(), applied);
        QCOMPARE(plot->m_autoScaleX, !(applied && end <= MaxX));
        QCOMPARE(plot->m_autoScaleY, !(applied && end >= MinY));
        QVERIFY(plot->m_edit == nullptr); // it is closed in all cases
        TRY_VERIFY(edit.isNull());
        for (const int other : { MinX, MaxX, MinY, MaxY }) {
            if (other != end)
                QCOMPARE(valueOf(*plot, other), ranges.at(other));
        }
    }

    void autoScaleGoesFirst()
    {
        openEditor(MaxX);
        type("500");
        // Re-entered once by the check mark; the value is stored after that.
        QCOMPARE(plot->calls, (QStringList { "autoX 0 at 0..1000", "autoX 0 at 0..1000" }));
        QCOMPARE(plot->m_maxX, 500.0);
    }

    void unchangedTextAppliesTheRoundedNumber()
    {
        plot->setMinMaxX(0.0, 123.4567891);
        plot->paintNow();
        openEditor(MaxX);
        QTest::keyClick(plot->m_edit, Qt::Key_Return);
        QCOMPARE(plot->m_maxX, 123.457);
    }

    void secondScaleIsSpokenByTheEditors()
    {
        static double factor = 8.0;
        plot->setFuncX2Tick([](double x, void* data) { return x / *static_cast<double*>(data); },
            [](double tick, void* data) { return tick * *static_cast<double*>(data); }, &factor);
        plot->paintNow();
        QCOMPARE(openEditor(MaxX)->text(), QString("125"));
        type("100");
        QCOMPARE(plot->m_maxX, 800.0);
        plot->paintNow();
        QCOMPARE(openEditor(MinX)->text(), QString("0"));
        type("10");
        QCOMPARE(plot->m_minX, 80.0);
        plot->paintNow();
        QCOMPARE(openEditor(MaxY)->text(), QString("100")); // Y has no second scale
    }

    void returnPressesNoButtonOfADialog()
    {
        QDialog dialog;
        auto* const button = new QPushButton(&dialog);
        const QSignalSpy clicks(button, &QPushButton::clicked);
        plot->setParent(&dialog);
        plot->show();
        dialog.show();
        for (const int key : { int(Qt::Key_Return), int(Qt::Key_Enter) }) {
            QVERIFY(openEditor(MaxX));
            QTest::keyClick(plot->m_edit, Qt::Key(key));
            QCOMPARE(plot->m_edit, nullptr);
        }
        QCOMPARE(clicks.count(), 0);
        QTest::keyClick(&dialog, Qt::Key_Return);
        QCOMPARE(clicks.count(), 1);
        plot->setParent(nullptr);
    }

    void anotherPressDropsTheEditor()
    {
        for (const auto button : { Qt::LeftButton, Qt::MiddleButton, Qt::RightButton }) {
            const QPointer<QLineEdit> edit = openEditor(MaxX);
            QVERIFY(edit);
            QTest::keyClicks(edit, "7");
            mouse->press(plot->m_graphRect.center(), button);
            QVERIFY(plot->m_edit == nullptr);
            TRY_VERIFY(edit.isNull());
            QCOMPARE(plot->m_maxX, 1000.0);
            if (auto* menu = plot->findChild<QMenu*>())
                menu->close();
        }
    }

    void pressInAZoomModeDropsTheEditorAndZooms()
    {
        plot->m_actZoomIn->trigger();
        QVERIFY(openEditor(MaxX) != nullptr);
        mouse->press(plot->m_graphRect.center());
        QVERIFY(plot->m_edit == nullptr);
        QVERIFY(plot->m_maxX < 1000.0);
    }

    void oneEditorAtATime()
    {
        const QLineEdit* edit = openEditor(MaxX);
        mouse->release(plot->m_labelRectMinX.center()); // a release without a press of its own
        QCOMPARE(plot->m_edit, edit);
        QVERIFY(openEditor(MinX) != nullptr); // press and release: the first one closes, the second one opens
        QCOMPARE(plot->m_edit->text(), QString("0"));
    }

    void slotsWithoutAnEditorDoNothing()
    {
        plot->onMinXEntered();
        plot->onMaxXEntered();
        plot->onMinYEntered();
        plot->onMaxYEntered();
        QVERIFY(!plot->wasRefreshed());
    }

    void editorIsDestroyedWithThePlot()
    {
        const QPointer<QLineEdit> edit = openEditor(MaxX);
        plot.reset();
        QVERIFY(edit.isNull());
    }

    void dialogsAskForTheYEnds_data()
    {
        addColumns<bool, QString, QString, QString, double, bool>(
            "minimum", "label", "shown", "text", "value", "applied");
        addCase("minimum", true, "Min Y", "0", "-12.5", -12.5, true);
        addCase("minimum too high", true, "Min Y", "0", "101", 0.0, false);
        addCase("minimum unreadable is 0", true, "Min Y", "0", "x", 0.0, false);
        addCase("maximum", false, "Max Y", "100", "1e4", 1e4, true);
        addCase("maximum too low", false, "Max Y", "100", "-1", 100.0, false);
        addCase("maximum unchanged", false, "Max Y", "100", "100", 100.0, false);
    }
    void dialogsAskForTheYEnds()
    {
        QFETCH(bool, minimum);
        QFETCH(QString, label);
        QFETCH(QString, shown);
        QFETCH(QString, text);
        QFETCH(bool, applied);
        tarnis::testing::ModalWatchdog watchdog({ [&](QWidget& window) {
            auto* dialog = qobject_cast<QInputDialog*>(&window);
            QVERIFY(dialog);
            QCOMPARE(dialog->windowTitle(), QString("Edit"));
            QCOMPARE(dialog->labelText(), label);
            QCOMPARE(dialog->textValue(), shown);
            QCOMPARE(dialog->parentWidget(), plot.get());
            dialog->setTextValue(text);
            dialog->accept();
        } });
        if (minimum)
            plot->onEditMinY();
        else
            plot->onEditMaxY();
        QVERIFY(watchdog.isContent());
        QTEST(minimum ? plot->m_minY : plot->m_maxY, "value");
        QCOMPARE(plot->wasRefreshed(), applied);
        QCOMPARE(plot->m_autoScaleY, !applied);
        QVERIFY(plot->m_autoScaleX);
    }

    void dialogsCancelled()
    {
        const auto typeAndCancel = [](QWidget& window) {
            auto* dialog = qobject_cast<QInputDialog*>(&window);
            dialog->setTextValue(QStringLiteral("50"));
            dialog->reject();
        };
        tarnis::testing::ModalWatchdog watchdog({ typeAndCancel, typeAndCancel });
        plot->onEditMinY();
        plot->onEditMaxY();
        QVERIFY(watchdog.isContent());
        QCOMPARE(plot->m_minY, 0.0);
        QCOMPARE(plot->m_maxY, 100.0);
        QVERIFY(plot->m_autoScaleY && !plot->wasRefreshed());
    }

private:
    QLineEdit* openEditor(int end)
    {
        mouse->click(labelOf(*plot, end).center());
        return plot->m_edit;
    }
    void type(const QString& text)
    {
        QTest::keyClick(plot->m_edit, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(plot->m_edit, text);
        if (text.isEmpty())
            QTest::keyClick(plot->m_edit, Qt::Key_Delete);
        QTest::keyClick(plot->m_edit, Qt::Key_Return);
    }

    std::unique_ptr<Plot> plot;
    std::unique_ptr<tarnis::testing::PlotMouse> mouse;
};

QTEST_MAIN(TestXYGraphEdit)
#include "tst_xygraphedit.moc"
