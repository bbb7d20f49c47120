#include "tarnis/tools/panels/parametertext_p.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace tarnis {

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(tarnis::ParameterText)
};

constexpr const char* context = "tarnis::ParameterText";

/// Powers of the units: counts^counts x^x.
struct Entry {
    const char* name; ///< without the number of the peak
    const char* label;
    const char* toolTip;
    bool inCounts;
    int x;
};

constexpr std::array entries {
    Entry { "area", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Area"),
        QT_TRANSLATE_NOOP("tarnis::ParameterText", "Counts in the peak, without the background."), true, 0 },
    Entry { "centre", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Centre"),
        QT_TRANSLATE_NOOP(
            "tarnis::ParameterText", "Position of the peak. With a tail it is neither the top nor the mean."),
        false, 1 },
    Entry { "sigma", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Sigma"),
        QT_TRANSLATE_NOOP("tarnis::ParameterText", "Standard deviation of the Gaussian."), false, 1 },
    Entry { "gamma", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Half width"),
        QT_TRANSLATE_NOOP("tarnis::ParameterText", "Half width at half maximum of the Lorentzian."), false, 1 },
    Entry { "fwhm", QT_TRANSLATE_NOOP("tarnis::ParameterText", "FWHM"),
        QT_TRANSLATE_NOOP("tarnis::ParameterText", "Full width at half maximum."), false, 1 },
    Entry { "eta", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Lorentzian share"),
        QT_TRANSLATE_NOOP("tarnis::ParameterText", "Share of the Lorentzian in the area, from 0 to 1."), false, 0 },
    Entry { "tau", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Tail length"),
        QT_TRANSLATE_NOOP("tarnis::ParameterText", "Distance in which the exponential tail falls by a factor of e."),
        false, 1 },
    Entry { "alpha", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Rise rate"),
        QT_TRANSLATE_NOOP("tarnis::ParameterText", "Rate of the exponential on the left."), false, -1 },
    Entry { "beta", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Fall rate"),
        QT_TRANSLATE_NOOP("tarnis::ParameterText", "Rate of the exponential on the right."), false, -1 },
    Entry { "ratio", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Tail share"),
        QT_TRANSLATE_NOOP("tarnis::ParameterText", "Share of the tail in the area, from 0 to 1."), false, 0 },
    Entry { "width_factor", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Width factor"),
        QT_TRANSLATE_NOOP("tarnis::ParameterText", "Fitted width divided by that of the width calibration."), false,
        0 },
    Entry { "step", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Step"),
        QT_TRANSLATE_NOOP("tarnis::ParameterText", "Height of the step below a peak, divided by the area of the peak."),
        false, -1 },
    Entry { "b0", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Background"),
        QT_TRANSLATE_NOOP("tarnis::ParameterText", "Background in the middle of the range."), true, -1 },
    Entry { "b1", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Background slope"),
        QT_TRANSLATE_NOOP("tarnis::ParameterText", "Slope of the background in the middle of the range."), true, -2 },
    Entry { "b2", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Background bend"),
        QT_TRANSLATE_NOOP(
            "tarnis::ParameterText", "Factor of the square of the distance from the middle of the range."),
        true, -3 },
    Entry { "height", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Height"),
        QT_TRANSLATE_NOOP("tarnis::ParameterText", "Height of the peak above the background."), true, -1 },
    Entry { "resolution", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Resolution"),
        QT_TRANSLATE_NOOP("tarnis::ParameterText", "FWHM divided by the centre."), false, 0 },
    Entry { "top", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Top"),
        QT_TRANSLATE_NOOP("tarnis::ParameterText", "Position of the maximum."), false, 1 },
    Entry { "mean", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Mean"),
        QT_TRANSLATE_NOOP("tarnis::ParameterText", "Mean position of the counts of the peak."), false, 1 },
    Entry { "separation", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Separation"),
        QT_TRANSLATE_NOOP("tarnis::ParameterText", "Distance from the previous peak."), false, 1 },
    Entry { "area_total", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Total area"),
        QT_TRANSLATE_NOOP("tarnis::ParameterText", "Sum of the areas of all peaks."), true, 0 },
    Entry { "area_ratio", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Area ratio"),
        QT_TRANSLATE_NOOP("tarnis::ParameterText", "Area divided by that of the first peak."), false, 0 },
    Entry { "background_at_lo", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Background, left"),
        QT_TRANSLATE_NOOP("tarnis::ParameterText", "Background at the first bin of the range."), true, -1 },
    Entry { "background_at_hi", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Background, right"),
        QT_TRANSLATE_NOOP("tarnis::ParameterText", "Background at the last bin of the range."), true, -1 },
    Entry { "energy", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Energy"),
        QT_TRANSLATE_NOOP("tarnis::ParameterText", "Centre by the calibration of the axis."), false, 1 },
};
constexpr Entry decayRate { "b1", QT_TRANSLATE_NOOP("tarnis::ParameterText", "Background rate"),
    QT_TRANSLATE_NOOP("tarnis::ParameterText", "Rate at which the background falls to the right; negative: it rises."),
    false, -1 };

