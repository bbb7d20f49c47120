#include "samples.h"

#include <QDir>
#include <QFile>

#include <array>

namespace simserver {

namespace {

constexpr std::array<const char*, 8> directories { "calibration", "config", "config/old", "data",
    "data/SIM000001_20250311", "data/SIM000002_20250312", "data/test beam \"A\"", "data/M\u00fcller" };

struct Sample {
    const char* name;
    const char* content;
};

constexpr std::array<Sample, 8> samples { {
    { "README.txt", "Samples of the simulated server. They go when it ends.\n" },
    { "calibration/energy.txt", "0.0 0.1828\n" },
    { "config/default.set", "rate: 1000\nmodules: 8\n" },
    { "config/high rate.set", "rate: 100000\nmodules: 8\n" },
    { "config/old/first.set", "rate: 10\nmodules: 1\n" },
    { "data/SIM000001_20250311/run.txt", "run: 1\nevents: 120034\n" },
    { "data/SIM000002_20250312/run.txt", "run: 2\nevents: 98211\n" },
    { "data/M\u00fcller/notes.txt", "beam on at 10:20\n" },
} };

} // namespace

QString makeSamples(const QString& directory)
{
    const QDir root(directory);
    for (const char* const name : directories) {
        if (!root.mkpath(QString::fromUtf8(name)))
            return QStringLiteral("cannot make the directory '%1'").arg(root.filePath(QString::fromUtf8(name)));
    }
    for (const Sample& sample : samples) {
        QFile file(root.filePath(QString::fromUtf8(sample.name)));
        if (!file.open(QIODevice::WriteOnly) || file.write(sample.content) < 0 || !file.flush())
            return QStringLiteral("cannot write '%1': %2").arg(file.fileName(), file.errorString());
    }
    return {};
}

} // namespace simserver
