// The colour bar: interface and user input. Its pictures are compared in tst_mappicture.
#include "support/cases.h"
#include "support/map2dprobe.h"
#include "support/metamethods.h"
#include "support/oversizedpictures.h"
#include "support/plotmouse.h"
#include "support/wait.h"

#include <tarnis/foundation/helpers.h>

#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

using namespace tarnis::testing;

namespace {

class Bar : public BarProbe {
public:
    Bar()
        : BarProbe(nullptr)
    {
        resize(80, 300);
        setAutoScale(false);
        m_refreshRequired = false;
    }
    /// True if a refresh was requested since the last call.
    bool wasRefreshed() { return std::exchange(m_refreshRequired, false); }
    void painted() { getPixmap(); }
    QLineEdit* openEditor(bool ofMax)
    {
        painted();
        PlotMouse(*this).click((ofMax ? m_maxRect : m_minRect).center());
        return m_editLine;
    }
    void type(const QString& text)
    {
        m_editLine->setText(text);
        QTest::keyClick(m_editLine, Qt::Key_Return);
    }
};

/// Number of marks beside the bar of a picture.
int marksIn(const QImage& picture)
{
    int marks = 0;
    for (int y = 0; y < picture.height(); ++y)
        marks += static_cast<int>(picture.pixelColor(14, y) == Qt::black);
    return marks;
}

} // namespace

