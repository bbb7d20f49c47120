// The edges of a cut: dragged and typed.
#include "plots/cutmap.h"
#include "support/cases.h"

#include <QTest>

using namespace tarnis::testing;

namespace {

using Plot = CutMap;

} // namespace

class TestXY2DCutEdges : public QObject {
    Q_OBJECT

private Q_SLOTS:

    // Edges
    void edgeTakesThePress_data()
    {
        addColumns<QPoint, int, int>("point", "edge", "cursor");
        // The rectangle from 2 to 6 and from 1 to 5 covers the pixels 90 to 169 and 100 to 179.
        QTest::newRow("left") << QPoint(86, 140) << 1 << int(Qt::SplitHCursor);
        QTest::newRow("right") << QPoint(173, 140) << 2 << int(Qt::SplitHCursor);
        QTest::newRow("top") << QPoint(130, 104) << 3 << int(Qt::SplitVCursor);
        QTest::newRow("bottom") << QPoint(130, 175) << 4 << int(Qt::SplitVCursor);
        QTest::newRow("top left corner: left") << QPoint(92, 98) << 1 << int(Qt::SplitHCursor);
        QTest::newRow("bottom right corner: right") << QPoint(170, 180) << 2 << int(Qt::SplitHCursor);
        QTest::newRow("along the left edge, far below") << QPoint(90, 195) << 1 << int(Qt::SplitHCursor);
    }
    void edgeTakesThePress()
    {
        QFETCH(QPoint, point);
        QFETCH(int, edge);
        QFETCH(int, cursor);
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setCut(2.0, 6.0, 1.0, 5.0);
        QCOMPARE(plot.m_cutPixelRect, QRect(QPoint(90, 100), QPoint(169, 179)));
        PlotMouse(plot).press(point);
        QCOMPARE(plot.m_cutDragEdge, edge);
        QCOMPARE(int(plot.cursor().shape()), cursor);
        QVERIFY(!plot.m_selecting && plot.m_edit == nullptr);
        QCOMPARE(plot.m_pressPos, point);
    }

