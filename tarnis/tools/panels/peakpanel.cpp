#include "tarnis/tools/peakpanel.h"

#include "tarnis/foundation/retranslator.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/plotobserver.h"
#include "tarnis/plots/xygraphwidget.h"
#include "tarnis/tools/panels/backgroundrun_p.h"
#include "tarnis/tools/panels/curvebox_p.h"
#include "tarnis/tools/panels/paneltext_p.h"
#include "tarnis/tools/panels/peaktablemodel_p.h"
#include "tarnis/tools/panels/plotspectra_p.h"
#include "tarnis/tools/plotcalibration.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>
#include <vector>

namespace tarnis {

struct TARNIS_NO_EXPORT PeakPanel::Internals : PlotObserver {
    explicit Internals(XYGraphWidget* observed)
        : PlotObserver(observed)
        , plot(observed)
        , marks(observed)
    {
    }

    QPointer<XYGraphWidget> plot;
    PeakMarks marks;
    PeakTable table;
    bool hasSearched = false;
    BackgroundRun run;
    PeakTableModel* model = nullptr;
    QTableView* view = nullptr;
    QLabel* significanceText = nullptr;
    QDoubleSpinBox* significance = nullptr;
    QCheckBox* visibleOnly = nullptr;
    CurveBox* curve = nullptr;
    QPushButton* search = nullptr;
    QPushButton* clear = nullptr;
    QPushButton* copy = nullptr;
    QPushButton* save = nullptr;
    QLabel* message = nullptr;
    std::vector<double> shownCoefficients; ///< of the energies in the table
    std::function<void()> calibrationChanged;

    void plotChanged(Changes changes) override
    {
        if (changes.testFlag(Data) && calibration().coefficients != shownCoefficients)
            calibrationChanged();
    }

