#include "support/support.h"

#include <QFile>
#include <QFileInfo>

#include <malloc.h>
#include <unistd.h>

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

qint64 residentBytes(qint64 processId)
{
    // By default the allocator raises this threshold and then keeps the large blocks that a thread has freed.
    if (processId == 0 && ::mallopt(M_MMAP_THRESHOLD, 1 << 17) == 1)
        ::malloc_trim(0);
    QFile file(QStringLiteral("/proc/%1/statm").arg(processId == 0 ? ::getpid() : processId));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLongLong() * ::sysconf(_SC_PAGESIZE);
}

bool hasGrownLessThan(qint64 mebibytes, qint64 before)
{
#ifdef __SANITIZE_ADDRESS__
    return residentBytes() > 0 && before > 0 && mebibytes > 0;
#else
    return residentBytes() - before < mebibytes << 20;
#endif
}

} // namespace tarnis::testing
