#include "nistproblem.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStringList>

#include <cmath>
#include <map>
#include <numbers>

namespace tarnis::testing {

namespace {

using Model = double (*)(std::span<const double> b, double x);

double square(double v)
{
    return v * v;
}

double twoPeaks(std::span<const double> b, double x)
{
    return b[0] * std::exp(-b[1] * x) + b[2] * std::exp(-square(x - b[3]) / square(b[4]))
        + b[5] * std::exp(-square(x - b[6]) / square(b[7]));
}

double cubicOverCubic(std::span<const double> b, double x)
{
    return (b[0] + b[1] * x + b[2] * x * x + b[3] * x * x * x) / (1 + b[4] * x + b[5] * x * x + b[6] * x * x * x);
}

double saturation(std::span<const double> b, double x)
{
    return b[0] * (1 - std::exp(-b[1] * x));
}

double seasons(std::span<const double> b, double x)
{
    const double w = 2 * std::numbers::pi * x;
    return b[0] + b[1] * std::cos(w / 12) + b[2] * std::sin(w / 12) + b[4] * std::cos(w / b[3])
        + b[5] * std::sin(w / b[3]) + b[7] * std::cos(w / b[6]) + b[8] * std::sin(w / b[6]);
}

const std::map<std::string, Model>& models()
{
    static const std::map<std::string, Model> all {
        { "BoxBOD", saturation },
        { "Chwirut2", [](std::span<const double> b, double x) { return std::exp(-b[0] * x) / (b[1] + b[2] * x); } },
        { "DanWood", [](std::span<const double> b, double x) { return b[0] * std::pow(x, b[1]); } },
        { "ENSO", seasons },
        { "Gauss1", twoPeaks },
        { "Gauss2", twoPeaks },
        { "Hahn1", cubicOverCubic },
        { "Kirby2",
            [](std::span<const double> b, double x) {
                return (b[0] + b[1] * x + b[2] * x * x) / (1 + b[3] * x + b[4] * x * x);
            } },
        { "Lanczos3",
            [](std::span<const double> b, double x) {
                return b[0] * std::exp(-b[1] * x) + b[2] * std::exp(-b[3] * x) + b[4] * std::exp(-b[5] * x);
            } },
        { "MGH09",
            [](std::span<const double> b, double x) { return b[0] * (x * x + x * b[1]) / (x * x + x * b[2] + b[3]); } },
        { "MGH17",
            [](std::span<const double> b, double x) {
                return b[0] + b[1] * std::exp(-x * b[3]) + b[2] * std::exp(-x * b[4]);
            } },
        { "Misra1a", saturation },
        { "Misra1b", [](std::span<const double> b, double x) { return b[0] * (1 - 1 / square(1 + b[1] * x / 2)); } },
        { "Roszman1",
            [](std::span<const double> b, double x) {
                return b[0] - b[1] * x - std::atan(b[2] / (x - b[3])) / std::numbers::pi;
            } },
        { "Thurber", cubicOverCubic },
    };
    return all;
}

std::vector<double> numbersIn(const QString& line)
{
    std::vector<double> values;
    for (const QString& word : line.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        bool ok = false;
        // "1.20196866396E-0" is a number here.
        const double value = word.trimmed().toDouble(&ok);
        if (ok)
            values.push_back(value);
    }
    return values;
}

// The data lines according to the file's header.
std::pair<qsizetype, qsizetype> dataLines(const QStringList& lines)
{
    static const QRegularExpression range(QStringLiteral("Data +\\(lines +(\\d+) +to +(\\d+)\\)"));
    for (const QString& line : lines) {
        if (const auto match = range.match(line); match.hasMatch())
            return { match.captured(1).toInt() - 1, match.captured(2).toInt() };
    }
    return { 0, 0 };
}

void readParameters(const QStringList& lines, NistProblem& problem)
{
    static const QRegularExpression row(QStringLiteral("^ *b\\d+ *= *(.*)$"));
    for (const QString& line : lines) {
        const auto match = row.match(line);
        const std::vector<double> values = match.hasMatch() ? numbersIn(match.captured(1)) : std::vector<double> {};
        if (values.size() != 4)
            continue;
        problem.starts[0].push_back(values[0]);
        problem.starts[1].push_back(values[1]);
        problem.certified.push_back(values[2]);
        problem.standardDeviations.push_back(values[3]);
    }
}

[[noreturn]] void refuse(const QString& path, const char* why)
{
    qFatal("%s: %s", qPrintable(path), why);
}

} // namespace

LeastSquaresProblem NistProblem::from(std::size_t start) const
{
    const Model model = models().at(name);
    return { name + " from start " + std::to_string(start + 1), int(y.size()), starts[start],
        [this, model](std::span<const double> b, std::span<double> r) {
            for (std::size_t i = 0; i < r.size(); ++i)
                r[i] = y[i] - model(b, x[i]);
        } };
}

NistProblem readNistProblem(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        refuse(path, "cannot be read");
    const QStringList lines = QString::fromLatin1(file.readAll()).remove(QLatin1Char('\r')).split(QLatin1Char('\n'));
    NistProblem problem;
    problem.name = QFileInfo(path).completeBaseName().toStdString();
    if (!models().contains(problem.name))
        refuse(path, "no model of this name");
    readParameters(lines, problem);
    for (const QString& line : lines) {
        if (line.startsWith(QLatin1String("Residual Sum of Squares:")))
            problem.residualSumOfSquares = numbersIn(line).at(0);
    }
    const auto [first, last] = dataLines(lines);
    for (qsizetype i = first; i < std::min(last, lines.size()); ++i) {
        const std::vector<double> values = numbersIn(lines[i]);
        if (values.size() != 2)
            refuse(path, "a data line without two numbers");
        problem.y.push_back(values[0]);
        problem.x.push_back(values[1]);
    }
    if (problem.certified.empty() || problem.y.size() <= problem.certified.size())
        refuse(path, "no parameters or too few data");
    // The file has its first parameter as 1.20196866396E-0; 0.20196866396 reproduces the certified sum of squares.
    if (problem.name == "Roszman1" && problem.certified[0] > 1.0)
        problem.certified[0] -= 1.0;
    return problem;
}

} // namespace tarnis::testing