    void pressBesideTheEdgesStartsARubberBand()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setCut(2.0, 6.0, 1.0, 5.0);
        PlotMouse(plot).press(QPoint(130, 140));
        QCOMPARE(plot.m_cutDragEdge, 0);
        QVERIFY(plot.m_selecting);
    }

    void pressOutsideOfTheGraphTakesNothing()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setCut(0.0, 10.0, 0.0, 8.0); // the left edge is at the graph's
        PlotMouse(plot).press(QPoint(48, 140));
        QCOMPARE(plot.m_cutDragEdge, 0);
        QVERIFY(!plot.m_selecting);
        PlotMouse(plot).press(QPoint(52, 140));
        QCOMPARE(plot.m_cutDragEdge, 1);
    }

    void dragsAnEdge_data()
    {
        addColumns<QPoint, QPoint, QRectF>("from", "to", "cut");
        addCase("left to the right, outward to whole bins", QPoint(90, 140), QPoint(119, 10), rect(3, 6, 1, 5));
        addCase("right to the left", QPoint(169, 140), QPoint(140, 140), rect(2, 5, 1, 5));
        addCase("top up", QPoint(130, 100), QPoint(130, 60), rect(2, 6, 1, 7));
        addCase("bottom down", QPoint(130, 179), QPoint(130, 199), rect(2, 6, 0, 5));
        addCase("left beyond right: swapped", QPoint(90, 140), QPoint(215, 140), rect(6, 9, 1, 5));
        addCase("bottom beyond top: swapped", QPoint(130, 179), QPoint(130, 61), rect(2, 6, 5, 7));
        addCase("right out of the graph", QPoint(169, 140), QPoint(390, 140), rect(2, 10, 1, 5));
        addCase("top out of the graph", QPoint(130, 100), QPoint(130, 1), rect(2, 6, 1, 8));
    }
    void dragsAnEdge()
    {
        QFETCH(QPoint, from);
        QFETCH(QPoint, to);
        QFETCH(QRectF, cut);
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setCut(2.0, 6.0, 1.0, 5.0);
        PlotMouse(plot).drag(from, to);
        QCOMPARE(plot.cut(), cut);
        QCOMPARE(plot.m_cutDragEdge, 0);
        QCOMPARE(plot.cursor().shape(), Qt::ArrowCursor);
        QCOMPARE(plot.plotX()->*(&CutView::m_data), oracleCutX(plot.mapState(), plot.cutState(), "y").values);
    }

    void dragShowsNothingUntilTheRelease()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setCut(2.0, 6.0, 1.0, 5.0);
        PlotMouse mouse(plot);
        mouse.press(QPoint(90, 140));
        plot.wasRefreshed();
        mouse.move(QPoint(120, 140));
        QCOMPARE(plot.cut(), rect(2, 6, 1, 5));
        QVERIFY(!plot.wasRefreshed());
        mouse.release(QPoint(120, 140));
        QVERIFY(plot.wasRefreshed());
    }

    void typesAnEdge_data()
    {
        addColumns<QPoint, QString, QString, QRectF>("point", "shown", "typed", "cut");
        addCase("left", QPoint(90, 140), "2", "3.4", rect(3, 6, 1, 5));
        addCase("right", QPoint(169, 140), "6", "7.2", rect(2, 8, 1, 5));
        addCase("top", QPoint(130, 100), "5", "8", rect(2, 6, 1, 8));
        addCase("bottom", QPoint(130, 179), "1", "0", rect(2, 6, 0, 5));
        addCase("left beyond right: swapped", QPoint(90, 140), "2", "9", rect(6, 9, 1, 5));
        addCase("top below bottom: swapped", QPoint(130, 100), "5", "0.5", rect(2, 6, 0, 1));
        addCase("no number is 0", QPoint(90, 140), "2", "left", rect(0, 6, 1, 5));
        addCase("upper end included", QPoint(169, 140), "6", "10", rect(2, 10, 1, 5));
    }
    void typesAnEdge()
    {
        QFETCH(QPoint, point);
        QFETCH(QString, shown);
        QFETCH(QString, typed);
        QFETCH(QRectF, cut);
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setCut(2.0, 6.0, 1.0, 5.0);
        PlotMouse(plot).press(point, Qt::RightButton);
        const QPointer<QLineEdit> editor = plot.m_edit;
        QVERIFY(editor);
        QCOMPARE(editor->text(), shown);
        QCOMPARE(editor->styleSheet(), QString("color:black; background-color:white;"));
        QCOMPARE(editor->pos(), point);
        QVERIFY(plot.findChild<QMenu*>() == nullptr);
        editor->setText(typed);
        plot.wasRefreshed();
        QTest::keyClick(editor, Qt::Key_Return);
        QCOMPARE(plot.cut(), cut);
        QCOMPARE(plot.m_cutDragEdge, 0);
        QVERIFY(plot.m_edit == nullptr && plot.wasRefreshed());
        QCOMPARE(plot.m_cutRangeDialog->*(&BoxView::m_xMin), cut.left());
        QCOMPARE(plot.m_cutRangeDialog->*(&BoxView::m_yMax), cut.bottom());
        QCOMPARE(plot.plotY()->*(&CutView::m_data), oracleCutY(plot.mapState(), plot.cutState(), "x").values);
        QCoreApplication::sendPostedEvents(editor, QEvent::DeferredDelete);
        QVERIFY(editor.isNull());
    }

    void typedValueOutOfSightIsIgnored()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setMinMaxX(1.0, 9.0);
        plot.setCut(2.0, 6.0, 1.0, 5.0);
        for (const char* text : { "0.99", "9.01", "1e99", "nan" }) {
            plot.useRoundPixels();
            PlotMouse(plot).press(QPoint(plot.m_cutPixelRect.left(), 140), Qt::RightButton);
            QVERIFY(plot.m_edit);
            plot.m_edit->setText(text);
            QTest::keyClick(plot.m_edit, Qt::Key_Return);
            QVERIFY(plot.m_edit == nullptr);
            QCOMPARE(plot.cut(), rect(2, 6, 1, 5));
            QCOMPARE(plot.m_cutDragEdge, 0);
        }
    }

    void editorIsDroppedByAPress()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setCut(2.0, 6.0, 1.0, 5.0);
        PlotMouse mouse(plot);
        mouse.press(QPoint(90, 140), Qt::RightButton);
        const QPointer<QLineEdit> first = plot.m_edit;
        mouse.press(QPoint(169, 140), Qt::RightButton); // another edge, another editor
        QVERIFY(plot.m_edit && plot.m_edit != first);
        QCOMPARE(plot.m_edit->text(), QString("6"));
        mouse.press(QPoint(130, 140)); // beside all edges
        QVERIFY(plot.m_edit == nullptr);
        QCOMPARE(plot.cut(), rect(2, 6, 1, 5));
    }

    void releaseWithAnEditorKeepsTheEdge()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setCut(2.0, 6.0, 1.0, 5.0);
        PlotMouse mouse(plot);
        mouse.press(QPoint(90, 140), Qt::RightButton);
        mouse.release(QPoint(90, 140), Qt::RightButton);
        QVERIFY(plot.m_edit);
        mouse.release(QPoint(150, 140)); // of the left button
        QVERIFY(plot.m_edit == nullptr);
        QCOMPARE(plot.m_cutDragEdge, 1);
        QCOMPARE(plot.cut(), rect(2, 6, 1, 5));
    }

    void enteringWithoutAnEdge()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setCut(2.0, 6.0, 1.0, 5.0);
        PlotMouse(plot).press(QPoint(90, 140), Qt::RightButton);
        plot.m_cutDragEdge = 0;
        plot.m_edit->setText("4");
        plot.on1dCutEntered();
        QCOMPARE(plot.cut(), rect(2, 6, 1, 5));
        plot.on1dCutEntered(); // without an editor
        QCOMPARE(plot.cut(), rect(2, 6, 1, 5));
    }
};

QTEST_MAIN(TestXY2DCutEdges)
#include "tst_xy2dcutedges.moc"
