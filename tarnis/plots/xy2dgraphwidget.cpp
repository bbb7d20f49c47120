// Construction, data and the fit of the axes to it. The rest of the class: _paint (bins, crosses, layout), _colour
// (scale and its controls), _mouse, _cut, _cutwindows, _roi, _files (images, CSV, printing).
#include "tarnis/plots/xy2dgraphwidget.h"

#include "tarnis/foundation/retranslator.h"
#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/mapcolouring_p.h"
#include "tarnis/plots/math/floatcomparison_p.h"
#include "tarnis/plots/xy2dgraphwidget_p.h"

#include <QAction>
#include <QPushButton>

#include <algorithm>
#include <limits>
#include <utility>

namespace {

// The step of a map without rows.
constexpr double emptyStep = 1e-5;

constexpr int firstBarMargin = 56;

QAction* addPlain(QWidget* widget, const char* text)
{
    auto* action = new QAction(widget);
    tarnis::setTranslatedText(*action, *widget, [text] { return XY2DGraphWidget::tr(text); });
    widget->addAction(action);
    return action;
}

QAction* addCheckable(QWidget* widget, const char* text)
{
    QAction* action = addPlain(widget, text);
    action->setCheckable(true);
    return action;
}

} // namespace

XY2DGraphWidget::XY2DGraphWidget(QWidget* parent)
    : XYGraphWidget(parent)
    , m_parts(std::make_unique<Parts>(*this))
{
    SetPaintGridLineOnGraph(true);
    m_margin.setRight(firstBarMargin);
    m_colorBar = new ColorBarWidget(this);
    m_parts->colors.feedBar();
    connect(m_colorBar, &ColorBarWidget::onMinChanged, this, &XY2DGraphWidget::onMinZChanged);
    connect(m_colorBar, &ColorBarWidget::onMaxChanged, this, &XY2DGraphWidget::onMaxZChanged);
    connect(m_colorBar, &ColorBarWidget::sizeChanging, this, &XY2DGraphWidget::onColorBarSizeChanging);
    connect(m_colorBar, &ColorBarWidget::beginEditingText, this, &XY2DGraphWidget::onEditingColorBar);
    connect(m_colorBar, &ColorBarWidget::EditLineDeleted, this, &XY2DGraphWidget::onFinishEditingColorBar);

    m_autoButton = new QPushButton(tr("Auto"), this);
    m_autoButton->setCheckable(true);
    m_autoButton->setChecked(m_colorBar->isAutoScale());
    connect(m_autoButton, &QPushButton::toggled, this, &XY2DGraphWidget::onAutoScaleZToggled);
    m_autoButton->setAutoDefault(false);
    const QString text = m_autoButton->text();
    m_autoButton->setText(tr("Manual")); // the longer word
    m_autoButton->adjustSize();
    m_autoButton->setText(text);
    m_margin.setRight(m_autoButton->width() + tarnis::besideAutoButton);

    connect(addPlain(this, QT_TR_NOOP("Save CSV...")), &QAction::triggered, this, &XY2DGraphWidget::onSaveCsv);
    m_act1dCut = addCheckable(this, QT_TR_NOOP("1D Cut"));
    connect(m_act1dCut, &QAction::toggled, this, &XY2DGraphWidget::on1dCut);
    m_act1dCutInside = addCheckable(this, QT_TR_NOOP("Inside Only"));
    m_act1dCutInside->setVisible(false);
    connect(m_act1dCutInside, &QAction::toggled, this, &XY2DGraphWidget::on1dCutInside);
    connect(addCheckable(this, QT_TR_NOOP("Log Scale")), &QAction::triggered, this, &XY2DGraphWidget::onLogScale);

    tarnis::onLanguageChange(*this, [this] {
        m_autoButton->setText(tr("Manual")); // the longer word
        m_autoButton->adjustSize();
        m_autoButton->setText(m_autoButton->isChecked() ? tr("Auto") : tr("Manual"));
        adjustWidgetPosition(size());
    });

    setMouseTracking(true); // for the read-out
    adjustWidgetPosition(size());
}

XY2DGraphWidget::~XY2DGraphWidget()
{
    close1dCut();
    closeROI();
}

