#include "tarnis/tools/calibrationpanel.h"

#include "tarnis/analysis/peaktable.h"
#include "tarnis/foundation/retranslator.h"
#include "tarnis/plots/xygraphwidget.h"
#include "tarnis/tools/panels/backgroundrun_p.h"
#include "tarnis/tools/panels/calibrationmodel_p.h"
#include "tarnis/tools/panels/curvebox_p.h"
#include "tarnis/tools/panels/paneltext_p.h"
#include "tarnis/tools/panels/plotspectra_p.h"
#include "tarnis/tools/plotcalibration.h"

#include <QComboBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace tarnis {

struct TARNIS_NO_EXPORT CalibrationPanel::Internals {
    QPointer<XYGraphWidget> plot;
    CalibrationLines lines;
    EnergyCalibration calibration;
    double lower = 0.0; ///< axis of the fitted peaks
    double upper = 0.0;
    BackgroundRun run;
    CalibrationModel* model = nullptr;
    QTableView* view = nullptr;
    CurveBox* curve = nullptr;
    QLabel* sourceText = nullptr;
    QComboBox* source = nullptr;
    QPushButton* lineFile = nullptr;
    QLabel* degreeText = nullptr;
    QComboBox* degree = nullptr;
    QPushButton* calibrate = nullptr;
    QPushButton* apply = nullptr;
    QPushButton* remove = nullptr;
    QPushButton* save = nullptr;
    QPushButton* load = nullptr;
    QLabel* message = nullptr;
};

namespace {

struct Assignment {
    std::vector<CalibrationRow> rows;
    QString error;
};

/// The peaks of a spectrum with their lines. Runs on a thread of the pool.
Assignment assign(const PlotSpectrum& spectrum, const std::vector<CalibrationLine>& lines)
{
    const BinnedData data = spectrum.data();
    const PeakTable table = analysePeaks(data);
    if (!table.fault.isEmpty())
        return { {}, table.fault };
    std::vector<MeasuredPeak> peaks;
    for (const TablePeak& peak : table.peaks)
        peaks.push_back({ peak.centre, peak.centreError, peak.fwhm, peak.area });
    const std::vector<CalibrationPoint> points = assignLines(lines, peaks, data.edge(0), data.edge(data.size()));
    return { rowsOf(std::move(peaks), points), {} };
}

} // namespace

CalibrationPanel::CalibrationPanel(XYGraphWidget* plot, QWidget* parent)
    : QWidget(parent)
    , m_data(std::make_unique<Internals>())
{
    m_data->plot = plot;
    build();
    buildFileButtons();
    setTexts();
    onLanguageChange(*this, [this] {
        setTexts();
        m_data->model->retranslate();
        if (m_data->calibration.isValid())
            showCalibration(QString());
    });
    setSource(calibrationSources().value(0));
    if (const PlotCalibration* const applied = plot != nullptr ? PlotCalibration::of(*plot) : nullptr) {
        m_data->calibration = applied->calibration();
        showCalibration(QString());
    }
}

CalibrationPanel::~CalibrationPanel() = default;

void CalibrationPanel::build()
{
    Internals& d = *m_data;
    auto* const layout = new QVBoxLayout(this);
    auto* const bar = new QHBoxLayout;
    d.curve = new CurveBox(d.plot, this);
    d.sourceText = new QLabel(this);
    d.source = new QComboBox(this);
    d.source->setEditable(true);
    d.source->addItems(calibrationSources());
    d.source->setInsertPolicy(QComboBox::NoInsert);
    d.sourceText->setBuddy(d.source);
    connect(d.source, &QComboBox::currentTextChanged, this, &CalibrationPanel::setSource);
    d.lineFile = new QPushButton(this);
    connect(d.lineFile, &QPushButton::clicked, this, [this] {
        const QString path = QFileDialog::getOpenFileName(this, tr("Lines of a File"));
        const QString error = path.isEmpty() ? QString() : loadLines(path);
        if (!error.isEmpty())
            m_data->message->setText(error);
    });
    d.degreeText = new QLabel(this);
    d.degree = new QComboBox(this);
    d.degree->addItems({ QString(), QStringLiteral("1"), QStringLiteral("2") });
    d.degreeText->setBuddy(d.degree);
    connect(d.degree, &QComboBox::currentIndexChanged, this, &CalibrationPanel::fitPoints);
    d.calibrate = new QPushButton(this);
    connect(d.calibrate, &QPushButton::clicked, this, &CalibrationPanel::calibrate);
    for (QWidget* const widget : std::initializer_list<QWidget*> {
             d.curve, d.sourceText, d.source, d.lineFile, d.degreeText, d.degree, d.calibrate })
        bar->addWidget(widget);
    bar->addStretch();
    layout->addLayout(bar);
    d.message = new QLabel(this);
    d.message->setWordWrap(true);
    d.message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(d.message);
    d.model = new CalibrationModel(this);
    d.view = new QTableView(this);
    d.view->horizontalHeader()->setHighlightSections(false);
    d.view->setModel(d.model);
    d.view->verticalHeader()->hide();
    d.view->verticalHeader()->setDefaultSectionSize(d.view->fontMetrics().height() + 6);
    connect(d.model, &QAbstractItemModel::modelReset, d.view, &QTableView::resizeColumnsToContents);
    layout->addWidget(d.view, 1);
    connect(d.model, &CalibrationModel::edited, this, &CalibrationPanel::fitPoints);
    connect(d.model, &CalibrationModel::refused, d.message, &QLabel::setText);
}