    EnergyCalibration calibration() const
    {
        const PlotCalibration* const applied = plot ? PlotCalibration::of(*plot) : nullptr;
        return applied != nullptr ? applied->calibration() : EnergyCalibration();
    }
};

PeakPanel::PeakPanel(XYGraphWidget* plot, QWidget* parent)
    : QWidget(parent)
    , m_data(std::make_unique<Internals>(plot))
{
    build();
    setTexts();
    onLanguageChange(*this, [this] {
        setTexts();
        m_data->model->retranslate();
        showTable();
    });
    m_data->calibrationChanged = [this] { showTable(); };
    showTable();
}

PeakPanel::~PeakPanel() = default;

void PeakPanel::build()
{
    Internals& d = *m_data;
    auto* const layout = new QVBoxLayout(this);
    auto* const bar = new QHBoxLayout;
    d.curve = new CurveBox(d.plot, this);
    d.search = new QPushButton(this);
    d.significanceText = new QLabel(this);
    d.significance = new QDoubleSpinBox(this);
    d.significance->setRange(2.0, 100.0);
    d.significance->setDecimals(1);
    d.significance->setValue(4.0);
    d.significanceText->setBuddy(d.significance);
    d.visibleOnly = new QCheckBox(this);
    for (QWidget* const widget :
        std::initializer_list<QWidget*> { d.curve, d.search, d.significanceText, d.significance, d.visibleOnly })
        bar->addWidget(widget);
    bar->addStretch();
    layout->addLayout(bar);
    d.message = new QLabel(this);
    d.message->setWordWrap(true);
    layout->addWidget(d.message);
    d.model = new PeakTableModel(this);
    d.view = new QTableView(this);
    d.view->horizontalHeader()->setHighlightSections(false);
    d.view->setModel(d.model);
    d.view->verticalHeader()->setDefaultSectionSize(d.view->fontMetrics().height() + 6);
    d.view->setSelectionBehavior(QAbstractItemView::SelectRows);
    d.view->setSelectionMode(QAbstractItemView::SingleSelection);
    connect(d.view->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
        [this](const QModelIndex& current) { m_data->marks.select(current.isValid() ? current.row() : -1); });
    layout->addWidget(d.view, 1);
    auto* const buttons = new QHBoxLayout;
    d.copy = new QPushButton(this);
    d.save = new QPushButton(this);
    d.clear = new QPushButton(this);
    for (QPushButton* const button : { d.copy, d.save, d.clear })
        buttons->addWidget(button);
    buttons->addStretch();
    layout->addLayout(buttons);
    connect(d.search, &QPushButton::clicked, this, &PeakPanel::search);
    connect(d.clear, &QPushButton::clicked, this, &PeakPanel::clear);
    connect(d.copy, &QPushButton::clicked, this, &PeakPanel::copy);
    connect(d.save, &QPushButton::clicked, this, [this] {
        const QString error =
            saveTextFile(this, tr("Save Peaks"), tr("Text separated by tabs (*.tsv *.txt)"), table().toUtf8());
        if (!error.isEmpty())
            m_data->message->setText(error);
    });
}

void PeakPanel::setTexts()
{
    Internals& d = *m_data;
    setWindowTitle(tr("Peaks"));
    d.curve->setToolTip(tr("The curve that is searched"));
    d.search->setText(tr("Find and Fit"));
    d.significanceText->setText(tr("Significance:"));
    d.significance->setToolTip(
        tr("Standard deviations of the second difference that a peak needs; below 4 noise is found too"));
    d.visibleOnly->setText(tr("Visible range only"));
    d.copy->setText(tr("Copy"));
    d.copy->setToolTip(tr("Copy the table with all digits"));
    d.save->setText(tr("Save..."));
    d.clear->setText(tr("Clear"));
}

XYGraphWidget* PeakPanel::plot() const
{
    return m_data->plot;
}

const PeakTable& PeakPanel::peaks() const
{
    return m_data->table;
}

bool PeakPanel::isRunning() const
{
    return m_data->run.isRunning();
}

double PeakPanel::significance() const
{
    return m_data->significance->value();
}

void PeakPanel::setSignificance(double significance)
{
    m_data->significance->setValue(significance);
}

bool PeakPanel::isVisibleOnly() const
{
    return m_data->visibleOnly->isChecked();
}

void PeakPanel::setVisibleOnly(bool on)
{
    m_data->visibleOnly->setChecked(on);
}

QString PeakPanel::message() const
{
    return m_data->message->text();
}

QString PeakPanel::table() const
{
    return peakTableText(m_data->table, m_data->calibration());
}

void PeakPanel::search()
{
    const PlotSpectrum spectrum = m_data->curve->spectrum();
    if (spectrum.contents.isEmpty()) {
        clear();
        m_data->message->setText(plot() != nullptr ? tr("The plot has no data.") : tr("The plot has been closed."));
        Q_EMIT searched();
        return;
    }
    BinRange bins { 0, static_cast<std::ptrdiff_t>(spectrum.contents.size()) - 1 };
    if (isVisibleOnly()) {
        const AxisRange view = PlotMapping::of(*plot()).x();
        bins = binsBetween(spectrum.data(), view.min, view.max);
    }
    PeakTableOptions options;
    options.significance = significance();
    m_data->message->setText(tr("Searching..."));
    m_data->run.start([this, spectrum, options, bins] {
        PeakTable found;
        QList<FitLines> lines;
        if (bins.isEmpty())
            found.fault = tr("The visible range contains no bin of the data.");
        else
            found = analysePeaks(
                spectrum.data(), options, static_cast<std::size_t>(bins.first), static_cast<std::size_t>(bins.last));
        for (const FitResult& window : found.windows)
            lines.append(linesOf(window, spectrum.data(), 200));
        return BackgroundRun::Delivery([this, found = std::move(found), lines = std::move(lines)] {
            m_data->table = found;
            m_data->hasSearched = true;
            m_data->marks.setPeaks(found, lines);
            showTable();
            Q_EMIT searched();
        });
    });
}

void PeakPanel::showTable()
{
    Internals& d = *m_data;
    const EnergyCalibration calibration = d.calibration();
    d.shownCoefficients = calibration.coefficients;
    d.model->setPeaks(d.table, calibration);
    d.view->setColumnHidden(PeakTableModel::Energy, !calibration.isValid());
    d.view->resizeColumnsToContents();
    const auto good = std::count_if(
        d.table.peaks.begin(), d.table.peaks.end(), [](const TablePeak& peak) { return peak.acceptable; });
    d.message->setText(!d.table.fault.isEmpty() ? d.table.fault
            : !d.hasSearched                    ? tr("Press \"Find and Fit\" to list the peaks of the curve.")
                             : tr("Peaks: %1. In acceptable fits: %2.").arg(d.table.peaks.size()).arg(good));
}

void PeakPanel::clear()
{
    m_data->run.drop();
    m_data->table = {};
    m_data->hasSearched = false;
    m_data->marks.setPeaks({}, {});
    showTable();
}

void PeakPanel::copy()
{
    copyText(table());
}

} // namespace tarnis
