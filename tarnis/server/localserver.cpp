#include "tarnis/server/localserver_p.h"

#include <QDir>
#include <QFileInfo>

namespace tarnis {

QString workingDirectory(const QString& processPath)
{
    const QString program = QDir::toNativeSeparators(processPath.split(QLatin1Char(' ')).constFirst());
    return QFileInfo(program).path() + QDir::separator();
}

std::optional<quint16> announcedPort(const QString& output)
{
    const QLatin1String label("UI port:");
    const qsizetype found = output.indexOf(label);
    if (found < 0)
        return std::nullopt;
    const QString behind = output.mid(found + label.size());
    // Empty without a line feed: the server writes the line in one piece.
    return behind.left(behind.indexOf(QLatin1Char('\n')) + 1).toUShort();
}

} // namespace tarnis
