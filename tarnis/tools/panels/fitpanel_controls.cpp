// The handlers of a fit panel's controls.
#include "tarnis/tools/panels/fitpanel_p.h"

#include "tarnis/analysis/figures.h"
#include "tarnis/plots/xygraphwidget.h"
#include "tarnis/tools/panels/paneltext_p.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableView>
#include <QToolButton>
#include <QTreeWidget>

#include <cmath>

namespace tarnis {

namespace {

constexpr int parametersPage = 0;

QString shownText(const FitResult& result, const QString& name)
{
    // With several peaks the names have numbers; the history shows the first peak.
    const QString found = std::isnan(result.valueOf(name)) ? name + u'1' : name;
    const double value = result.valueOf(found);
    return std::isnan(value) ? QString() : figureText(value, result.errorOf(found));
}

} // namespace

void FitPanel::connectControls()
{
    connectModel();
    connectActions();
    connectPages();
}

// While only one limit has been typed, they can be in the wrong order.
bool FitPanel::checkRange()
{
    const FitControls& controls = m_data->controls;
    const bool isOrdered = controls.lower->value() < controls.upper->value();
    const bool isUntouched = controls.lower->value() == range().min && controls.upper->value() == range().max;
    if (!isOrdered && !isUntouched)
        showMessage(tr("The range must end above its start."), false);
    return isOrdered || isUntouched;
}

void FitPanel::connectModel()
{
    FitControls& controls = m_data->controls;
    const auto picks = [this](PlotPicker::Mode mode) {
        return [this, mode](bool on) {
            if (m_data->picker)
                m_data->picker->setMode(on ? mode : PlotPicker::Mode::Off);
        };
    };
    connect(controls.pickRange, &QToolButton::toggled, this, picks(PlotPicker::Mode::Range));
    connect(controls.pickPeaks, &QToolButton::toggled, this, picks(PlotPicker::Mode::Places));
    const auto onRange = [this, &controls] {
        if (!m_data->isFilling && checkRange())
            setRange(controls.lower->value(), controls.upper->value());
    };
    connect(controls.lower, &QDoubleSpinBox::valueChanged, this, onRange);
    connect(controls.upper, &QDoubleSpinBox::valueChanged, this, onRange);
    const auto onModel = [this] { readControls(); };
    connect(controls.peaks, &QSpinBox::valueChanged, this, onModel);
    for (QComboBox* box :
        std::initializer_list<QComboBox*> { controls.shape, controls.background, controls.statistic, controls.curve })
        connect(box, &QComboBox::activated, this, onModel);
    for (QCheckBox* box : { controls.ownWidths, controls.step })
        connect(box, &QCheckBox::toggled, this, onModel);
}

void FitPanel::connectActions()
{
    FitControls& controls = m_data->controls;
    connect(controls.guess, &QPushButton::clicked, this, [this] {
        if (!checkRange())
            return;
        // "Guess" starts from the data again: entered values are dropped, bounds and ties are kept.
        for (FitConstraint& constraint : m_data->setup.model.constraints) {
            if (!constraint.fixed)
                constraint.start.reset();
        }
        guess();
    });
    connect(controls.fit, &QPushButton::clicked, this, [this] {
        if (checkRange())
            fit();
    });
    connect(controls.clear, &QPushButton::clicked, this, &FitPanel::clear);
    const auto onFollow = [this, &controls] {
        setFollowSeconds(controls.follow->isChecked() ? controls.seconds->value() : 0);
    };
    connect(controls.follow, &QCheckBox::toggled, this, onFollow);
    connect(controls.seconds, &QSpinBox::valueChanged, this, [onFollow, &controls] {
        if (controls.follow->isChecked())
            onFollow();
    });
    connect(&m_data->followTimer, &QTimer::timeout, this, [this] {
        if (m_data->hasNewData && !isRunning())
            fit();
    });
}

void FitPanel::connectPages()
{
    FitControls& controls = m_data->controls;
    connect(controls.trendOf, &QComboBox::currentIndexChanged, this, [this] { showTrend(); });
    const auto text = [this, &controls] {
        return controls.pages->currentIndex() == parametersPage ? table() : historyTable();
    };
    connect(controls.copy, &QPushButton::clicked, this, [text] { copyText(text()); });
    connect(controls.save, &QPushButton::clicked, this, [this, text] {
        const QString error =
            saveTextFile(this, tr("Save Results"), tr("Text separated by tabs (*.tsv *.txt)"), text().toUtf8());
        if (!error.isEmpty())
            showMessage(error, false);
    });
    connect(&m_data->parameters, &FitParameterModel::edited, this, [this] {
        guess();
        Q_EMIT stateChanged();
    });
    connect(&m_data->parameters, &FitParameterModel::refused, this,
        [this](const QString& reason) { showMessage(reason, false); });
}

void FitPanel::connectPlot()
{
    PlotPicker* const picker = m_data->picker;
    if (picker == nullptr)
        return;
    connect(picker, &PlotPicker::modeChanged, this, [this, picker] {
        const QSignalBlocker blockers[] { QSignalBlocker(m_data->controls.pickRange),
            QSignalBlocker(m_data->controls.pickPeaks) };
        m_data->controls.pickRange->setChecked(picker->mode() == PlotPicker::Mode::Range);
        m_data->controls.pickPeaks->setChecked(picker->mode() == PlotPicker::Mode::Places);
    });
    connect(picker, &PlotPicker::rangeChanged, this, [this](double lower, double upper) {
        m_data->curves.setRange({ lower, upper });
    });
    connect(picker, &PlotPicker::rangePicked, this, &FitPanel::setRange);
    connect(picker, &PlotPicker::placePicked, this, &FitPanel::addPeakAt);
    connect(picker, &PlotPicker::dataChanged, this, &FitPanel::onDataChanged);
    connect(picker, &PlotPicker::viewChanged, m_data->controls.residuals, QOverload<>::of(&QWidget::update));
    connect(picker, &QObject::destroyed, this, [this] {
        m_data->followTimer.stop();
        m_data->controls.residuals->tieTo(nullptr);
    });
}

void FitPanel::onDataChanged()
{
    m_data->hasNewData = true;
}

void FitPanel::readControls()
{
    if (m_data->isFilling)
        return;
    FitControls& controls = m_data->controls;
    FitSetup& setup = m_data->setup;
    setup.isAutomatic = controls.peaks->value() < 0;
    const int peaks = setup.isAutomatic ? 1 : controls.peaks->value();
    if (peaks != setup.model.peaks)
        setup.model.centres.clear();
    setup.model.peaks = peaks;
    setup.model.shape = static_cast<PeakShape>(controls.shape->currentData().toInt());
    setup.model.background = static_cast<FitBackground>(controls.background->currentData().toInt());
    setup.model.widthMode = controls.ownWidths->isChecked() ? WidthMode::Own : WidthMode::Shared;
    setup.model.withStep = controls.step->isChecked();
    setup.options.statistic = static_cast<FitStatistic>(controls.statistic->currentData().toInt());
    if (setup.range.min != setup.range.max)
        guess();
    Q_EMIT stateChanged();
}

void FitPanel::showControls()
{
    FitControls& controls = m_data->controls;
    const FitSetup& setup = m_data->setup;
    m_data->isFilling = true;
    controls.lower->setValue(setup.range.min);
    controls.upper->setValue(setup.range.max);
    controls.peaks->setValue(setup.isAutomatic ? -1 : setup.model.peaks);
    controls.shape->setCurrentIndex(controls.shape->findData(static_cast<int>(setup.model.shape)));
    controls.background->setCurrentIndex(controls.background->findData(static_cast<int>(setup.model.background)));
    controls.statistic->setCurrentIndex(controls.statistic->findData(static_cast<int>(setup.options.statistic)));
    controls.ownWidths->setChecked(setup.model.widthMode == WidthMode::Own);
    controls.step->setChecked(setup.model.withStep);
    m_data->isFilling = false;
}

void FitPanel::showMessage(const QString& text, bool isGood)
{
    QLabel& label = *m_data->controls.message;
    if (label.text() != text)
        label.setText(text);
    m_data->controls.messageArea->setVisible(!text.isEmpty());
    QFont font = label.font();
    font.setBold(!isGood);
    label.setFont(font);
    m_data->controls.messageArea->updateGeometry();
}

void FitPanel::showHistory()
{
    QTreeWidget& list = *m_data->controls.history;
    const FitRecord& record = m_data->history.records().last();
    list.insertTopLevelItem(0,
        new QTreeWidgetItem({ record.time.toString(QStringLiteral("HH:mm:ss")),
            record.result.acceptable ? tr("acceptable") : tr("not acceptable"),
            shownText(record.result, QStringLiteral("area")), shownText(record.result, QStringLiteral("centre")),
            shownText(record.result, QStringLiteral("fwhm")),
            QStringLiteral("%1 / %2").arg(record.result.value, 0, 'g', 5).arg(record.result.ndf) }));
    if (list.topLevelItemCount() > FitHistory::maxRecords)
        delete list.takeTopLevelItem(list.topLevelItemCount() - 1);
    QComboBox& box = *m_data->controls.trendOf;
    // The names of the earlier records are already there.
    const int known = box.count();
    for (const QString& name : namesOf(record.result)) {
        if (box.findData(name) < 0)
            box.addItem(QString(), name);
    }
    showTrendNames(known);
    showTrend();
}

// The choice of the trend, from one entry on: labels with units.
void FitPanel::showTrendNames(int first)
{
    QComboBox& box = *m_data->controls.trendOf;
    for (int i = first; i < box.count(); ++i) {
        const ParameterText text = m_data->parameters.labelsOf(box.itemData(i).toString());
        box.setItemText(i, text.unit.isEmpty() ? text.label : QStringLiteral("%1 (%2)").arg(text.label, text.unit));
        box.setItemData(i, text.toolTip, Qt::ToolTipRole);
    }
}

void FitPanel::showTrend()
{
    const QString name = m_data->controls.trendOf->currentData().toString();
    std::vector<StripPoint> points;
    for (const TrendPoint& point : m_data->history.trendOf(name))
        points.push_back({ static_cast<double>(point.time.toMSecsSinceEpoch()) / 1000.0, point.value, point.error,
            !point.acceptable });
    m_data->controls.trend->setPoints(std::move(points));
    m_data->controls.trend->setName(m_data->parameters.labelsOf(name).label);
}

} // namespace tarnis
