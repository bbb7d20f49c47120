// Energies in keV: R. Helmer, C. van der Leun, "Recommended standards for gamma-ray energy calibration (1999)", NIM A
// 450 (2000) 35; for K-40, further lines of the natural decay chains, and intensities per 100 decays: Decay Data
// Evaluation Project, Table of Radionuclides, BIPM Monographie 5, rounded.
#include "tarnis/analysis/calibrationlines.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tarnis {

namespace {

QString sentence(const char* text)
{
    return QCoreApplication::translate("tarnis::CalibrationLines", text);
}

struct SourceLine {
    QLatin1StringView source;
    QLatin1StringView nuclide;
    double energy;
    double error;
    double intensity;
};

constexpr std::array sourceLines {
    SourceLine { "am241"_L1, "Am-241"_L1, 26.3446, 0.0002, 2.31 },
    SourceLine { "am241"_L1, "Am-241"_L1, 59.5409, 0.0001, 35.92 },
    SourceLine { "ba133"_L1, "Ba-133"_L1, 53.1622, 0.0006, 2.14 },
    SourceLine { "ba133"_L1, "Ba-133"_L1, 80.9979, 0.0011, 33.31 },
    SourceLine { "ba133"_L1, "Ba-133"_L1, 160.6120, 0.0016, 0.638 },
    SourceLine { "ba133"_L1, "Ba-133"_L1, 223.2368, 0.0013, 0.450 },
    SourceLine { "ba133"_L1, "Ba-133"_L1, 276.3989, 0.0012, 7.13 },
    SourceLine { "ba133"_L1, "Ba-133"_L1, 302.8508, 0.0005, 18.31 },
    SourceLine { "ba133"_L1, "Ba-133"_L1, 356.0129, 0.0007, 62.05 },
    SourceLine { "ba133"_L1, "Ba-133"_L1, 383.8485, 0.0012, 8.94 },
    SourceLine { "cd109"_L1, "Cd-109"_L1, 88.0336, 0.0001, 3.66 },
    SourceLine { "co57"_L1, "Co-57"_L1, 14.41295, 0.00031, 9.15 },
    SourceLine { "co57"_L1, "Co-57"_L1, 122.06065, 0.00012, 85.51 },
    SourceLine { "co57"_L1, "Co-57"_L1, 136.47356, 0.00029, 10.71 },
    SourceLine { "co60"_L1, "Co-60"_L1, 1173.228, 0.003, 99.85 },
    SourceLine { "co60"_L1, "Co-60"_L1, 1332.492, 0.004, 99.98 },
    SourceLine { "cs137"_L1, "Cs-137"_L1, 661.657, 0.003, 84.99 },
    SourceLine { "eu152"_L1, "Eu-152"_L1, 121.7817, 0.0003, 28.41 },
    SourceLine { "eu152"_L1, "Eu-152"_L1, 244.6974, 0.0008, 7.55 },
    SourceLine { "eu152"_L1, "Eu-152"_L1, 344.2785, 0.0012, 26.59 },
    SourceLine { "eu152"_L1, "Eu-152"_L1, 411.1165, 0.0012, 2.24 },
    SourceLine { "eu152"_L1, "Eu-152"_L1, 443.9606, 0.0016, 2.80 },
    SourceLine { "eu152"_L1, "Eu-152"_L1, 778.9045, 0.0024, 12.97 },
    SourceLine { "eu152"_L1, "Eu-152"_L1, 867.380, 0.003, 4.24 },
    SourceLine { "eu152"_L1, "Eu-152"_L1, 964.057, 0.005, 14.50 },
    SourceLine { "eu152"_L1, "Eu-152"_L1, 1085.837, 0.010, 10.13 },
    SourceLine { "eu152"_L1, "Eu-152"_L1, 1112.076, 0.003, 13.41 },
    SourceLine { "eu152"_L1, "Eu-152"_L1, 1212.948, 0.011, 1.42 },
    SourceLine { "eu152"_L1, "Eu-152"_L1, 1299.142, 0.008, 1.63 },
    SourceLine { "eu152"_L1, "Eu-152"_L1, 1408.013, 0.003, 20.85 },
    SourceLine { "k40"_L1, "K-40"_L1, 1460.822, 0.006, 10.55 },
    SourceLine { "mn54"_L1, "Mn-54"_L1, 834.838, 0.005, 99.98 },
    SourceLine { "na22"_L1, "Na-22"_L1, 510.99895, 0.00001, 180.7 },
    SourceLine { "na22"_L1, "Na-22"_L1, 1274.537, 0.007, 99.94 },
    SourceLine { "ra226"_L1, "Ra-226"_L1, 186.211, 0.013, 3.56 },
    SourceLine { "ra226"_L1, "Pb-214"_L1, 241.997, 0.003, 7.27 },
    SourceLine { "ra226"_L1, "Pb-214"_L1, 295.224, 0.002, 18.4 },
    SourceLine { "ra226"_L1, "Pb-214"_L1, 351.932, 0.002, 35.6 },
    SourceLine { "ra226"_L1, "Bi-214"_L1, 609.312, 0.007, 45.5 },
    SourceLine { "ra226"_L1, "Bi-214"_L1, 768.356, 0.010, 4.89 },
    SourceLine { "ra226"_L1, "Bi-214"_L1, 1120.287, 0.010, 14.9 },
    SourceLine { "ra226"_L1, "Bi-214"_L1, 1238.110, 0.012, 5.83 },
    SourceLine { "ra226"_L1, "Bi-214"_L1, 1377.669, 0.012, 3.99 },
    SourceLine { "ra226"_L1, "Bi-214"_L1, 1764.494, 0.014, 15.3 },
    SourceLine { "th232"_L1, "Pb-212"_L1, 238.632, 0.002, 43.6 },
    SourceLine { "th232"_L1, "Ac-228"_L1, 338.320, 0.003, 11.3 },
    SourceLine { "th232"_L1, "Tl-208"_L1, 583.187, 0.002, 30.6 },
    SourceLine { "th232"_L1, "Bi-212"_L1, 727.330, 0.009, 6.67 },
    SourceLine { "th232"_L1, "Ac-228"_L1, 911.204, 0.004, 25.8 },
    SourceLine { "th232"_L1, "Ac-228"_L1, 968.971, 0.017, 15.8 },
    SourceLine { "th232"_L1, "Tl-208"_L1, 2614.511, 0.010, 35.6 },
    SourceLine { "y88"_L1, "Y-88"_L1, 898.036, 0.004, 93.7 },
    SourceLine { "y88"_L1, "Y-88"_L1, 1836.052, 0.013, 99.35 },
};

void sortByEnergy(std::vector<CalibrationLine>& lines)
{
    std::stable_sort(lines.begin(), lines.end(),
        [](const CalibrationLine& a, const CalibrationLine& b) { return a.energy < b.energy; });
}

// Fields of a line, separated by a comma, semicolon or tab with optional spaces, or by spaces only.
QList<QByteArray> fieldsOf(const QByteArray& line)
{
    QList<QByteArray> fields;
    QByteArray text = line;
    text.replace(';', ',').replace('\t', ',');
    if (text.contains(',')) {
        for (const QByteArray& field : text.split(','))
            fields.append(field.trimmed());
    } else {
        fields = text.simplified().split(' ');
    }
    return fields;
}

} // namespace

