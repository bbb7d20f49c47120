#include "tarnis/tools/panels/curvebox_p.h"

#include <QSignalBlocker>

#include <algorithm>

namespace tarnis {

CurveBox::CurveBox(XYGraphWidget* plot, QWidget* parent)
    : QComboBox(parent)
    , PlotObserver(plot)
{
    setSizeAdjustPolicy(QComboBox::AdjustToContents);
    list();
    setVisible(count() > 1);
}

PlotSpectrum CurveBox::spectrum() const
{
    if (observedPlot() == nullptr)
        return {};
    const QList<PlotSpectrum> spectra = spectraOf(*observedPlot());
    for (const PlotSpectrum& spectrum : spectra) {
        if (spectrum.name == currentText())
            return spectrum;
    }
    return spectra.isEmpty() ? PlotSpectrum() : spectra.first();
}

void CurveBox::plotChanged(Changes changes)
{
    if (changes.testFlag(Data))
        list();
}

void CurveBox::list()
{
    const QStringList names = observedPlot() != nullptr ? spectrumNames(*observedPlot()) : QStringList();
    QStringList present;
    for (int i = 0; i < count(); ++i)
        present << itemText(i);
    if (names == present)
        return;
    const QString chosen = currentText();
    const QSignalBlocker blocker(this);
    clear();
    addItems(names);
    setCurrentIndex(std::max(0, static_cast<int>(names.indexOf(chosen))));
    setVisible(names.size() > 1);
}

} // namespace tarnis
