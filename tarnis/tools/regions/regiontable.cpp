#include "tarnis/tools/regiontable.h"

#include "tarnis/foundation/retranslator.h"
#include "tarnis/plots/xy2dgraphwidget.h"
#include "tarnis/tools/panels/paneltext_p.h"
#include "tarnis/tools/regions/regiontablemodel_p.h"

#include <QAction>
#include <QDateTime>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace tarnis {

/// The widgets of the table.
struct RegionTableControls {
    QTableView* view = nullptr;
    QLabel* sideText = nullptr;
    QSpinBox* side = nullptr;
    QPushButton* freeze = nullptr;
    QPushButton* copy = nullptr;
    QPushButton* save = nullptr;
    QPushButton* load = nullptr;
    QLabel* hint = nullptr; ///< what to do while there are no regions
    QLabel* message = nullptr;

    /// Creates all widgets in a layout of the table.
    void build(QWidget& table, const QList<QAction*>& actions, RegionTableModel& model);

private:
    QHBoxLayout* toolRow(QWidget& table, const QList<QAction*>& actions);
    QHBoxLayout* buttonRow(QWidget& table);
};

namespace {

constexpr int maxSideBins = 1000;

PlotRegions* toolOf(XYGraphWidget* plot)
{
    if (plot == nullptr)
        return nullptr;
    auto* const present = plot->findChild<PlotRegions*>(QString(), Qt::FindDirectChildrenOnly);
    return present != nullptr ? present : new PlotRegions(plot);
}

} // namespace

RegionTable::RegionTable(XYGraphWidget* plot, QWidget* parent)
    : QWidget(parent)
    , m_regions(toolOf(plot))
    , m_model(new RegionTableModel(m_regions, this))
    , m_controls(std::make_unique<RegionTableControls>())
{
    build();
    setTexts();
    onLanguageChange(*this, [this] {
        setTexts();
        Q_EMIT m_model->headerDataChanged(Qt::Horizontal, 0, RegionTableModel::Columns - 1);
    });
    if (m_regions) {
        connect(m_regions, &PlotRegions::regionsChanged, this, [this] {
            showMessage({});
            refresh();
        });
        connect(m_regions, &PlotRegions::dataChanged, this, &RegionTable::refresh);
        connect(m_regions, &PlotRegions::selectionChanged, this, [this](int index) {
            for (int row = 0; row < m_model->rowCount(); ++row) {
                if (m_model->rows()[static_cast<std::size_t>(row)].region == index) {
                    m_controls->view->selectRow(row);
                    return;
                }
            }
            m_controls->view->clearSelection();
        });
        // Selections by the plot's own tools.
        connect(plot, &XYGraphWidget::xRangeSelected, this, &RegionTable::refresh);
        connect(plot, &XYGraphWidget::xRangeSelectClear, this, &RegionTable::refresh);
        if (auto* const map = qobject_cast<XY2DGraphWidget*>(plot)) {
            connect(map, &XY2DGraphWidget::onSelectRoiBegin, this, &RegionTable::refresh);
            connect(map, &XY2DGraphWidget::onSelectRoiChanged, this, &RegionTable::refresh);
            connect(map, &XY2DGraphWidget::onSelectRoiEnd, this, &RegionTable::refresh);
        }
    }
    refresh();
}

RegionTable::~RegionTable() = default;

QHBoxLayout* RegionTableControls::toolRow(QWidget& table, const QList<QAction*>& actions)
{
    auto* const row = new QHBoxLayout;
    for (QAction* const action : actions) {
        auto* const button = new QToolButton(&table);
        button->setDefaultAction(action);
        row->addWidget(button);
    }
    sideText = new QLabel(&table);
    side = new QSpinBox(&table);
    side->setRange(0, maxSideBins);
    sideText->setBuddy(side);
    row->addStretch();
    row->addWidget(sideText);
    row->addWidget(side);
    return row;
}

