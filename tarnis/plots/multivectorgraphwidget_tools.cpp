// The tools of the menu: CSV files, selection of the visible series, peak search.
#include "tarnis/plots/multivectorgraphwidget.h"

#include "tarnis/dialogs/selectcheckeddialog.h"
#include "tarnis/foundation/retranslator.h"
#include "tarnis/foundation/saving_p.h"
#include "tarnis/foundation/trace_p.h"
#include "tarnis/peak/peaksearchdialog.h"
#include "tarnis/plots/curvenames_p.h"
#include "tarnis/plots/math/csvtext_p.h"
#include "tarnis/plots/math/seriesnames_p.h"
#include "tarnis/plots/plotstyling_p.h"

#include <QEvent>
#include <QHeaderView>
#include <QTableWidget>

#include <algorithm>

namespace {

constexpr int rowHeight = 18;

QTableWidgetItem* checkItem(bool checked)
{
    auto* item = new QTableWidgetItem;
    item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
    item->setCheckState(checked ? Qt::Checked : Qt::Unchecked);
    return item;
}

constexpr int classicColourRole = Qt::UserRole; // of a swatch: the colour without a style

QTableWidgetItem* swatch(const QColor& classic, const QColor& shown)
{
    auto* item = new QTableWidgetItem;
    item->setFlags(Qt::NoItemFlags);
    item->setData(classicColourRole, classic);
    item->setBackground(QBrush(shown));
    return item;
}

/// Repaints the swatches of a table in the plot's colours whenever the plot is painted: a style has no signal that the
/// plot could use.
class SwatchColours : public QObject {
public:
    SwatchColours(const MultiVectorGraphWidget& plot, QTableWidget& table)
        : QObject(&table)
        , m_plot(plot)
        , m_table(table)
    {
    }

protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            for (int row = 0; row < m_table.rowCount(); ++row)
                update(row);
        }
        return QObject::eventFilter(object, event);
    }

private:
    void update(int row)
    {
        QTableWidgetItem* const item = m_table.item(row, 1);
        const QVariant classic = item ? item->data(classicColourRole) : QVariant();
        if (!classic.isValid())
            return;
        const QColor shown = tarnis::shownCurveColour(m_plot, row, classic.value<QColor>());
        if (item->background().color() != shown)
            item->setBackground(QBrush(shown));
    }

    const MultiVectorGraphWidget& m_plot;
    QTableWidget& m_table;
};

} // namespace

// Files

QString MultiVectorGraphWidget::vector2Csv(const QList<Data>& list)
{
    QList<QList<double>> columns;
    for (const Data& series : list) {
        if (series.enable)
            columns.append(series.values);
    }
    return tarnis::csvOfColumns(m_manualIndex, columns);
}

void MultiVectorGraphWidget::onSaveCsv()
{
    tarnis::saveTable(this, tr("Save CSV"), tr("CSV Files (*.csv *.txt)"), [this] {
        const tarnis::CsvTable table = tarnis::csvTableOf(m_data, m_addType, groupSize(), tarnis::seriesTextsOf(*this));
        const QString header = table.header ? *table.header + QLatin1Char('\n') : QString();
        return header + vector2Csv(table.columns);
    });
}

// Visible series

void MultiVectorGraphWidget::onSelectVisibles()
{
    if (QWidget* open = m_visibleDialogs.map.value(this)) {
        open->show();
        open->activateWindow();
        return;
    }
    auto* dialog = new SelectCheckedDialog(this);
    m_visibleDialogs.map.insert(this, dialog);
    connect(dialog, &QObject::destroyed, &m_visibleDialogs, &ModelessWidgetManager::onDestroyed);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->show();
    dialog->setWindowTitle(tr("Select Visible Items"));
    tarnis::onLanguageChange(*dialog, [dialog] { dialog->setWindowTitle(tr("Select Visible Items")); });

    QTableWidget* table = dialog->getTable();
    table->horizontalHeader()->setVisible(true);
    table->verticalHeader()->setVisible(true);
    table->verticalHeader()->setDefaultSectionSize(rowHeight);
    fillVisiblesTable(*table);
    installEventFilter(new SwatchColours(*this, *table));
    table->resizeColumnsToContents();
    connect(dialog, &SelectCheckedDialog::onApply, this, &MultiVectorGraphWidget::onDlgSelectCheckedApply);
    dialog->show();
}

