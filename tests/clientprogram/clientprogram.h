// Runs the program tarnis like a shell.
#pragma once

#include "support/wait.h"

#include <tarnis/foundation/files.h>

#include <QByteArray>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

namespace clienttest {

using tarnis::testing::timeoutMs;

/// The result of a run of the program.
struct Run {
    int exitCode = -1; ///< 128 + signal if a signal ended it
    QByteArray output;
    QByteArray errors;

    /// One line that begins with "tarnis: ".
    bool hasOneLineOfError() const
    {
        return errors.startsWith("tarnis: ") && errors.indexOf('\n') == errors.size() - 1;
    }
};

inline Run finish(QProcess& process)
{
    if (!process.waitForFinished(timeoutMs))
        qFatal("tarnis does not end");
    return { .exitCode = process.exitStatus() == QProcess::CrashExit ? 128 + process.exitCode() : process.exitCode(),
        .output = process.readAllStandardOutput(),
        .errors = process.readAllStandardError() };
}

inline Run runTarnis(const QStringList& words, const QByteArray& input = {})
{
    QProcess process;
    process.start(QStringLiteral(CLIENT_PATH), words);
    process.write(input);
    process.closeWriteChannel();
    return finish(process);
}

/// The same through a shell, for redirections and pipes. "$TARNIS" is the program.
inline Run shell(const QString& line)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TARNIS"), QStringLiteral(CLIENT_PATH));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral("/bin/bash"), { QStringLiteral("-c"), line });
    return finish(process);
}

/// A folder for the files of a test.
class ScratchFolder {
public:
    QString path(const QString& name) const { return m_folder.filePath(name); }
    /// Writes a file and returns its path.
    QString write(const QString& name, const QByteArray& content) const
    {
        if (!tarnis::writeFile(path(name), content).isEmpty())
            qFatal("no scratch file");
        return path(name);
    }

protected:
    QTemporaryDir m_folder;
};

} // namespace clienttest
