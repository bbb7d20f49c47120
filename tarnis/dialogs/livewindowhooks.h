// What a subclass of a live window can learn about replies.
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
    QString text; ///< what the message box shows, in the current language
    QString replyText; ///< the text behind the payload
    qint64 values = 0; ///< in the payload
    int binsX = 0; ///< of a map, as the reply or the window says
    int binsY = 0; ///< as binsX
};

/// A reply to a poll that a live window has drawn.
struct TARNIS_EXPORT DrawnReply {
    qint64 values = 0; ///< numbers that are drawn
    qint64 notFinite = 0; ///< of these, NaN or infinite: the plot has no place for them
};

/// Called by Graph1DDialog and Graph2DDialog on the GUI thread. Empty at first: the window then behaves as without.
struct TARNIS_EXPORT LiveWindowHooks {
    /// Returns true if the reply has been dealt with: no message box is shown, the plot and its axis stay as they are,
    /// and the polling goes on. Otherwise, and without a hook, the message box is shown and the polling stops.
    std::function<bool(const UndrawnReply& reply)> onUndrawn;
    /// After each reply that was drawn, before the signal onGraphUpdated(). Counting costs a pass over the values,
    /// which is saved without a hook.
    std::function<void(const DrawnReply& reply)> onDrawn;
};

} // namespace tarnis