class TestColorBarWidget : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { setNumberFormat('g', 6); }

    void startsWithItsDefaults()
    {
        const BarProbe bar(nullptr);
        QVERIFY(bar.m_positions.isEmpty() && bar.m_colors.isEmpty());
        QCOMPARE(bar.m_ticks, 10);
        QVERIFY(!bar.m_logScale && bar.m_autoScale && bar.isAutoScale());
        QCOMPARE(bar.m_min, 0.0);
        QCOMPARE(bar.m_max, 100.0);
        QVERIFY(bar.m_minRect.isNull() && bar.m_maxRect.isNull());
        QVERIFY(bar.m_editLine == nullptr);
        QVERIFY(!bar.m_doubleBuffered);
    }

    void declaresItsMembersAndMethodsInOrder()
    {
        Bar b;
        const QList<const void*> places { &b.m_refreshRequired, &b.m_positions, &b.m_colors, &b.m_ticks, &b.m_logScale,
            &b.m_autoScale, &b.m_min, &b.m_max, &b.m_minRect, &b.m_maxRect, &b.m_editLine };
        for (qsizetype i = 1; i < places.size(); ++i)
            QVERIFY2(std::less<>()(places.at(i - 1), places.at(i)), qPrintable(QString::number(i)));

        const QMetaObject& meta = ColorBarWidget::staticMetaObject;
        QCOMPARE(ownMethods(meta),
            (QStringList { "signal onMinChanged(double)", "signal onMaxChanged(double)", "signal sizeChanging(int)",
                "signal beginEditingText()", "signal EditLineDeleted()", "slot onMaxEntered()",
                "slot onMinEntered()" }));
        QCOMPARE(meta.method(meta.methodOffset()).parameterNames(), QList<QByteArray> { "min" });
        QCOMPARE(meta.method(meta.methodOffset() + 1).parameterNames(), QList<QByteArray> { "max" });
        QCOMPARE(meta.method(meta.methodOffset() + 2).parameterNames(), QList<QByteArray> { "width" });
    }

    void settersRefreshOnAChangeOnly()
    {
        Bar bar;
        bar.setMin(0.0);
        bar.setMin(1e-17); // equal to 0 within the tolerance
        bar.setMax(100.0);
        bar.setMax(std::nextafter(100.0, 200.0));
        QVERIFY(!bar.wasRefreshed());
        QCOMPARE(bar.m_min, 0.0);
        QCOMPARE(bar.m_max, 100.0);
        bar.setMin(0.5);
        QVERIFY(bar.wasRefreshed());
        bar.setMax(50.0);
        QVERIFY(bar.wasRefreshed());
        QCOMPARE(bar.m_min, 0.5);
        QCOMPARE(bar.m_max, 50.0);
        bar.setTicks(4);
        bar.setLogScale(true);
        bar.setAutoScale(true);
        bar.updatePos(0.5, Qt::red);
        QVERIFY(!bar.wasRefreshed());
    }

    void settersEmitNothing()
    {
        Bar bar;
        QSignalSpy min(&bar, &ColorBarWidget::onMinChanged);
        QSignalSpy max(&bar, &ColorBarWidget::onMaxChanged);
        bar.setMin(5.0);
        bar.setMax(6.0);
        QVERIFY(min.isEmpty() && max.isEmpty());
    }

    void ticksBelowOneAreIgnored()
    {
        Bar bar;
        bar.setTicks(7);
        bar.setTicks(0);
        bar.setTicks(-3);
        QCOMPARE(bar.m_ticks, 7);
        bar.setTicks(1);
        QCOMPARE(bar.m_ticks, 1);
    }

    void stopsAreReplacedAtTheirPosition()
    {
        Bar bar;
        bar.updatePos(1.0, Qt::red);
        bar.updatePos(0.0, Qt::blue);
        bar.updatePos(1.0, Qt::green);
        bar.updatePos(1.0 - 1e-16, Qt::white); // the same position within the tolerance
        QCOMPARE(bar.m_positions, (QList<double> { 1.0, 0.0 })); // in the order of insertion
        QCOMPARE(bar.m_colors, (QList<QColor> { Qt::white, Qt::blue }));
    }

    void equalLimitsShowTheGradientAlone()
    {
        Bar bar;
        bar.resize(20, 300); // no room for any label
        bar.setMax(0.0);
        QSignalSpy asked(&bar, &ColorBarWidget::sizeChanging);
        const QImage picture = bar.getPixmap().toImage();
        QVERIFY(asked.isEmpty());
        QCOMPARE(marksIn(picture), 0);
        QVERIFY(!bar.m_maxRect.isNull());
    }

    void marksShrinkWithTheBar()
    {
        Bar bar;
        const int line = bar.fontMetrics().height();
        const auto marksAt = [&](int barHeight) {
            bar.resize(80, barHeight + 2 * line);
            return marksIn(bar.getPixmap().toImage());
        };
        QCOMPARE(marksAt(10 * line), 11);
        QCOMPARE(marksAt(10 * line - 1), 10);
        QCOMPARE(marksAt(2 * line), 3);
        QCOMPARE(marksAt(2 * line - 1), 2);
        QCOMPARE(marksAt(line / 2), 2); // the ends always
        QCOMPARE(bar.m_ticks, 10);
    }

    void labelsOfALogScale_data()
    {
        addColumns<double, double, QString>("min", "max", "widest");
        QTest::newRow("decades") << 0.001 << 1000.0 << "0.00398107";
        QTest::newRow("minimum below 0 counts as 1") << -1e9 << 100.0 << "2.51189";
        QTest::newRow("both below 0: all labels are 1") << -5.0 << -1.0 << "1";
        QTest::newRow("0 to 1: all labels are 1") << 0.0 << 1.0 << "1";
    }
    void labelsOfALogScale()
    {
        QFETCH(double, min);
        QFETCH(double, max);
        QFETCH(QString, widest);
        Bar bar;
        bar.resize(20, 400);
        bar.setLogScale(true);
        bar.setTicks(10);
        bar.setMin(min);
        bar.setMax(max);
        QSignalSpy asked(&bar, &ColorBarWidget::sizeChanging);
        bar.painted();
        QCOMPARE(asked.size(), 1);
        const QFontMetrics metrics = bar.fontMetrics();
        const int room = asked.at(0).at(0).toInt() - metrics.averageCharWidth() - 13;
        QVERIFY2(qAbs(room - metrics.horizontalAdvance(widest)) <= metrics.averageCharWidth(),
            qPrintable(QString::number(room)));
    }

    void requestsWidthOnEachPaintUntilItFits()
    {
        Bar bar;
        bar.resize(20, 300);
        QSignalSpy asked(&bar, &ColorBarWidget::sizeChanging);
        bar.painted();
        bar.painted();
        QCOMPARE(asked.size(), 2);
        const int width = asked.at(0).at(0).toInt();
        bar.resize(width, 300);
        bar.painted();
        QCOMPARE(asked.size(), 2);
        bar.resize(width - 1, 300);
        bar.painted();
        QCOMPARE(asked.size(), 3);
    }

    void pixmapLeavesTheCacheAlone()
    {
        Bar bar;
        for (const bool buffered : { false, true }) {
            bar.m_doubleBuffered = buffered;
            const QPixmap picture = bar.getPixmap();
            QCOMPARE(picture.size(), bar.size());
            QVERIFY(bar.m_pixmap.isNull());
        }
        bar.resize(0, 0);
        QVERIFY(bar.getPixmap().isNull());
    }

    void pixmapBeyondTheMemory()
    {
        Bar bar;
        bar.resize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
        bar.getPixmap(); // the result does not matter
    }

    void clickOnALabelOpensAnEditor_data()
    {
        addColumns<bool, QString>("ofMax", "text");
        QTest::newRow("maximum") << true << "1.23457e+06";
        QTest::newRow("minimum") << false << "0.1";
    }
    void clickOnALabelOpensAnEditor()
    {
        QFETCH(bool, ofMax);
        QFETCH(QString, text);
        Bar bar;
        bar.setMin(0.1);
        bar.setMax(1234567.0);
        bar.show();
        bar.activateWindow();
        QSignalSpy begun(&bar, &ColorBarWidget::beginEditingText);
        QLineEdit* editor = bar.openEditor(ofMax);
        QVERIFY(editor);
        QCOMPARE(begun.size(), 1);
        QCOMPARE(editor->parentWidget(), &bar);
        QCOMPARE(editor->text(), text);
        QCOMPARE(editor->styleSheet(), QString("color:black; background-color:white;"));
        QVERIFY(editor->isVisible());
        TRY_VERIFY(bar.isEditing());
        const QRect label = ofMax ? bar.m_maxRect : bar.m_minRect;
        QCOMPARE(editor->height(), qMin(label.height(), bar.height()));
        // A second click opens no second editor while this one is open.
        QMouseEvent release(
            QEvent::MouseButtonRelease, label.center(), label.center(), Qt::LeftButton, Qt::NoButton, {});
        QCoreApplication::sendEvent(&bar, &release);
        QCOMPARE(bar.m_editLine, editor);
        QCOMPARE(begun.size(), 1);
    }

    void clicksThatOpenNothing_data()
    {
        addColumns<bool, bool, int, bool>("autoScale", "painted", "button", "onTheEdge");
        QTest::newRow("on auto scale") << true << true << int(Qt::LeftButton) << false;
        QTest::newRow("before the first paint") << false << false << int(Qt::LeftButton) << false;
        QTest::newRow("right button") << false << true << int(Qt::RightButton) << false;
        QTest::newRow("very edge of the label") << false << true << int(Qt::LeftButton) << true;
    }
    void clicksThatOpenNothing()
    {
        QFETCH(bool, autoScale);
        QFETCH(bool, painted);
        QFETCH(int, button);
        QFETCH(bool, onTheEdge);
        Bar bar;
        bar.setAutoScale(autoScale);
        if (painted)
            bar.painted();
        const QPoint inside(40, bar.fontMetrics().height());
        const QPoint point = onTheEdge ? QPoint(bar.m_maxRect.left(), inside.y()) : inside;
        PlotMouse(bar).click(point, static_cast<Qt::MouseButton>(button));
        QVERIFY(bar.m_editLine == nullptr);
        QVERIFY(!bar.isEditing());
        if (onTheEdge) {
            PlotMouse(bar).click(point + QPoint(1, 0));
            QVERIFY(bar.m_editLine != nullptr);
        }
    }

    void returnTakesTheValue_data()
    {
        addColumns<bool, QString, double, bool>("ofMax", "text", "value", "refreshed");
        QTest::newRow("maximum") << true << "250" << 250.0 << true;
        QTest::newRow("minimum") << false << "-1.5e3" << -1500.0 << true;
        QTest::newRow("no number is 0") << true << "lots" << 0.0 << true;
        QTest::newRow("nothing is 0") << true << "" << 0.0 << true;
        QTest::newRow("unchanged: reported, not refreshed") << true << "100" << 100.0 << false;
    }
    void returnTakesTheValue()
    {
        QFETCH(bool, ofMax);
        QFETCH(QString, text);
        QFETCH(double, value);
        QFETCH(bool, refreshed);
        Bar bar;
        const QPointer<QLineEdit> editor = bar.openEditor(ofMax);
        QVERIFY(editor);
        bar.wasRefreshed();
        QSignalSpy min(&bar, &ColorBarWidget::onMinChanged);
        QSignalSpy max(&bar, &ColorBarWidget::onMaxChanged);
        QSignalSpy deleted(&bar, &ColorBarWidget::EditLineDeleted);
        bar.type(text);
        QCOMPARE(ofMax ? bar.m_max : bar.m_min, value);
        QCOMPARE(max.size(), ofMax ? 1 : 0);
        QCOMPARE(min.size(), ofMax ? 0 : 1);
        QCOMPARE((ofMax ? max : min).at(0).at(0).toDouble(), value);
        QVERIFY(deleted.isEmpty()); // it was not dropped
        QCOMPARE(bar.wasRefreshed(), refreshed);
        QVERIFY(bar.m_editLine == nullptr);
        QVERIFY(editor);
        QCoreApplication::sendPostedEvents(editor, QEvent::DeferredDelete);
        QVERIFY(editor.isNull());
    }

    void minimumAboveTheMaximumIsPainted()
    {
        Bar bar;
        bar.openEditor(false);
        bar.type("1000");
        QCOMPARE(bar.m_min, 1000.0);
        QCOMPARE(bar.m_max, 100.0);
        QCOMPARE(marksIn(bar.getPixmap().toImage()), 11);
    }

    void pressAbandonsTheEditor()
    {
        Bar bar;
        bar.openEditor(true);
        QSignalSpy deleted(&bar, &ColorBarWidget::EditLineDeleted);
        QSignalSpy max(&bar, &ColorBarWidget::onMaxChanged);
        bar.m_editLine->setText("7");
        bar.setAutoScale(true); // does not close it; a press does, on auto scale too
        QVERIFY(bar.m_editLine != nullptr);
        PlotMouse(bar).press(QPoint(5, 150));
        QVERIFY(bar.m_editLine == nullptr);
        QCOMPARE(deleted.size(), 1);
        QVERIFY(max.isEmpty());
        QCOMPARE(bar.m_max, 100.0);
        PlotMouse(bar).press(QPoint(5, 150));
        QCOMPARE(deleted.size(), 1);
    }

    void deleteEditLineEmitsOnlyForAnEditor()
    {
        Bar bar;
        QSignalSpy deleted(&bar, &ColorBarWidget::EditLineDeleted);
        bar.deleteEditLine();
        QVERIFY(deleted.isEmpty());
        bar.openEditor(false);
        bar.deleteEditLine();
        QCOMPARE(deleted.size(), 1);
        QVERIFY(bar.m_editLine == nullptr);
        bar.onMinEntered(); // does nothing without an editor
        bar.onMaxEntered();
        QCOMPARE(bar.m_min, 0.0);
    }

    void editorIsWiderThanTheLabelAndMovedIn()
    {
        Bar bar;
        for (const bool ofMax : { true, false }) {
            bar.openEditor(ofMax);
            const QRect label = ofMax ? bar.m_maxRect : bar.m_minRect;
            QRect expected = label;
            stretchRect(expected, 1.5, 1.0); // half again as wide
            moveIn(expected, bar.rect());
            QCOMPARE(bar.m_editLine->geometry(), expected);
            QVERIFY(expected.width() > label.width() && expected.top() >= 0 && expected.bottom() < bar.height());
            bar.deleteEditLine();
        }
    }

    void receiverMayDropTheEditorAtOnce()
    {
        Bar bar;
        connect(&bar, &ColorBarWidget::beginEditingText, &bar, [&bar] { bar.deleteEditLine(); });
        QVERIFY(bar.openEditor(true) == nullptr);
    }
};

QTEST_MAIN(TestColorBarWidget)
#include "tst_colorbarwidget.moc"