void MultiVectorGraphWidget::fillVisiblesTable(QTableWidget& table) const
{
    const int count = static_cast<int>(m_data.size());
    const int group = groupSize();
    const bool byGroup = m_addType == AddEachGroup;
    const bool byPosition = m_addType == AddEachPosition;
    const int series = byGroup ? tarnis::filledSeries(m_data) : count;
    const int rows = byPosition ? 1 : static_cast<int>((qsizetype(series) + group - 1) / group);
    table.setRowCount(rows);
    table.setColumnCount(byGroup ? 2 : group);

    QStringList columnNames;
    const QString anyItem = QStringLiteral("%1 *").arg(m_itemName);
    if (byGroup)
        columnNames << anyItem << QStringLiteral("  ");
    else if (group == 1 && !byPosition)
        columnNames << anyItem;
    else
        for (int column = 0; column < group; ++column)
            columnNames << tarnis::numberedName(m_itemName, column);
    table.setHorizontalHeaderLabels(columnNames);

    QStringList rowNames;
    for (int row = 0; row < rows; ++row)
        rowNames << (byPosition ? QStringLiteral("%1 *").arg(m_groupName)
                                : tarnis::numberedName(m_groupName, row + m_firstNumber));
    table.setVerticalHeaderLabels(rowNames);

    const QList<tarnis::SummedCurve> sums =
        byGroup ? tarnis::curvesByGroup(m_data, group) : QList<tarnis::SummedCurve>();
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < (byGroup ? 1 : std::min(group, count - row * group)); ++column)
            table.setItem(row, column, checkItem(m_data.at(row * group + column).enable));
        if (byGroup)
            table.setItem(
                row, 1, swatch(sums.at(row).colour, tarnis::shownCurveColour(*this, row, sums.at(row).colour)));
    }
}

void MultiVectorGraphWidget::onDlgSelectCheckedApply()
{
    auto* dialog = qobject_cast<SelectCheckedDialog*>(m_visibleDialogs.map.value(this));
    if (dialog == nullptr)
        return;
    const QTableWidget* table = dialog->getTable();
    for (int row = 0; row < table->rowCount(); ++row) {
        for (int column = 0; column < table->columnCount(); ++column) {
            const QTableWidgetItem* item = table->item(row, column);
            const qsizetype index = static_cast<qsizetype>(groupSize()) * row + column;
            if (item != nullptr && item->flags().testFlag(Qt::ItemIsUserCheckable) && index < m_data.size())
                m_data[index].enable = item->checkState() == Qt::Checked;
        }
    }
    dataTouched();
    refreshPixmap();
}

// Peak search

void MultiVectorGraphWidget::onPeakSearch()
{
    if (QWidget* open = m_peakDialogs.map.value(this)) {
        open->show();
        open->activateWindow();
        return;
    }
    m_peaks.clear();
    m_peakDisplayPoints = false;
    auto* dialog = new PeakSearchDialog(this);
    connect(dialog, &PeakSearchDialog::search, this, &MultiVectorGraphWidget::peakSearch);
    connect(dialog, &PeakSearchDialog::selectedChange, this, &MultiVectorGraphWidget::peakSelected);
    connect(dialog, &PeakSearchDialog::toggledDisplayPoints, this, &MultiVectorGraphWidget::peakToggledDisplayPoints);
    connect(dialog, &QObject::destroyed, this, &MultiVectorGraphWidget::peakClear);
    m_peakDialogs.map.insert(this, dialog);
    connect(dialog, &QObject::destroyed, &m_peakDialogs, &ModelessWidgetManager::onDestroyed);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->show();
}

void MultiVectorGraphWidget::peakSearch(int threshold, int width, bool peak)
{
    const std::optional<tarnis::NamedCurve> curve =
        tarnis::firstEnabledCurve(m_data, m_addType, groupSize(), tarnis::seriesTextsOf(*this));
    if (!curve)
        return;
    const QList<double>& samples = curve->samples;
    m_peakThreshold = 0.01 * std::max(tarnis::largestOf(samples), 0.0) * threshold;
    const tarnis::AxisRange initial { m_initMinX, m_initMaxX };
    const tarnis::SampleView view = tarnis::sampleView({ m_minX, m_maxX }, initial, m_manualX, samples.size(), 1);
    const tarnis::SampleRange range = tarnis::wholeSamples(view.first, view.last, samples.size());
    m_peaks = PeakSearch(samples, range.begin, range.end, m_peakThreshold, width, peak).exec();
    m_peakSelected = -1;
    refreshPixmap();

    if (m_manualX) {
        const double bin = (initial.max - initial.min) / static_cast<double>(samples.size());
        for (PeakSearch::Gaussian& found : m_peaks) {
            found.sigma *= bin;
            found.center = found.center * bin + initial.min;
        }
    }
    if (auto* dialog = qobject_cast<PeakSearchDialog*>(m_peakDialogs.map.value(this))) {
        dialog->appendResults(m_peaks);
        dialog->setWindowTitle(QStringLiteral("Peak Search [%1]").arg(curve->name));
    }
}

void MultiVectorGraphWidget::peakSelected(int index)
{
    if (index == m_peakSelected)
        return;
    m_peakSelected = index;
    refreshPixmap();
}

void MultiVectorGraphWidget::peakToggledDisplayPoints(bool checked)
{
    m_peakDisplayPoints = checked;
    refreshPixmap();
}

void MultiVectorGraphWidget::peakClear()
{
    TARNIS_TRACE(QStringLiteral("peakClear"));
    m_peaks.clear();
    refreshPixmap();
}

void MultiVectorGraphWidget::showPeak(const PeakSearch::Gaussian& g)
{
    m_peaks = { g };
    refreshPixmap();
}
