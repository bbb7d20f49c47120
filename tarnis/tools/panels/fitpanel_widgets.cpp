// The controls of a fit panel and their texts.
#include "tarnis/tools/panels/fitpanel_p.h"
#include "tarnis/tools/panels/wrappedlabel_p.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableView>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace tarnis {

namespace {

constexpr double farthest = 1e12;
constexpr int maxSeconds = 3600;
constexpr std::array allBackgrounds { FitBackground::None, FitBackground::Constant, FitBackground::Linear,
    FitBackground::Quadratic, FitBackground::Exponential };
constexpr std::array allStatistics { FitStatistic::Cash, FitStatistic::Pearson, FitStatistic::Neyman,
    FitStatistic::Unweighted };

QDoubleSpinBox* limitBox(QWidget& parent)
{
    auto* const box = new QDoubleSpinBox(&parent);
    box->setRange(-farthest, farthest);
    box->setDecimals(3);
    // The range of all values would make the box as wide as the longest of them.
    box->setMinimumWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("-00000.000")) + 30);
    box->setMaximumWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("-0000000.000")) + 40);
    box->setKeyboardTracking(false);
    return box;
}

QToolButton* toggle(QWidget& parent)
{
    auto* const button = new QToolButton(&parent);
    button->setCheckable(true);
    return button;
}

QString titleOf(FitBackground background)
{
    switch (background) {
    case FitBackground::None:
        return FitPanel::tr("none");
    case FitBackground::Constant:
        return FitPanel::tr("constant");
    case FitBackground::Linear:
        return FitPanel::tr("line");
    case FitBackground::Quadratic:
        return FitPanel::tr("parabola");
    case FitBackground::Exponential:
        break;
    }
    return FitPanel::tr("exponential");
}

QString titleOf(FitStatistic statistic)
{
    switch (statistic) {
    case FitStatistic::Cash:
        return FitPanel::tr("likelihood of counts");
    case FitStatistic::Pearson:
        return FitPanel::tr("chi squared (Pearson)");
    case FitStatistic::Neyman:
        return FitPanel::tr("chi squared (Neyman)");
    case FitStatistic::Unweighted:
        break;
    }
    return FitPanel::tr("unweighted");
}

template <typename Values> void fill(QComboBox& box, const Values& values)
{
    for (const auto value : values)
        box.addItem(QString(), static_cast<int>(value));
}

template <typename Values> void setTitles(QComboBox& box, const Values& values)
{
    for (std::size_t i = 0; i < values.size(); ++i)
        box.setItemText(static_cast<int>(i), titleOf(values[i]));
}

QWidget* row(QWidget& parent, std::initializer_list<QWidget*> widgets)
{
    auto* const line = new QWidget(&parent);
    auto* const layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QWidget* widget : widgets)
        layout->addWidget(widget);
    layout->addStretch();
    return line;
}

} // namespace

QLabel* FitControls::caption(QWidget& panel)
{
    captions.push_back(new QLabel(&panel));
    return captions.back();
}

QWidget* FitControls::rangeRow(QWidget& panel, XYGraphWidget* plot)
{
    pickRange = toggle(panel);
    pickPeaks = toggle(panel);
    lower = limitBox(panel);
    upper = limitBox(panel);
    curve = new CurveBox(plot, &panel);
    QLabel* const from = caption(panel);
    from->setBuddy(lower);
    QLabel* const to = caption(panel);
    to->setBuddy(upper);
    return row(panel, { pickRange, pickPeaks, from, lower, to, upper, curve });
}

QWidget* FitControls::modelRow(QWidget& panel)
{
    peaks = new QSpinBox(&panel);
    peaks->setRange(-1, FitModel::maxPeaks);
    shape = new QComboBox(&panel);
    fill(*shape, allPeakShapes);
    background = new QComboBox(&panel);
    fill(*background, allBackgrounds);
    statistic = new QComboBox(&panel);
    fill(*statistic, allStatistics);
    ownWidths = new QCheckBox(&panel);
    step = new QCheckBox(&panel);
    auto* const box = new QWidget(&panel);
    auto* const lines = new QVBoxLayout(box);
    lines->setContentsMargins(0, 0, 0, 0);
    QLabel* const peaksText = caption(panel);
    peaksText->setBuddy(peaks);
    QLabel* const backgroundText = caption(panel);
    backgroundText->setBuddy(background);
    lines->addWidget(row(panel, { peaksText, peaks, shape, ownWidths, step }));
    lines->addWidget(row(panel, { backgroundText, background, statistic }));
    return box;
}

QWidget* FitControls::actionRow(QWidget& panel)
{
    guess = new QPushButton(&panel);
    fit = new QPushButton(&panel);
    clear = new QPushButton(&panel);
    follow = new QCheckBox(&panel);
    seconds = new QSpinBox(&panel);
    seconds->setRange(1, maxSeconds);
    seconds->setValue(5);
    return row(panel, { guess, fit, clear, follow, seconds });
}

