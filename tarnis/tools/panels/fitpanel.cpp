#include "tarnis/tools/fitpanel.h"

#include "tarnis/foundation/retranslator.h"
#include "tarnis/tools/panels/fitpanel_p.h"

#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/xygraphwidget.h"
#include "tarnis/tools/plotcalibration.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

/// Energies of a result's peaks, and their widths in energy.
std::vector<DerivedQuantity> energiesOf(const FitResult& result, const EnergyCalibration& calibration)
{
    std::vector<DerivedQuantity> energies;
    for (std::size_t k = 0; k < result.peaks.size(); ++k) {
        const QString number = result.peaks.size() > 1 ? QString::number(k + 1) : QString();
        const double centre = result.peaks[k].centre;
        const CalibratedEnergy energy =
            calibration.calibrated(centre, std::max(0.0, result.errorOf(QStringLiteral("centre") + number)));
        const double slope = calibration.slopeAt(centre);
        const QString width = QStringLiteral("fwhm") + number;
        energies.push_back(
            { QStringLiteral("energy%1 [%2]").arg(number, calibration.unit), energy.energy, energy.error });
        energies.push_back({ QStringLiteral("fwhm%1 [%2]").arg(number, calibration.unit), slope * result.valueOf(width),
            slope * result.errorOf(width) });
    }
    return energies;
}

} // namespace

FitPanel::Internals::Internals(XYGraphWidget* plot)
    : picker(plot != nullptr ? new PlotPicker(plot) : nullptr)
    , curves(plot)
{
}

PlotSpectrum FitPanel::Internals::spectrum() const
{
    return controls.curve->spectrum();
}

void FitPanel::Internals::setShown(const FitResult& result, const PlotSpectrum& data, const QDateTime& time)
{
    shown = result;
    shownData = data;
    shownTime = time;
    isGuess = false;
    hasGood = result.acceptable;
}

FitPanel::FitPanel(XYGraphWidget* plot, QWidget* parent)
    : QWidget(parent)
    , m_data(std::make_unique<Internals>(plot))
{
    m_data->controls.build(*this, plot, m_data->parameters);
    m_data->controls.residuals->tieTo(plot);
    setWindowTitle(tr("Fit"));
    onLanguageChange(*this, [this] {
        m_data->controls.setTexts();
        setWindowTitle(tr("Fit"));
        showTrendNames(0);
        if (m_data->shown.status != FitStatus::Refused)
            showResult(QString());
    });
    showControls();
    connectControls();
    connectPlot();
    onDataChanged();
    showMessage(tr("Press \"Range\" and drag over a peak, or press \"Peaks\" and click on it."), true);
}

FitPanel::~FitPanel()
{
    delete m_data->picker;
}

XYGraphWidget* FitPanel::plot() const
{
    return m_data->picker ? m_data->picker->plot() : nullptr;
}

AxisRange FitPanel::range() const
{
    return m_data->setup.range;
}

void FitPanel::setRange(double lower, double upper)
{
    if (!std::isfinite(lower) || !std::isfinite(upper))
        return;
    m_data->setup.range = { std::min(lower, upper), std::max(lower, upper) };
    const auto isOutside = [&](double centre) { return centre < range().min || centre > range().max; };
    FitModel& model = m_data->setup.model;
    if (std::any_of(model.centres.begin(), model.centres.end(), isOutside))
        model.centres.clear();
    // A value entered for another range would place the peak outside of this one.
    std::erase_if(model.constraints, [&](const FitConstraint& constraint) {
        return constraint.name.startsWith(QStringLiteral("centre")) && constraint.start && isOutside(*constraint.start);
    });
    showControls();
    guess();
    Q_EMIT stateChanged();
}

const FitModel& FitPanel::model() const
{
    return m_data->setup.model;
}

void FitPanel::setModel(const FitModel& model)
{
    m_data->setup.model = model;
    m_data->setup.model.peaks = std::clamp(model.peaks, 0, FitModel::maxPeaks);
    showControls();
    guess();
    Q_EMIT stateChanged();
}

const FitOptions& FitPanel::options() const
{
    return m_data->setup.options;
}

void FitPanel::setOptions(const FitOptions& options)
{
    m_data->setup.options = options;
    showControls();
    Q_EMIT stateChanged();
}

bool FitPanel::isAutomatic() const
{
    return m_data->setup.isAutomatic;
}

void FitPanel::setAutomatic(bool on)
{
    m_data->setup.isAutomatic = on;
    showControls();
    Q_EMIT stateChanged();
}

const FitResult& FitPanel::result() const
{
    return m_data->shown;
}

bool FitPanel::isGuess() const
{
    return m_data->isGuess;
}

bool FitPanel::isRunning() const
{
    return m_data->run.isRunning();
}

QString FitPanel::message() const
{
    return m_data->controls.message->text();
}

QString FitPanel::table() const
{
    return tableOf(m_data->shown);
}

QString FitPanel::historyTable() const
{
    return m_data->history.table();
}

int FitPanel::followSeconds() const
{
    return m_data->followTimer.isActive() ? m_data->controls.seconds->value() : 0;
}

void FitPanel::setFollowSeconds(int seconds)
{
    FitControls& controls = m_data->controls;
    const QSignalBlocker blockers[] { QSignalBlocker(controls.follow), QSignalBlocker(controls.seconds) };
    controls.follow->setChecked(seconds > 0);
    if (seconds <= 0) {
        m_data->followTimer.stop();
        return;
    }
    controls.seconds->setValue(seconds);
    m_data->followTimer.start(controls.seconds->value() * 1000);
    if (!isRunning())
        fit();
}

