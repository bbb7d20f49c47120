// The choice of one of a plot's curves.
#pragma once

#include "tarnis/plots/plotobserver.h"
#include "tarnis/tools/panels/plotspectra_p.h"

#include <QComboBox>

namespace tarnis {

/// Lists the visible curves of a plot and follows it. Hidden while there is only one. The chosen curve is kept by its
/// name; without it the first one is chosen.
class CurveBox : public QComboBox, private PlotObserver {
public:
    /// A choice for a plot, which may be destroyed first.
    explicit CurveBox(XYGraphWidget* plot, QWidget* parent = nullptr);

    /// The chosen curve, as the plot shows it now; no contents without one.
    PlotSpectrum spectrum() const;

private:
    void plotChanged(Changes changes) override;
    void list();
};

} // namespace tarnis
