#include "referencedata.h"

#include "support/support.h"

#include <QFile>
#include <QJsonDocument>
#include <QTest>

#include <cmath>

namespace tarnis::testing {

namespace {
QByteArray contentsOf(const QString& relativePath)
{
    QFile file(testData(relativePath));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
    return file.readAll();
}
} // namespace

QJsonObject referenceNumbers(const QString& relativePath)
{
    return QJsonDocument::fromJson(contentsOf(QStringLiteral("analysis/") + relativePath)).object();
}

std::vector<double> spectrumAt(const QString& relativePath)
{
    std::vector<double> counts;
    const QList<QByteArray> lines = contentsOf(relativePath).split('\n');
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