void XY2DGraphWidget::setData(int row, const QList<double>& values, double rowMax, bool refresh)
{
    if (row < 0)
        return;
    if (row >= m_data.size()) {
        m_data.resize(qsizetype(row) + 1);
        m_rowMax.resize(qsizetype(row) + 1, 0.0);
    }
    m_data[row] = values;
    m_rowMax[row] = rowMax;
    dataTouched();
    if (m_autoScaleX) {
        m_minX = m_initMinX;
        adjustAxisX(m_manualX ? 0 : getMaxCount()); // visits all rows, so it is skipped for an axis that ignores the
                                                    // result
    }
    if (m_autoScaleY) {
        m_minY = m_initMinY;
        adjustAxisY(m_initMaxY); // not by the number of rows, as onAutoScaleY() does
    }
    if (refresh)
        onViewChanged();
}

void XY2DGraphWidget::clearData()
{
    m_data.clear();
    m_rowMax.clear();
    dataTouched();
    m_autoButton->setChecked(true);
    onAutoScaleZToggled(true);
    close1dCut();
    closeROI();
}

void XY2DGraphWidget::getData(QList<QList<double>>& rows)
{
    rows = m_data;
}

void XY2DGraphWidget::setStepX(double step)
{
    m_stepX = step;
    dataTouched();
}

void XY2DGraphWidget::setStepY(double step)
{
    m_stepY = step;
    dataTouched();
}

double XY2DGraphWidget::getStepX()
{
    if (!tarnis::plotEqual(m_stepX, 0.0))
        return m_stepX;
    if (m_data.isEmpty())
        return emptyStep;
    return (m_initMaxX - m_initMinX) / static_cast<double>(m_data.constFirst().size());
}

double XY2DGraphWidget::getStepY()
{
    if (!tarnis::plotEqual(m_stepY, 0.0))
        return m_stepY;
    if (m_data.isEmpty())
        return emptyStep;
    return (m_initMaxY - m_initMinY) / static_cast<double>(m_data.size());
}

qsizetype XY2DGraphWidget::columnCount() const
{
    return m_data.isEmpty() ? 0 : m_data.constFirst().size();
}

tarnis::BinAxis XY2DGraphWidget::binAxisX()
{
    return { m_minX, m_maxX, m_initMinX, m_manualX, getStepX(), m_resolutionX };
}

tarnis::BinAxis XY2DGraphWidget::binAxisY()
{
    return { m_minY, m_maxY, m_initMinY, m_manualY, getStepY(), m_resolutionY };
}

void XY2DGraphWidget::setResolution(unsigned int x, unsigned int y)
{
    if (x != m_resolutionX) {
        m_resolutionX = std::max(x, 1U);
        dataTouched();
        refreshPixmap();
    }
    if (y != m_resolutionY) {
        m_resolutionY = std::max(y, 1U);
        dataTouched();
        refreshPixmap();
    }
}

int XY2DGraphWidget::getMaxCount()
{
    qsizetype longest = 0;
    for (const QList<double>& row : std::as_const(m_data))
        longest = std::max(longest, row.size());
    return static_cast<int>(std::min<qsizetype>(longest * m_resolutionX, std::numeric_limits<int>::max()));
}

double XY2DGraphWidget::getMaxValue()
{
    double largest = 0.0;
    for (const double rowMax : std::as_const(m_rowMax))
        largest = rowMax > largest ? rowMax : largest;
    return largest;
}

void XY2DGraphWidget::onAutoScaleX(bool checked)
{
    XYGraphWidget::onAutoScaleX(checked);
    if (!checked)
        return;
    m_minX = m_initMinX;
    adjustAxisX(getMaxCount());
    refreshPixmap();
}

void XY2DGraphWidget::onAutoScaleY(bool checked)
{
    XYGraphWidget::onAutoScaleY(checked);
    if (!checked)
        return;
    m_minY = m_initMinY;
    adjustAxisY(static_cast<double>(m_data.size()));
    refreshPixmap();
}

void XY2DGraphWidget::onReset()
{
    XYGraphWidget::onReset();
    onViewChanged();
}

/// Called where the visible range, the data or the size has changed by a way that the cut follows.
void XY2DGraphWidget::onViewChanged()
{
    if (m_act1dCut->isChecked())
        refresh1dCut(true);
}
