// Datasets for tests of the formats: every shape, awkward numbers and texts.
#pragma once

#include <tarnis/formats/dataset.h>

#include <QByteArray>
#include <QTest>
#include <QTimeZone>

#include <bit>
#include <cstdint>
#include <limits>
#include <random>

namespace tarnis::testing {

/// Numbers from all of double, integers among them.
inline std::vector<double> awkwardNumbers(std::size_t count, std::uint64_t seed)
{
    std::mt19937_64 random(seed);
    std::vector<double> numbers { 0.0, -0.0, 1.0, 100000.0, 123456789012.0, 0.1, 1e300, -2.5e-310, 9007199254740993.0,
        std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity() };
    while (numbers.size() < count) {
        const double number = std::bit_cast<double>(random());
        if (number == number)
            numbers.push_back(number);
    }
    numbers.resize(count);
    return numbers;
}

inline Dataset curves(qsizetype rows, qsizetype columns, std::uint64_t seed = 1)
{
    Dataset data;
    data.rows = rows;
    data.columns = columns;
    data.values = awkwardNumbers(static_cast<std::size_t>(rows * columns), seed);
    return data;
}

inline Dataset map(qsizetype rows, qsizetype columns, std::uint64_t seed = 2)
{
    Dataset data = curves(rows, columns, seed);
    data.kind = Dataset::Kind::Map;
    return data;
}

/// Every field filled.
inline Dataset described(Dataset data)
{
    data.title = QStringLiteral("Total, \"all\" modules\nsecond line \\ end");
    data.source = QStringLiteral("127.0.0.1:5000, run 3");
    data.time = QDateTime(QDate(2026, 3, 10), QTime(12, 30, 15, 250), QTimeZone::utc());
    data.liveTime = 12.625;
    data.realTime = 13.1;
    data.calibration = { -0.035087, 0.182804, -6.86613e-10 };
    data.calibrationUnit = QStringLiteral("keV");
    data.x.name = QStringLiteral("Time, of flight");
    data.x.unit = QStringLiteral("µs");
    data.name = QStringLiteral("rate");
    data.unit = QStringLiteral("1/s");
    if (data.kind == Dataset::Kind::Map) {
        data.y.name = QStringLiteral("Position");
        data.y.unit = QStringLiteral("mm");
    }
    return data;
}

/// Same bits in every number, NaN and the sign of zero included.
inline bool sameBits(const std::vector<double>& a, const std::vector<double>& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
        [](double x, double y) { return std::bit_cast<std::uint64_t>(x) == std::bit_cast<std::uint64_t>(y); });
}

} // namespace tarnis::testing
