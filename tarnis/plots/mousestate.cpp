#include "tarnis/plots/mousestate_p.h"

namespace tarnis {

MouseState mouseState(int tool, bool isDragging)
{
    switch (tool) {
    case RubberBandTool:
        return isDragging ? MouseState::BandDrag : MouseState::BandReady;
    case ZoomInTool:
        return MouseState::ZoomInReady;
    case ZoomOutTool:
        return MouseState::ZoomOutReady;
    case MoveTool:
        return isDragging ? MouseState::MoveDrag : MouseState::MoveReady;
    default:
        return MouseState::Idle;
    }
}

MouseStep stepAtPress(MouseState state)
{
    switch (state) {
    case MouseState::BandReady:
    case MouseState::BandDrag: // the release went elsewhere: the press begins another one
        return MouseStep::BeginBand;
    case MouseState::ZoomInReady:
        return MouseStep::ZoomIn;
    case MouseState::ZoomOutReady:
        return MouseStep::ZoomOut;
    case MouseState::MoveReady:
    case MouseState::MoveDrag:
        return MouseStep::BeginMove;
    case MouseState::Idle:
        break;
    }
    return MouseStep::Nothing;
}

MouseStep stepAtMove(MouseState state)
{
    switch (state) {
    case MouseState::BandDrag:
        return MouseStep::StretchBand;
    case MouseState::MoveDrag:
        return MouseStep::Move;
    default:
        return MouseStep::Nothing;
    }
}

MouseStep stepAtRelease(MouseState state)
{
    switch (state) {
    case MouseState::BandDrag:
        return MouseStep::EndBand;
    case MouseState::MoveReady: // pressed outside of the plot rectangle; the cursor is set all the same
    case MouseState::MoveDrag:
        return MouseStep::EndMove;
    case MouseState::Idle:
    case MouseState::ZoomInReady:
    case MouseState::ZoomOutReady:
        return MouseStep::EditLabel;
    case MouseState::BandReady:
        break;
    }
    return MouseStep::Nothing;
}

EdgeState edgeState(MouseState mouse, bool isCutActive, bool hasEdge, bool hasEditor)
{
    const bool isBandTool = mouse == MouseState::BandReady || mouse == MouseState::BandDrag;
    if (!isBandTool || !isCutActive)
        return EdgeState::Away;
    if (hasEdge)
        return hasEditor ? EdgeState::InEditor : EdgeState::Held;
    return mouse == MouseState::BandReady ? EdgeState::Ready : EdgeState::Away;
}

} // namespace tarnis
