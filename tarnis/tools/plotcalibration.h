// An energy scale on the X axis of a plot.
#pragma once

#include <tarnis/analysis/energycalibration.h>
#include <tarnis/tarnis_export.h>

#include <QObject>

#include <memory>
#include <utility>

class XYGraphWidget;

namespace tarnis {

class PlotOverlay;

/// A calibration applied to a plot. X ticks, editors of the axis ends and read-outs show energies, and panels show them
/// beside their results. The data remain in channels. A child of the plot; GUI thread only.
class TARNIS_EXPORT PlotCalibration : public QObject {
    Q_OBJECT

public:
    /// The calibration of a plot; null without one.
    static PlotCalibration* of(const XYGraphWidget& plot);
    /// Applies a calibration, replacing the previous one, and names the axis. Returns the error for the user; empty on
    /// success. It is an error if the calibration is invalid or does not increase over the data, or if the host has set
    /// a second scale of its own.
    static QString apply(XYGraphWidget& plot, const EnergyCalibration& calibration);
    /// Restores the previous axis and name. Does nothing without a calibration.
    static void remove(XYGraphWidget& plot);

    ~PlotCalibration() override;

    /// As applied.
    const EnergyCalibration& calibration() const { return m_calibration; }

private:
    TARNIS_NO_EXPORT PlotCalibration(
        XYGraphWidget& plot, const EnergyCalibration& calibration, std::pair<double, double> axis);
    TARNIS_NO_EXPORT double energyAt(double x) const;
    TARNIS_NO_EXPORT double positionOf(double energy) const;
    TARNIS_NO_EXPORT static double toTick(double x, void* self);
    TARNIS_NO_EXPORT static double fromTick(double energy, void* self);

    EnergyCalibration m_calibration;
    double m_lower; // ends of the data; the scale is linear outside
    double m_upper;
    QString m_previousName;
    std::unique_ptr<PlotOverlay> m_labels;
};

} // namespace tarnis
