// Hooks by which a subclass of a live window is informed about replies.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QString>

#include <functional>

namespace tarnis {

/// A reply to a poll that a live window does not draw.
struct TARNIS_EXPORT UndrawnReply {
    /// Why it is not drawn.
    enum class Reason {
        NoAxis, ///< pairs without "(min max bins)" at the end of the text
        OutsideAxis, ///< a pair outside of the axis
        SizeMismatch, ///< a map whose values do not fill its bins
        TooLarge, ///< more values or bins than the window accepts
    };
    Reason reason = Reason::NoAxis; ///< see Reason
    QString text; ///< the text of the message box, in the current language
    QString replyText; ///< the text after the payload
    qint64 values = 0; ///< number of values in the payload
    int binsX = 0; ///< bins of a map, according to the reply or the window
    int binsY = 0; ///< as binsX
};

/// A reply to a poll that a live window has drawn.
struct TARNIS_EXPORT DrawnReply {
    qint64 values = 0; ///< number of values in the reply
    qint64 notFinite = 0; ///< of these, NaN or infinite, which the plot cannot show
    qint64 unusedBytes = 0; ///< at the end of the payload: part of a value, or of a bin of some rows only; not shown
};

/// Called by Graph1DDialog and Graph2DDialog on the GUI thread. By default the functions are empty and have no effect.
struct TARNIS_EXPORT LiveWindowHooks {
    /// Returns true if the hook has handled the reply: no message box is shown, the plot and its axis are unchanged,
    /// and the polling continues. Otherwise, and without a hook, the message box is shown and the polling stops.
    std::function<bool(const UndrawnReply& reply)> onUndrawn;
    /// Called after each reply that was drawn, before the signal onGraphUpdated(). Counting needs a pass over the
    /// values, which is skipped without a hook.
    std::function<void(const DrawnReply& reply)> onDrawn;
};

} // namespace tarnis
