// The states of the mouse on a plot, and what each event does in them: the whole table.
#include "support/cases.h"
#include "tarnis/plots/mousestate_p.h"

#include <QTest>

using namespace tarnis;
using namespace tarnis::testing;

class TestMouseState : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void toolAndDragMakeAState_data()
    {
        addColumns<int, bool, int>("tool", "isDragging", "state");
        const auto row = [](const char* name, int tool, bool isDragging, MouseState state) {
            QTest::newRow(name) << tool << isDragging << int(state);
        };
        row("no tool", NoTool, false, MouseState::Idle);
        row("no tool, a drag left over", NoTool, true, MouseState::Idle);
        row("rubber band", RubberBandTool, false, MouseState::BandReady);
        row("rubber band, dragging", RubberBandTool, true, MouseState::BandDrag);
        row("zoom in", ZoomInTool, false, MouseState::ZoomInReady);
        row("zoom in, a drag left over", ZoomInTool, true, MouseState::ZoomInReady);
        row("zoom out", ZoomOutTool, false, MouseState::ZoomOutReady);
        row("move", MoveTool, false, MouseState::MoveReady);
        row("move, dragging", MoveTool, true, MouseState::MoveDrag);
        row("a number that a subclass has set", 17, true, MouseState::Idle);
    }
    void toolAndDragMakeAState()
    {
        QFETCH(int, tool);
        QFETCH(bool, isDragging);
        QFETCH(int, state);
        QCOMPARE(int(mouseState(tool, isDragging)), state);
    }

    void eventsHaveStepsInEveryState_data()
    {
        addColumns<int, int, int, int>("state", "press", "move", "release");
        const auto row = [](const char* name, MouseState state, MouseStep press, MouseStep move, MouseStep release) {
            QTest::newRow(name) << int(state) << int(press) << int(move) << int(release);
        };
        using enum MouseStep;
        row("idle", MouseState::Idle, Nothing, Nothing, EditLabel);
        row("band ready", MouseState::BandReady, BeginBand, Nothing, Nothing);
        row("band drag", MouseState::BandDrag, BeginBand, StretchBand, EndBand);
        row("zoom in", MouseState::ZoomInReady, ZoomIn, Nothing, EditLabel);
        row("zoom out", MouseState::ZoomOutReady, ZoomOut, Nothing, EditLabel);
        row("move ready", MouseState::MoveReady, BeginMove, Nothing, EndMove);
        row("move drag", MouseState::MoveDrag, BeginMove, MouseStep::Move, EndMove);
    }
    void eventsHaveStepsInEveryState()
    {
        QFETCH(int, state);
        QFETCH(int, press);
        QFETCH(int, move);
        QFETCH(int, release);
        QCOMPARE(int(stepAtPress(MouseState(state))), press);
        QCOMPARE(int(stepAtMove(MouseState(state))), move);
        QCOMPARE(int(stepAtRelease(MouseState(state))), release);
    }

    void edgesNeedACutAndTheBandTool()
    {
        for (const bool hasEdge : { false, true }) {
            for (const bool hasEditor : { false, true }) {
                QCOMPARE(edgeState(MouseState::BandReady, false, hasEdge, hasEditor), EdgeState::Away);
                QCOMPARE(edgeState(MouseState::ZoomInReady, true, hasEdge, hasEditor), EdgeState::Away);
                QCOMPARE(edgeState(MouseState::Idle, true, hasEdge, hasEditor), EdgeState::Away);
            }
        }
        QCOMPARE(edgeState(MouseState::BandReady, true, false, false), EdgeState::Ready);
        QCOMPARE(edgeState(MouseState::BandReady, true, false, true), EdgeState::Ready); // the editor of a label
        QCOMPARE(edgeState(MouseState::BandDrag, true, false, false), EdgeState::Away);
    }

    void edgeIsHeldOrInTheEditor()
    {
        for (const MouseState mouse : { MouseState::BandReady, MouseState::BandDrag }) {
            QCOMPARE(edgeState(mouse, true, true, false), EdgeState::Held);
            QCOMPARE(edgeState(mouse, true, true, true), EdgeState::InEditor);
        }
    }
};

QTEST_APPLESS_MAIN(TestMouseState)
#include "tst_mousestate.moc"
