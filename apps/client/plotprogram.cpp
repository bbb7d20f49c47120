// The part of `tarnis plot` that links no widgets.
#include "plot.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <cstdlib>
#include <vector>

#include <unistd.h>

namespace cli {

namespace {

Failure missing()
{
    return { .code = FileError, .text = "figures need the program tarnis-plot, which is not installed: install it" };
}

/// The program in this program's folder (in a build folder), or in the libexec folder.
QString plotProgram()
{
    const QString folder = QCoreApplication::applicationDirPath();
    for (const char* const place : { "/" TARNIS_LIBEXEC "/tarnis-plot", "/tarnis-plot" }) {
        const QFileInfo file(folder + QLatin1String(place));
        if (file.isExecutable())
            return file.canonicalFilePath();
    }
    return {};
}

} // namespace

Outcome plot(const Arguments& /*arguments*/)
{
    const QString program = plotProgram();
    if (program.isEmpty())
        return missing();
    std::vector<QByteArray> words { QFile::encodeName(program) };
    for (const QString& word : QCoreApplication::arguments().mid(1))
        words.push_back(word.toLocal8Bit());
    std::vector<char*> pointers;
    for (QByteArray& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    // The other program replaces this process, including exit code, signals and standard streams.
    ::execv(words.front().constData(), pointers.data());
    return missing();
}

Outcome runPlotProgram(const QStringList& words, const QByteArray& input)
{
    const QString program = plotProgram();
    if (program.isEmpty())
        return missing();
    QProcess process;
    process.start(program, words + QStringList { QStringLiteral("--json") });
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit)
        return missing();
    if (process.exitCode() == Done)
        return std::nullopt;
    const QJsonObject report = QJsonDocument::fromJson(process.readAllStandardOutput()).object();
    return Failure { .code = static_cast<ExitCode>(process.exitCode()), .text = report.value("error").toString() };
}

} // namespace cli
