#include "referencedata.h"

#include "support/support.h"

#include <QFile>
#include <QJsonDocument>
#include <QTest>

#include <cmath>

namespace tarnis::testing {

std::optional<QJsonObject> referenceNumbers(const QString& relativePath)
{
    const auto path = sharedData(QStringLiteral("analysis/") + relativePath);
    if (!path)
        return std::nullopt;
    QFile file(*path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return QJsonDocument::fromJson(file.readAll()).object();
}

std::vector<double> spectrumAt(const QString& relativePath)
{
    std::vector<double> counts;
    const auto path = sharedData(relativePath);
    QFile file(path.value_or(QString()));
    if (!path || !file.open(QIODevice::ReadOnly))
        return counts;
    const QList<QByteArray> lines = file.readAll().split('\n');
    qsizetype line = 0;
    if (relativePath.endsWith(QStringLiteral(".spe"))) {
        while (line < lines.size() && !lines[line].startsWith("$DATA:"))
            ++line;
        line += 2;
    }
    for (; line < lines.size() && !lines[line].startsWith('$'); ++line) {
        for (const QByteArray& word : lines[line].simplified().split(' ')) {
            if (!word.isEmpty())
                counts.push_back(word.toDouble());
        }
    }
    return counts;
}

bool agrees(const QString& what, double found, double expected, double tolerance)
{
    const bool same = std::isnan(expected) ? std::isnan(found) : std::fabs(found - expected) <= tolerance;
    if (!same)
        qWarning("%s: %.12g instead of %.12g, tolerance %.3g", qPrintable(what), found, expected, tolerance);
    return same;
}

bool agreesRelatively(const QString& what, double found, double expected, double tolerance)
{
    return agrees(what, found, expected, tolerance * std::fabs(expected));
}

} // namespace tarnis::testing