QHBoxLayout* RegionTableControls::buttonRow(QWidget& table)
{
    auto* const row = new QHBoxLayout;
    for (QPushButton** const button : { &freeze, &copy, &save, &load }) {
        *button = new QPushButton(&table);
        row->addWidget(*button);
    }
    freeze->setCheckable(true);
    row->addStretch();
    return row;
}

void RegionTableControls::build(QWidget& table, const QList<QAction*>& actions, RegionTableModel& model)
{
    auto* const layout = new QVBoxLayout(&table);
    layout->addLayout(toolRow(table, actions));
    hint = new QLabel(&table);
    hint->setWordWrap(true);
    layout->addWidget(hint);
    view = new QTableView(&table);
    view->horizontalHeader()->setHighlightSections(false);
    view->setModel(&model);
    view->verticalHeader()->hide();
    view->verticalHeader()->setDefaultSectionSize(view->fontMetrics().height() + 6);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    layout->addWidget(view, 1);
    message = new QLabel(&table);
    message->setWordWrap(true);
    message->hide();
    layout->addWidget(message);
    layout->addLayout(buttonRow(table));
}

void RegionTable::build()
{
    RegionTableControls& controls = *m_controls;
    controls.build(*this, m_regions ? m_regions->actions() : QList<QAction*>(), *m_model);
    controls.side->setValue(sideBins());
    connect(controls.side, &QSpinBox::valueChanged, this, &RegionTable::setSideBins);
    connect(m_model, &QAbstractItemModel::modelReset, this, &RegionTable::showColumns);
    connect(m_model, &RegionTableModel::refused, this, &RegionTable::showMessage);
    connect(controls.view->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
        [this](const QModelIndex& current) {
            if (m_regions && current.isValid())
                m_regions->select(m_model->rows()[static_cast<std::size_t>(current.row())].region);
        });
    connect(controls.freeze, &QPushButton::toggled, this, [this](bool on) { on ? freeze() : release(); });
    connect(controls.copy, &QPushButton::clicked, this, &RegionTable::copy);
    connect(controls.save, &QPushButton::clicked, this, [this] {
        const QString path = QFileDialog::getSaveFileName(
            this, tr("Save Regions"), QStringLiteral("regions.json"), tr("Regions (*.json)"));
        if (!path.isEmpty())
            showMessage(saveRegions(path));
    });
    connect(controls.load, &QPushButton::clicked, this, [this] {
        const QString path = QFileDialog::getOpenFileName(this, tr("Load Regions"), QString(), tr("Regions (*.json)"));
        if (!path.isEmpty())
            showMessage(loadRegions(path));
    });
    showColumns();
}

void RegionTable::setTexts()
{
    RegionTableControls& controls = *m_controls;
    setWindowTitle(tr("Regions"));
    const bool isMap = m_model->isMap();
    controls.sideText->setText(isMap ? tr("Frame:") : tr("Side bins:"));
    const QString tip = isMap ? tr("Width of the frame around a region that carries its background")
                              : tr("Bins on either side of a region that carry its background; 0: no net areas");
    controls.side->setToolTip(tip);
    controls.hint->setText(tr("Press a button for a region and drag on the plot."));
    controls.freeze->setText(tr("Since here"));
    controls.freeze->setToolTip(tr("Shows further counts in separate columns"));
    controls.copy->setText(tr("Copy"));
    controls.copy->setToolTip(tr("Copy the table with all digits"));
    controls.save->setText(tr("Save Regions..."));
    controls.load->setText(tr("Load Regions..."));
}

