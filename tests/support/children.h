// Children of windows by their names.
#pragma once

#include <QAction>
#include <QWidget>

namespace tarnis::testing {

/// The child with this object name, at any depth; the test ends if there is none.
template <typename Object> Object& child(const QObject& window, const char* name)
{
    auto* const object = window.findChild<Object*>(QLatin1String(name));
    if (!object)
        qFatal("no %s", name);
    return *object;
}

/// The action with this text, without the mark of its key, of a plot or a menu; null without one.
inline QAction* entryOf(const QWidget& widget, const QString& text)
{
    for (QAction* const action : widget.actions()) {
        if (action->text().remove(u'&') == text)
            return action;
    }
    return nullptr;
}

} // namespace tarnis::testing