QJsonObject FitPanel::saveState() const
{
    return m_data->setup.toJson();
}

void FitPanel::restoreState(const QJsonObject& state)
{
    m_data->setup.fromJson(state);
    showControls();
    guess();
}

void FitPanel::addPeakAt(double x, double tolerance)
{
    FitSetup& setup = m_data->setup;
    std::vector<double> centres = setup.model.centres;
    const auto near =
        std::find_if(centres.begin(), centres.end(), [&](double centre) { return std::fabs(centre - x) <= tolerance; });
    if (near != centres.end())
        centres.erase(near);
    else if (static_cast<int>(centres.size()) < FitModel::maxPeaks)
        centres.push_back(x);
    setup.setCentres(std::move(centres));
    // Without a range that contains the click, uses a tenth of the view around it.
    const AxisRange view = PlotMapping::of(*plot()).x();
    const double half = std::fabs(view.max - view.min) / 20.0;
    if (setup.range.min == setup.range.max)
        setup.range = { x - half, x + half };
    setup.range = { std::min(setup.range.min, x - half / 2.0), std::max(setup.range.max, x + half / 2.0) };
    showControls();
    guess();
    Q_EMIT stateChanged();
}

void FitPanel::guess()
{
    m_data->run.drop();
    m_data->shownData = m_data->spectrum();
    m_data->shown = runGuess(m_data->shownData.data(), m_data->setup);
    m_data->shownTime = QDateTime::currentDateTime();
    m_data->isGuess = true;
    m_data->hasGood = false;
    showResult(QString());
    Q_EMIT guessed();
}

void FitPanel::fit()
{
    PlotSpectrum spectrum = m_data->spectrum();
    const bool isLive = m_data->followTimer.isActive();
    m_data->hasNewData = false;
    m_data->run.start(
        [this, spectrum = std::move(spectrum), setup = m_data->setup, isLive, time = QDateTime::currentDateTime(),
            from = isLive && m_data->hasGood ? m_data->shown : FitResult()] {
            FitResult result = runFit(spectrum.data(), setup, from.status == FitStatus::Done ? &from : nullptr);
            FitLines lines = linesOf(result, spectrum.data());
            return BackgroundRun::Delivery(
                [this, result = std::move(result), lines = std::move(lines), spectrum, time, isLive] {
                    const bool isUsed = !isLive || !m_data->hasGood || result.acceptable;
                    if (isUsed)
                        m_data->curves.setLines(lines, false, result.acceptable);
                    m_data->run.continueLater(
                        [this, result, spectrum, time, isUsed] { showFit(result, spectrum, time, isUsed); });
                });
        });
    showMessage(isLive ? message() : tr("Fitting..."), true);
}

// The curve, the table and the rest of the panel are painted in three passes of the event loop: none of them holds it
// for long.
void FitPanel::showFit(const FitResult& result, const PlotSpectrum& spectrum, const QDateTime& time, bool isUsed)
{
    QString note;
    if (isUsed) {
        m_data->setShown(result, spectrum, time);
        showParameters();
    } else {
        note = tr("The last fit was not used: %1\nShown is the result of %2.")
                   .arg(summaryOf(result, false), m_data->shownTime.toString(QStringLiteral("HH:mm:ss")));
    }
    m_data->run.continueLater([this, result, time, note] {
        showGoodness(note);
        if (result.status != FitStatus::Refused) {
            m_data->history.add(time, result);
            showHistory();
        }
        Q_EMIT fitted();
    });
}

void FitPanel::clear()
{
    m_data->run.drop();
    setFollowSeconds(0);
    m_data->setup.range = {};
    m_data->setup.model.centres.clear();
    m_data->setup.model.constraints.clear();
    m_data->shown = {};
    m_data->isGuess = false;
    m_data->hasGood = false;
    m_data->curves.clear();
    m_data->parameters.setResult({}, false);
    m_data->controls.residuals->setPoints({});
    showControls();
    showMessage(QString(), true);
    Q_EMIT stateChanged();
}

void FitPanel::showResult(const QString& note)
{
    if (m_data->isGuess)
        m_data->curves.setLines(linesOf(m_data->shown, m_data->shownData.data()), true, true);
    m_data->curves.setRange(m_data->setup.range);
    showParameters();
    showGoodness(note);
}

void FitPanel::showParameters()
{
    const FitResult& result = m_data->shown;
    const PlotCalibration* const applied = plot() != nullptr ? PlotCalibration::of(*plot()) : nullptr;
    // Below a calibrated axis the fit stays in channels.
    m_data->parameters.setUnit(unitOfAxis(plot() != nullptr && applied == nullptr ? plot()->getNameX() : QString()));
    m_data->parameters.setResult(result, m_data->isGuess,
        applied != nullptr ? energiesOf(result, applied->calibration()) : std::vector<DerivedQuantity>());
}

void FitPanel::showGoodness(const QString& note)
{
    const FitResult& result = m_data->shown;
    const BinnedData bins = m_data->shownData.data();
    std::vector<StripPoint> points;
    const std::vector<double> residuals = residualsOf(bins, result);
    points.reserve(residuals.size());
    for (std::size_t i = 0; i < residuals.size(); ++i)
        points.push_back({ bins.centre(result.first + i), residuals[i], 0.0, false });
    m_data->controls.residuals->setPoints(std::move(points));
    const bool isGood = note.isEmpty() && (m_data->isGuess || result.acceptable) && result.status != FitStatus::Refused;
    showMessage(note.isEmpty() ? summaryOf(result, m_data->isGuess) : note, isGood);
}

} // namespace tarnis