QStringList calibrationSources()
{
    QStringList names;
    for (const SourceLine& line : sourceLines) {
        if (!names.contains(line.source))
            names.append(line.source);
    }
    return names;
}

CalibrationLines linesOfSource(const QString& names)
{
    CalibrationLines result;
    for (const QString& part : names.split(u'+')) {
        const QString name = QString(part).remove(u'-').trimmed().toLower();
        bool found = false;
        for (const SourceLine& line : sourceLines) {
            if (name != line.source)
                continue;
            found = true;
            result.lines.push_back({ line.energy, line.error, line.intensity, line.nuclide, -1.0 });
        }
        if (!found) {
            result.error =
                sentence(QT_TRANSLATE_NOOP("tarnis::CalibrationLines", "There is no source \"%1\". Known are: %2."))
                    .arg(part.trimmed(), calibrationSources().join(u", "_s));
            result.lines.clear();
            return result;
        }
    }
    sortByEnergy(result.lines);
    return result;
}

CalibrationLines linesFromText(const QByteArray& text)
{
    CalibrationLines result;
    int number = 0;
    for (const QByteArray& raw : text.split('\n')) {
        ++number;
        const QByteArray line = raw.left(raw.indexOf('#') < 0 ? raw.size() : raw.indexOf('#')).trimmed();
        if (line.isEmpty())
            continue;
        const QList<QByteArray> fields = fieldsOf(line);
        bool ok = false;
        CalibrationLine one;
        one.energy = fields[0].toDouble(&ok);
        if (!ok && result.lines.empty() && !fields[0].isEmpty() && !QChar(fields[0][0]).isDigit())
            continue; // the column names
        if (ok && fields.size() > 1 && !fields[1].isEmpty())
            one.energyError = fields[1].toDouble(&ok);
        if (ok && fields.size() > 2 && !fields[2].isEmpty())
            one.position = fields[2].toDouble(&ok);
        if (fields.size() > 3)
            one.name = QString::fromUtf8(fields[3]);
        const bool finite = std::isfinite(one.energy) && std::isfinite(one.energyError) && std::isfinite(one.position);
        if (!ok || !finite || !(one.energy > 0.0) || one.energyError < 0.0) {
            result.error = sentence(QT_TRANSLATE_NOOP("tarnis::CalibrationLines",
                                        "Line %1 is not \"energy, error, channel, name\": give a positive energy and "
                                        "an error that is not negative."))
                               .arg(number);
            result.lines.clear();
            return result;
        }
        result.lines.push_back(one);
    }
    if (result.lines.empty())
        result.error = sentence(
            QT_TRANSLATE_NOOP("tarnis::CalibrationLines", "There are no lines. Write \"energy, error\" in each line."));
    sortByEnergy(result.lines);
    return result;
}

} // namespace tarnis