void CalibrationPanel::buildFileButtons()
{
    Internals& d = *m_data;
    auto* const buttons = new QHBoxLayout;
    d.apply = new QPushButton(this);
    connect(d.apply, &QPushButton::clicked, this, &CalibrationPanel::apply);
    d.remove = new QPushButton(this);
    connect(d.remove, &QPushButton::clicked, this, &CalibrationPanel::remove);
    d.save = new QPushButton(this);
    connect(d.save, &QPushButton::clicked, this, [this] {
        const QString path = QFileDialog::getSaveFileName(
            this, tr("Save Calibration"), QStringLiteral("calibration.json"), tr("Calibrations (*.json)"));
        const QString error = path.isEmpty() ? QString() : saveCalibration(path);
        if (!error.isEmpty())
            m_data->message->setText(error);
    });
    d.load = new QPushButton(this);
    connect(d.load, &QPushButton::clicked, this, [this] {
        const QString path =
            QFileDialog::getOpenFileName(this, tr("Load Calibration"), QString(), tr("Calibrations (*.json)"));
        const QString error = path.isEmpty() ? QString() : loadCalibration(path);
        if (!error.isEmpty())
            m_data->message->setText(error);
    });
    for (QPushButton* const button : { d.apply, d.remove, d.save, d.load })
        buttons->addWidget(button);
    buttons->addStretch();
    static_cast<QVBoxLayout*>(layout())->addLayout(buttons);
}

void CalibrationPanel::setTexts()
{
    Internals& d = *m_data;
    setWindowTitle(tr("Energy Calibration"));
    d.curve->setToolTip(tr("The curve whose peaks are fitted"));
    d.sourceText->setText(tr("Source:"));
    d.source->setToolTip(tr("Several sources are joined by +, for example ba133+cs137"));
    d.lineFile->setText(tr("Lines of a File..."));
    d.degreeText->setText(tr("Degree:"));
    d.degree->setItemText(0, tr("automatic"));
    d.calibrate->setText(tr("Calibrate"));
    d.calibrate->setToolTip(tr("Fit the peaks of the plot and assign the lines to them"));
    d.apply->setText(tr("Apply to the Axis"));
    d.remove->setText(tr("Channels Again"));
    d.remove->setToolTip(tr("Remove the calibration from the axis"));
    d.save->setText(tr("Save..."));
    d.load->setText(tr("Load..."));
}

XYGraphWidget* CalibrationPanel::plot() const
{
    return m_data->plot;
}

QString CalibrationPanel::source() const
{
    return m_data->source->currentText();
}

void CalibrationPanel::setSource(const QString& names)
{
    if (m_data->source->currentText() != names) {
        m_data->source->setEditText(names); // the box's signal calls this function again
        return;
    }
    m_data->lines = linesOfSource(names);
    m_data->message->setText(m_data->lines.error.isEmpty()
            ? tr("Lines: %1. Press \"Calibrate\" to find them in the plot.").arg(m_data->lines.lines.size())
            : m_data->lines.error);
}

