// The reader of files of calibration lines: an error, or lines with finite positive energies in ascending order.
#include <tarnis/analysis/calibrationlines.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray text(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const tarnis::CalibrationLines read = tarnis::linesFromText(text);
    if (read.error.isEmpty() == read.lines.empty())
        std::abort();
    double previous = 0.0;
    for (const tarnis::CalibrationLine& line : read.lines) {
        if (!std::isfinite(line.energy) || line.energy < previous || !(line.energyError >= 0.0))
            std::abort();
        previous = line.energy;
    }
    return 0;
}
