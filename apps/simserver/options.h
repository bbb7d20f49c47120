// The command line, and the options that stand in the environment before it.
#pragma once

#include "faults.h"
#include "settings.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace simserver {

struct Options {
    enum class Action { Run, Help, Version, Fail };

    Action action = Action::Run;
    QString message; ///< what to print for Help, Version and Fail

    quint16 port = 0; ///< 0: a free one
    QByteArray prompt = "> ";
    QString root; ///< empty: a directory of samples that goes with the process
    QString settingsFile; ///< empty: none is read
    QString spectrumFile; ///< empty: none
    QString logFile; ///< empty: none
    int logLevel = 0;
    int maxClients = 512;
    Fault fault = Fault::None;
    int faultEvery = 1;
    int faultDelayMs = -1; ///< below 0: the usual one of the fault
    bool start = false; ///< begin a run at once
    bool useStandardInput = true;
    QList<Settings::Pair> settings; ///< given as options; they stand above the file
};

/// The environment variable whose words stand before the command line's.
inline constexpr const char* environmentName = "TARNIS_SIMSERVER_OPTIONS";

/// `arguments` begins with the program's name; `environment` is the variable's value, quoted as in a shell. Later
/// options stand above earlier ones.
Options parseOptions(const QStringList& arguments, const QString& environment);

} // namespace simserver
