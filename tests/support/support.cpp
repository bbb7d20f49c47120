#include "support/support.h"

#include <QFileInfo>

namespace tarnis::testing {

QString testData(const QString& relativePath)
{
    const QString path = QStringLiteral(TARNIS_TEST_DATA "/") + relativePath;
    if (!QFileInfo::exists(path))
        qFatal("%s is missing", qPrintable(path));
    return path;
}

std::mt19937_64 seededGenerator(unsigned long long salt)
{
    const unsigned long long seed = qEnvironmentVariable("TARNIS_TEST_SEED", "20260101").toULongLong();
    return std::mt19937_64(seed * 0x9E3779B97F4A7C15ULL + salt);
}

} // namespace tarnis::testing
