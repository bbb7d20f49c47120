// State and controls of a fit panel.
#pragma once

#include "tarnis/tools/fitpanel.h"
#include "tarnis/tools/panels/backgroundrun_p.h"
#include "tarnis/tools/panels/curvebox_p.h"
#include "tarnis/tools/panels/fitcurves_p.h"
#include "tarnis/tools/panels/fithistory_p.h"
#include "tarnis/tools/panels/fitparametermodel_p.h"
#include "tarnis/tools/panels/plotpicker_p.h"
#include "tarnis/tools/panels/plotspectra_p.h"
#include "tarnis/tools/panels/stripplot_p.h"

#include <QPointer>
#include <QTimer>

QT_BEGIN_NAMESPACE
class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QPushButton;
class QSpinBox;
class QTableView;
class QTabWidget;
class QToolButton;
class QTreeWidget;
QT_END_NAMESPACE

namespace tarnis {

/// The widgets of a fit panel.
struct FitControls {
    QToolButton* pickRange = nullptr;
    QToolButton* pickPeaks = nullptr;
    QDoubleSpinBox* lower = nullptr;
    QDoubleSpinBox* upper = nullptr;
    CurveBox* curve = nullptr;
    QSpinBox* peaks = nullptr; ///< -1: automatic
    QComboBox* shape = nullptr;
    QComboBox* background = nullptr;
    QComboBox* statistic = nullptr;
    QCheckBox* ownWidths = nullptr;
    QCheckBox* step = nullptr;
    QPushButton* guess = nullptr;
    QPushButton* fit = nullptr;
    QPushButton* clear = nullptr;
    QCheckBox* follow = nullptr;
    QSpinBox* seconds = nullptr;
    QTabWidget* pages = nullptr;
    QTableView* table = nullptr;
    QTreeWidget* history = nullptr;
    QComboBox* trendOf = nullptr;
    StripPlot* trend = nullptr;
    QPushButton* copy = nullptr;
    QPushButton* save = nullptr;
    QLabel* message = nullptr;
    QWidget* messageArea = nullptr; ///< scrolls the message
    StripPlot* residuals = nullptr;
    std::vector<QLabel*> captions; ///< labels, in the order of the texts in setTexts()

    /// Creates all widgets in a layout of the panel.
    void build(QWidget& panel, XYGraphWidget* plot, FitParameterModel& model);
    /// Sets all texts in the current language.
    void setTexts();

private:
    QLabel* caption(QWidget& panel);
    QWidget* rangeRow(QWidget& panel, XYGraphWidget* plot);
    QWidget* modelRow(QWidget& panel);
    QWidget* actionRow(QWidget& panel);
    void buildPages(QWidget& panel, FitParameterModel& model);
};

struct TARNIS_NO_EXPORT FitPanel::Internals {
    explicit Internals(XYGraphWidget* plot);

    QPointer<PlotPicker> picker; // a child of the plot
    FitCurves curves;
    FitSetup setup;
    FitParameterModel parameters { setup };
    FitControls controls;
    FitHistory history;
    BackgroundRun run;
    QTimer followTimer;

    FitResult shown;
    PlotSpectrum shownData; ///< data of the shown result
    QDateTime shownTime;
    bool isGuess = false;
    bool hasGood = false; ///< the shown result is an acceptable fit
    bool hasNewData = true; ///< since the last fit
    bool isFilling = false; ///< the panel itself is setting controls

    /// The current curve to fit; empty if there is none.
    PlotSpectrum spectrum() const;
    /// Makes a fit of that time the shown result.
    void setShown(const FitResult& result, const PlotSpectrum& data, const QDateTime& time);
};

} // namespace tarnis
