// Signals and slots as a class declares them.
#pragma once

#include <QMetaMethod>
#include <QStringList>

namespace tarnis::testing {

/// What the class itself declares, in its order: "signal name(types)", "slot name(types)".
inline QStringList ownMethods(const QMetaObject& meta)
{
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        methods.append((method.methodType() == QMetaMethod::Signal ? "signal " : "slot ") + method.methodSignature());
    }
    return methods;
}

/// The names of the parameters of the method with this signature, for example "peakSelected(int)".
inline QByteArrayList parameterNames(const QMetaObject& meta, const char* signature)
{
    return meta.method(meta.indexOfMethod(signature)).parameterNames();
}

} // namespace tarnis::testing
