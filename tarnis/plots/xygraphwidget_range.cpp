// The selected X range: its menu entries, its floating box, and its signals.
#include "tarnis/plots/xygraphwidget.h"

#include "tarnis/foundation/log.h"
#include "tarnis/foundation/retranslator.h"
#include "tarnis/plots/math/floatcomparison_p.h"
#include "tarnis/plots/xrangeinputdialog.h"

#include <QAction>

#include <utility>

namespace {

bool equalLogged(double a, double b)
{
    LOG_DBG("compare, 1[%f] 2[%f] diff[%e] epsilon[%e] tolerance[%e]", a, b, std::fabs(a - b), DBL_EPSILON,
        tarnis::plotTolerance(a, b));
    return tarnis::plotEqual(a, b);
}

/// Docks the box to the right edge of the plot's parent, or of the plot if it has none.
void placeBeside(QWidget& box, const QWidget& plot)
{
    const QWidget* parent = plot.parentWidget();
    box.move((parent != nullptr ? parent->frameGeometry() : plot.frameGeometry()).topRight());
}

} // namespace

void XYGraphWidget::SetEnableSelectXRangeFeature(bool enable, const QString& name)
{
    m_xRangeName = name;
    m_actSelectXRange->setVisible(enable);
    m_actClearXRange->setVisible(enable);
    tarnis::setTranslatedText(*m_actSelectXRange, *this, [name] { return tr("Select %1 Range").arg(name); });
    tarnis::setTranslatedText(*m_actClearXRange, *this, [name] { return tr("Clear %1 Range").arg(name); });
}

bool XYGraphWidget::IsEnableSelectXRangeFeature() const
{
    return m_actSelectXRange->isVisible();
}

bool XYGraphWidget::IsEnableSelectXRange() const
{
    return m_actSelectXRange->isChecked();
}

void XYGraphWidget::SetEnableSelectXRange(bool enable)
{
    m_actSelectXRange->setChecked(enable);
}

bool XYGraphWidget::GetXRange(double& min, double& max) const
{
    min = m_xRangeMin;
    max = m_xRangeMax;
    return !tarnis::plotEqual(m_xRangeMin, m_xRangeMax);
}

void XYGraphWidget::SetXRange(double min, double max)
{
    LOG_BLOCK("XYGraphWidget::SetXRange(min[%f], max[%f])", min, max);
    if (min > max)
        std::swap(min, max);
    if (m_xRangeDialog != nullptr) {
        m_xRangeDialog->setXMin(min);
        m_xRangeDialog->setXMax(max);
    }
    const bool sameMin = equalLogged(min, m_xRangeMin);
    const bool sameMax = equalLogged(max, m_xRangeMax);
    if (sameMin && sameMax) {
        LOG_DBG("    not changed");
        return;
    }
    LOG_DBG("    changed");
    m_xRangeMin = min;
    m_xRangeMax = max;
    m_actClearXRange->setEnabled(!tarnis::plotEqual(min, max));
    LOG_DBG("    emit xRangeSelected(min[%f], max[%f])", min, max);
    Q_EMIT xRangeSelected(min, max);
    repaint();
}

void XYGraphWidget::onParentMoved()
{
    if (m_xRangeDialog != nullptr)
        placeBeside(*m_xRangeDialog, *this);
}

void XYGraphWidget::onParentActivate()
{
    if (m_xRangeDialog != nullptr)
        m_xRangeDialog->raise();
}

void XYGraphWidget::onSelectXRange(bool checked)
{
    if (!checked) {
        updateModeAndCursor();
        Q_EMIT xRangeSelectEnd();
        if (m_xRangeDialog != nullptr) {
            m_xRangeDialog->deleteLater();
            m_xRangeDialog = nullptr;
        }
        return;
    }
    for (QAction* tool : { m_actRectangle, m_actZoomIn, m_actZoomOut, m_actMove })
        tool->setChecked(false);
    if (m_xRangeDialog != nullptr)
        m_xRangeDialog->deleteLater(); // only one box, even if the slot is called twice
    m_xRangeDialog = new XRangeInputDialog(m_xRangeName, 'g', 9, this);
    connect(m_xRangeDialog, &XRangeInputDialog::edited, this, &XYGraphWidget::onTofRangeEdited);
    placeBeside(*m_xRangeDialog, *this);
    m_xRangeDialog->show();
    m_xRangeDialog->raise();
    updateModeAndCursor();
    Q_EMIT xRangeSelectBegin();
}

void XYGraphWidget::onClearXRange()
{
    SetXRange(0.0, 0.0);
    Q_EMIT xRangeSelectClear();
}

void XYGraphWidget::onTofRangeEdited(double x_min, double x_max)
{
    SetXRange(x_min, x_max);
}
