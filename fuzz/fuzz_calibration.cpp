// The reader of calibration files: an error, or a calibration that is unchanged after writing and reading it.
#include <tarnis/analysis/energycalibration.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray text(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const tarnis::CalibrationResult read = tarnis::calibrationFromJson(text);
    if (!read.error.isEmpty()) {
        if (read.calibration.isValid())
            std::abort();
        return 0;
    }
    if (!read.calibration.isValid())
        std::abort();
    const tarnis::CalibrationResult again = tarnis::calibrationFromJson(tarnis::calibrationToJson(read.calibration));
    if (!again.error.isEmpty() || again.calibration.coefficients != read.calibration.coefficients)
        std::abort();
    const double energy = read.calibration.energyAt(100.0);
    const double position = read.calibration.positionOf(energy);
    // The position of an energy is finite or NaN, and the search ends.
    if (std::isinf(position))
        std::abort();
    return 0;
}
