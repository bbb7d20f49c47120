// The mouse on a plot as a state machine: the states, and what each event does in them. No widget.
#pragma once

#include "tarnis/plots/plottool_p.h"

namespace tarnis {

/// What a plot does with the mouse. The plots keep the state in members that subclasses read and write (m_mode and
/// m_selecting of XYGraphWidget); this names it.
enum class MouseState {
    Idle, ///< no tool: a click on an end label opens its editor
    BandReady, ///< Rectangle, or a selection: a press begins a rubber band
    BandDrag, ///< the rubber band follows the pointer; its release ends it
    ZoomInReady, ///< a press zooms in; a click on an end label opens its editor
    ZoomOutReady, ///< a press zooms out; a click on an end label opens its editor
    MoveReady, ///< a press takes hold of the plot
    MoveDrag, ///< the plot follows the pointer
};

/// `tool` is a PlotTool; a tool without drags ignores `isDragging`, which may be left from another one.
MouseState mouseState(int tool, bool isDragging);

/// What a plot does next.
enum class MouseStep { Nothing, BeginBand, StretchBand, EndBand, ZoomIn, ZoomOut, BeginMove, Move, EndMove, EditLabel };

/// The step for each event of the left button; a press is inside of the plot rectangle. @{
MouseStep stepAtPress(MouseState state);
MouseStep stepAtMove(MouseState state);
MouseStep stepAtRelease(MouseState state);
/// @}

/// What the edges of a map's cut do with the mouse, kept in m_1dCutActive, m_cutDragEdge and m_edit.
enum class EdgeState {
    Away, ///< there is no cut, or a tool has the mouse
    Ready, ///< a press near an edge takes hold of it
    Held, ///< the edge goes to where the button is released
    InEditor, ///< the edge's value is typed
};

EdgeState edgeState(MouseState mouse, bool isCutActive, bool hasEdge, bool hasEditor);

} // namespace tarnis
