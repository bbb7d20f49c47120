#include "plotwidgets.h"

namespace cli {

namespace {

Failure wrongUsage(const QString& text)
{
    return { .code = WrongUsage, .text = text };
}

Outcome readSize(const Arguments& arguments, QSize& size)
{
    if (!arguments.has("size"))
        return std::nullopt;
    constexpr int minimum = 100;
    constexpr int maximum = 10000;
    const QStringList sides = arguments.value("size").toLower().split(u'x');
    bool widthValid = false;
    bool heightValid = false;
    size = QSize(sides.value(0).toInt(&widthValid), sides.value(1).toInt(&heightValid));
    const auto fits = [](int side) { return side >= minimum && side <= maximum; };
    if (sides.size() == 2 && widthValid && heightValid && fits(size.width()) && fits(size.height()))
        return std::nullopt;
    return wrongUsage(QStringLiteral("--size '%1' is not of the form WxH with sides from %2 to %3, as 800x500")
                          .arg(arguments.value("size"))
                          .arg(minimum)
                          .arg(maximum));
}

Outcome readTheme(const Arguments& arguments, std::optional<tarnis::PlotStyle::Theme>& theme)
{
    if (!arguments.has("theme"))
        return std::nullopt;
    using Theme = tarnis::PlotStyle::Theme;
    const QString name = arguments.value("theme");
    static const QList<std::pair<QString, std::optional<Theme>>> themes { { "print", Theme::Print },
        { "light", Theme::Light }, { "dark", Theme::Dark }, { "high-contrast", Theme::HighContrast },
        { "classic", std::nullopt } };
    for (const auto& [known, value] : themes) {
        if (known == name) {
            theme = value;
            return std::nullopt;
        }
    }
    return wrongUsage(QStringLiteral("--theme '%1' is not print, light, dark, high-contrast or classic").arg(name));
}

/// A range that is not empty.
Outcome readRange(const Arguments& arguments, const QString& option, std::optional<Range<double>>& range)
{
    const Result<std::optional<Range<double>>> given = rangeOption(arguments, option);
    if (!given.isOk())
        return given.failure();
    range = given.value();
    if (!range || range->first < range->last)
        return std::nullopt;
    return wrongUsage(QStringLiteral("--%1 '%2': the second number must be larger than the first one")
                          .arg(option, arguments.value(option)));
}

} // namespace

Result<FigureOptions> figureOptions(const Arguments& arguments)
{
    FigureOptions options;
    if (Outcome wrong = readSize(arguments, options.size))
        return *wrong;
    if (Outcome wrong = readTheme(arguments, options.theme))
        return *wrong;
    const Result<double> dpi = numberOption(arguments, "dpi", 24.0, 1200.0, 96.0);
    if (!dpi.isOk())
        return dpi.failure();
    options.dpi = dpi.value();
    if (Outcome wrong = readRange(arguments, "range", options.x))
        return *wrong;
    if (Outcome wrong = readRange(arguments, "yrange", options.y))
        return *wrong;
    if (Outcome wrong = readRange(arguments, "levels", options.levels))
        return *wrong;
    if (options.levels && (options.levels->first < 0.0 || options.levels->last > 100.0))
        return wrongUsage("--levels are percentages: give two numbers from 0 to 100, as 0:99.5");
    options.log = arguments.has("log");
    if (options.log && options.y && options.y->first <= 0.0)
        return wrongUsage(
            QStringLiteral("--yrange '%1': a logarithmic axis begins above 0").arg(arguments.value("yrange")));
    options.residuals = arguments.has("residuals");
    options.map = arguments.value("map");
    return options;
}

} // namespace cli