void RegionTable::showColumns()
{
    const bool isMap = m_model->isMap();
    QTableView& view = *m_controls->view;
    for (const int column : { RegionTableModel::FromY, RegionTableModel::ToY, RegionTableModel::CentroidY })
        view.setColumnHidden(column, !isMap);
    const std::vector<RegionRow>& rows = m_model->rows();
    const bool isOneCurve =
        std::all_of(rows.begin(), rows.end(), [](const RegionRow& row) { return row.curve.isEmpty(); });
    view.setColumnHidden(RegionTableModel::Curve, isMap || isOneCurve);
    view.setColumnHidden(RegionTableModel::Fwhm, isMap);
    view.setColumnHidden(RegionTableModel::Energy, isMap || !m_model->hasEnergies());
    for (const int column : { RegionTableModel::SumSince, RegionTableModel::NetSince })
        view.setColumnHidden(column, !m_model->isFrozen());
    view.resizeColumnsToContents();
    // Counts of a live plot get longer, and a resize with each update would shake the table.
    const int spare = view.fontMetrics().horizontalAdvance(QStringLiteral("000"));
    for (int column = RegionTableModel::Sum; column < RegionTableModel::Columns; ++column) {
        if (!view.isColumnHidden(column))
            view.setColumnWidth(column, view.columnWidth(column) + spare);
    }
    widenNet();
}

// The text of a net area without significance is longer, and the next data can take the significance away.
void RegionTable::widenNet()
{
    const std::vector<RegionRow>& rows = m_model->rows();
    if (std::all_of(rows.begin(), rows.end(), [](const RegionRow& row) { return row.isSignificant; }))
        return;
    QTableView& view = *m_controls->view;
    const int width = view.fontMetrics().horizontalAdvance(QStringLiteral("< 0000.0; -000(000)"));
    if (view.columnWidth(RegionTableModel::Net) < width)
        view.setColumnWidth(RegionTableModel::Net, width);
}

void RegionTable::showMessage(const QString& text)
{
    m_controls->message->setText(text);
    m_controls->message->setVisible(!text.isEmpty());
}

PlotRegions* RegionTable::regions() const
{
    return m_regions;
}

QString RegionTable::table() const
{
    return m_model->text();
}

bool RegionTable::isFrozen() const
{
    return m_model->isFrozen();
}

int RegionTable::sideBins() const
{
    return m_model->isMap() ? m_model->options.frame : m_model->options.sideBins;
}

void RegionTable::setSideBins(int bins)
{
    m_controls->side->setValue(bins);
    const int valid = m_controls->side->value();
    (m_model->isMap() ? m_model->options.frame : m_model->options.sideBins) = valid;
    refresh();
}

QString RegionTable::message() const
{
    return m_controls->message->text();
}

QString RegionTable::saveRegions(const QString& path) const
{
    return m_regions ? writeTextFile(path, regionsToJson(m_regions->regions())) : tr("The plot has been closed.");
}

QString RegionTable::loadRegions(const QString& path)
{
    if (!m_regions)
        return tr("The plot has been closed.");
    QString error;
    const QByteArray text = readTextFile(path, error);
    if (!error.isEmpty())
        return error;
    const PlotRegionsResult read = regionsFromJson(text);
    if (!read.error.isEmpty())
        return read.error;
    m_regions->setRegions(read.regions);
    const auto left = read.regions.size() - m_regions->regions().size();
    return left == 0 ? QString() : tr("%1 regions are for maps and were ignored.").arg(left);
}

void RegionTable::refresh()
{
    const bool hadEnergies = m_model->hasEnergies();
    m_model->refresh();
    m_controls->hint->setVisible(m_regions && m_model->rowCount() == 0);
    if (m_model->hasEnergies() != hadEnergies)
        showColumns();
    widenNet();
}

void RegionTable::freeze()
{
    m_model->freeze(QTime::currentTime().toString(QStringLiteral("HH:mm:ss")));
    m_controls->freeze->setChecked(true);
    showColumns();
}

void RegionTable::release()
{
    m_model->release();
    m_controls->freeze->setChecked(false);
    showColumns();
}

void RegionTable::copy()
{
    copyText(table());
}

} // namespace tarnis