void FitControls::buildPages(QWidget& panel, FitParameterModel& model)
{
    pages = new QTabWidget(&panel);
    table = new QTableView(pages);
    table->setModel(&model);
    table->verticalHeader()->hide();
    table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + 6);
    QObject::connect(&model, &QAbstractItemModel::modelReset, table, &QTableView::resizeColumnsToContents);
    QObject::connect(&model, &QAbstractItemModel::rowsInserted, table, &QTableView::resizeColumnsToContents);
    // Bold headers of selected cells would not fit.
    table->horizontalHeader()->setHighlightSections(false);
    // A fit turns the guess into longer texts without new rows. The column does not get narrower, because each change
    // of its width paints the whole table again.
    QObject::connect(&model, &QAbstractItemModel::dataChanged, table, [&view = *table, &model] {
        const QFontMetrics metrics = view.fontMetrics();
        int needed = 0;
        for (int row = 0; row < model.rowCount(); ++row)
            needed = std::max(
                needed, metrics.horizontalAdvance(model.index(row, FitParameterModel::Value).data().toString()));
        needed += 2 * metrics.averageCharWidth();
        if (needed > view.columnWidth(FitParameterModel::Value))
            view.setColumnWidth(FitParameterModel::Value, needed);
    });
    // Unlike a stretched last section this one also shrinks when the others get wider.
    table->horizontalHeader()->setSectionResizeMode(FitParameterModel::Tie, QHeaderView::Stretch);
    table->setMinimumHeight(table->fontMetrics().height() * 8);
    pages->addTab(table, QString());
    history = new QTreeWidget(pages);
    history->setRootIsDecorated(false);
    history->setUniformRowHeights(true);
    history->setColumnCount(6);
    pages->addTab(history, QString());
    auto* const page = new QWidget(pages);
    auto* const layout = new QVBoxLayout(page);
    trendOf = new QComboBox(page);
    trend = new StripPlot(page);
    trend->setTimeAxis(true);
    trend->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    layout->addWidget(trendOf);
    layout->addWidget(trend, 1);
    pages->addTab(page, QString());
}

void FitControls::build(QWidget& panel, XYGraphWidget* plot, FitParameterModel& model)
{
    auto* const layout = new QVBoxLayout(&panel);
    layout->addWidget(rangeRow(panel, plot));
    layout->addWidget(modelRow(panel));
    layout->addWidget(actionRow(panel));
    auto* const text = new WrappedLabel(&panel);
    message = text;
    messageArea = new MessageArea(text, &panel);
    layout->addWidget(messageArea);
    buildPages(panel, model);
    layout->addWidget(pages, 1);
    residuals = new StripPlot(&panel);
    residuals->setBands(true);
    layout->addWidget(residuals);
    copy = new QPushButton(&panel);
    save = new QPushButton(&panel);
    layout->addWidget(row(panel, { copy, save }));
    setTexts();
}

void FitControls::setTexts()
{
    pickRange->setText(FitPanel::tr("Range"));
    pickRange->setToolTip(FitPanel::tr("Drag on the plot to choose the range of the fit"));
    pickPeaks->setText(FitPanel::tr("Peaks"));
    pickPeaks->setToolTip(FitPanel::tr("Click peaks on the plot; a click on a peak removes it"));
    const std::array texts { FitPanel::tr("from"), FitPanel::tr("to"), FitPanel::tr("Peaks:"),
        FitPanel::tr("Background:") };
    for (std::size_t i = 0; i < texts.size() && i < captions.size(); ++i)
        captions[i]->setText(texts[i]);
    peaks->setSpecialValueText(FitPanel::tr("automatic"));
    for (std::size_t i = 0; i < allPeakShapes.size(); ++i)
        shape->setItemText(static_cast<int>(i), tarnis::titleOf(allPeakShapes[i]));
    setTitles(*background, allBackgrounds);
    setTitles(*statistic, allStatistics);
    ownWidths->setText(FitPanel::tr("Own widths"));
    ownWidths->setToolTip(FitPanel::tr("Each peak has its own width instead of one for all"));
    step->setText(FitPanel::tr("Step"));
    step->setToolTip(FitPanel::tr("A step of the background below each peak"));
    guess->setText(FitPanel::tr("Guess"));
    fit->setText(FitPanel::tr("Fit", "button"));
    clear->setText(FitPanel::tr("Clear"));
    follow->setText(FitPanel::tr("Follow every"));
    follow->setToolTip(FitPanel::tr("Fit again while data arrive; the last good result is kept"));
    seconds->setSuffix(FitPanel::tr(" s"));
    const QStringList pageTexts { FitPanel::tr("Parameters"), FitPanel::tr("History"), FitPanel::tr("Trend") };
    for (int i = 0; i < pages->count(); ++i)
        pages->setTabText(i, pageTexts.value(i));
    history->setHeaderLabels({ FitPanel::tr("Time"), FitPanel::tr("Verdict"), FitPanel::tr("Area"),
        FitPanel::tr("Centre"), FitPanel::tr("FWHM"), FitPanel::tr("Statistic") });
    copy->setText(FitPanel::tr("Copy"));
    copy->setToolTip(FitPanel::tr("Copy the shown page with all digits"));
    save->setText(FitPanel::tr("Save..."));
    save->setToolTip(FitPanel::tr("Save the shown page with all digits"));
    residuals->setName(FitPanel::tr("residual"));
}

} // namespace tarnis