QString unitText(const Entry& entry, const QString& x)
{
    static const std::array<QString, 3> powers { QString(), QStringLiteral("²"), QStringLiteral("³") };
    const QString below = entry.x < 0 ? u'/' + x + powers.at(static_cast<std::size_t>(-entry.x - 1)) : QString();
    if (entry.inCounts)
        return Text::tr("cts", "short for counts") + below;
    return entry.x > 0 ? x : entry.x < 0 ? u'1' + below : QString();
}

} // namespace

ParameterText parameterTextOf(const QString& fullName, FitBackground background, const QString& axisUnit)
{
    // Energies have their own unit.
    const qsizetype bracket = fullName.indexOf(QLatin1StringView(" ["));
    const QString name = fullName.first(bracket < 0 ? fullName.size() : bracket);
    const QString unit = bracket < 0 ? axisUnit : fullName.sliced(bracket + 2).chopped(1);
    const auto find = [](QStringView key) {
        return std::find_if(
            entries.begin(), entries.end(), [key](const Entry& entry) { return key == QLatin1StringView(entry.name); });
    };
    // b0, b1, b2 end in a digit of their own.
    auto found = find(name);
    qsizetype length = name.size();
    if (found == entries.end()) {
        while (length > 0 && name[length - 1].isDigit())
            --length;
        found = find(QStringView(name).first(length));
    }
    if (found == entries.end())
        return { fullName, {}, {} };
    const bool decays = background == FitBackground::Exponential && name == QLatin1StringView("b1");
    const Entry& entry = decays ? decayRate : *found;
    const QString number = name.sliced(length);
    const QString label = QCoreApplication::translate(context, entry.label);
    QString toolTip = QCoreApplication::translate(context, entry.toolTip);
    if (bracket < 0)
        toolTip += u'\n' + Text::tr("In ties and files: %1").arg(name);
    return { number.isEmpty() ? label : label + u' ' + number, unitText(entry, unit), toolTip };
}

QString unitOfAxis(const QString& axisName)
{
    static const QRegularExpression inBrackets(QStringLiteral("[\\[(]([^\\])]{1,12})[\\])]\\s*$"));
    if (const QRegularExpressionMatch match = inBrackets.match(axisName); match.hasMatch())
        return match.captured(1).trimmed();
    const QString channel = Text::tr("channel");
    const bool isChannels = axisName.isEmpty() || axisName.contains(QLatin1StringView("channel"), Qt::CaseInsensitive)
        || axisName.contains(channel, Qt::CaseInsensitive);
    return isChannels ? Text::tr("ch", "short for channels") : QStringLiteral("x");
}

} // namespace tarnis
