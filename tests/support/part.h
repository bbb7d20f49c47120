// Parts of windows by their names.
#pragma once

#include <QObject>

namespace tarnis::testing {

/// The child with this object name, at any depth; the test ends if there is none.
template <typename Object> Object& part(const QObject& window, const char* name)
{
    auto* const object = window.findChild<Object*>(QLatin1String(name));
    if (!object)
        qFatal("no %s", name);
    return *object;
}

} // namespace tarnis::testing