QString CalibrationPanel::loadLines(const QString& path)
{
    QString error;
    const QByteArray text = readTextFile(path, error);
    if (!error.isEmpty())
        return error;
    CalibrationLines lines = linesFromText(text);
    if (!lines.error.isEmpty())
        return lines.error;
    m_data->lines = std::move(lines);
    m_data->message->setText(
        tr("Lines: %1. Press \"Calibrate\" to find them in the plot.").arg(m_data->lines.lines.size()));
    return {};
}

int CalibrationPanel::degree() const
{
    return m_data->degree->currentIndex();
}

void CalibrationPanel::setDegree(int degree)
{
    if (degree >= 0 && degree < m_data->degree->count())
        m_data->degree->setCurrentIndex(degree);
}

const EnergyCalibration& CalibrationPanel::calibration() const
{
    return m_data->calibration;
}

bool CalibrationPanel::isRunning() const
{
    return m_data->run.isRunning();
}

QString CalibrationPanel::message() const
{
    return m_data->message->text();
}

QString CalibrationPanel::saveCalibration(const QString& path) const
{
    return m_data->calibration.isValid() ? writeTextFile(path, calibrationToJson(m_data->calibration))
                                         : tr("There is no calibration to save.");
}

QString CalibrationPanel::loadCalibration(const QString& path)
{
    QString error;
    const QByteArray text = readTextFile(path, error);
    if (!error.isEmpty())
        return error;
    const CalibrationResult read = calibrationFromJson(text);
    if (!read.error.isEmpty())
        return read.error;
    m_data->calibration = read.calibration;
    std::vector<CalibrationRow> rows;
    for (const CalibrationPoint& point : read.calibration.points)
        rows.push_back({ point, true });
    m_data->model->setRows(std::move(rows));
    // The axis of the file is unknown, so a new fit must increase over the range of the points.
    m_data->lower = read.calibration.points.empty() ? 0.0 : read.calibration.points.front().position;
    m_data->upper = read.calibration.points.empty() ? 0.0 : read.calibration.points.back().position;
    showCalibration(QString());
    return {};
}

void CalibrationPanel::calibrate()
{
    const PlotSpectrum spectrum = m_data->curve->spectrum();
    if (spectrum.contents.isEmpty() || m_data->lines.lines.empty()) {
        showCalibration(plot() == nullptr     ? tr("The plot has been closed.")
                : spectrum.contents.isEmpty() ? tr("The plot has no data.")
                                              : tr("There are no lines: choose a source or a file."));
        return;
    }
    m_data->lower = spectrum.data().edge(0);
    m_data->upper = spectrum.data().edge(static_cast<std::size_t>(spectrum.contents.size()));
    m_data->message->setText(tr("Fitting the peaks..."));
    m_data->run.start([this, spectrum, lines = m_data->lines.lines] {
        return BackgroundRun::Delivery([this, found = assign(spectrum, lines)] {
            m_data->model->setRows(found.rows);
            if (!found.error.isEmpty())
                showCalibration(found.error);
            else if (usedPoints(found.rows).empty())
                showCalibration(tr("The lines do not match the peaks. Type the energies of three peaks in the table."));
            else
                fitPoints();
        });
    });
}

void CalibrationPanel::fitPoints()
{
    const std::vector<CalibrationPoint> points = usedPoints(m_data->model->rows());
    if (points.empty())
        return;
    const CalibrationResult result = fitEnergyCalibration(points, m_data->lower, m_data->upper, degree());
    m_data->calibration = result.calibration;
    showCalibration(result.error);
}

void CalibrationPanel::showCalibration(const QString& error)
{
    if (!error.isEmpty())
        m_data->calibration = {};
    m_data->model->setCalibration(m_data->calibration);
    m_data->message->setText(error.isEmpty() ? summaryOf(m_data->calibration) : error);
    m_data->apply->setEnabled(m_data->calibration.isValid());
    m_data->save->setEnabled(m_data->calibration.isValid());
    Q_EMIT calibrated();
}

void CalibrationPanel::apply()
{
    const QString error =
        plot() != nullptr ? PlotCalibration::apply(*plot(), m_data->calibration) : tr("The plot has been closed.");
    m_data->message->setText(error.isEmpty() ? tr("The axis shows energies.") : error);
}

void CalibrationPanel::remove()
{
    if (plot() != nullptr)
        PlotCalibration::remove(*plot());
    m_data->message->setText(tr("The axis shows channels."));
}

} // namespace tarnis
