// The command line, and the options from the environment that precede it.
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
    QString message; ///< text to print for Help, Version and Fail

    quint16 port = 0; ///< 0: a free one
    QByteArray prompt = "> ";
    QString root; ///< empty: a temporary directory of samples
    QString settingsFile; ///< empty: none is read
    QString spectrumFile; ///< empty: none
    QString logFile; ///< empty: none
    int logLevel = 0;
    int maxClients = 512;
    Fault fault = Fault::None;
    int faultEvery = 1;
    int faultDelayMs = -1; ///< below 0: the default of the fault
    bool start = false; ///< start a run at once
    bool useStandardInput = true;
    QList<Settings::Pair> settings; ///< given as options; they override the file
};

/// The environment variable whose words precede those of the command line.
inline constexpr const char* environmentName = "TARNIS_SIMSERVER_OPTIONS";

/// `arguments` begins with the program's name; `environment` is the variable's value, quoted as in a shell. Later
/// options override earlier ones.
Options parseOptions(const QStringList& arguments, const QString& environment);

} // namespace simserver
