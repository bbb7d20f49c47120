// What benchmarks with windows do before they create the application.
#pragma once

#include <QLoggingCategory>
#include <QString>
#include <QtGlobal>

/// Selects the platform without a screen, unless QT_QPA_PLATFORM names one, and turns the library's traces off.
inline void prepareHeadless()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QLoggingCategory::setFilterRules(QStringLiteral("tarnis.*.debug=false"));
}
