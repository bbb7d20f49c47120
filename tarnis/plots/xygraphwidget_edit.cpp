// Editors of the axis ends: in place on the labels, and as a dialog for the Y axis.
#include "tarnis/plots/xygraphwidget.h"

#include "tarnis/foundation/modalbox_p.h"
#include "tarnis/plots/labeleditor_p.h"
#include "tarnis/plots/math/floatcomparison_p.h"
#include "tarnis/plots/plotpixmap_p.h"

#include <QLineEdit>

#include <optional>

namespace {

QString editText(double value)
{
    return QString::number(value, 'g', 6);
}

/// Closes the editor and returns its text as a number, 0 if it is not a number.
double takeNumber(QLineEdit*& edit)
{
    const double value = edit->text().toDouble();
    edit->deleteLater();
    edit = nullptr;
    return value;
}

std::optional<double> askNumber(QWidget* parent, const QString& title, const QString& label, double value)
{
    const std::optional<QString> text = tarnis::askText(parent, title, label, editText(value));
    return text ? std::optional<double>(text->toDouble()) : std::nullopt;
}

} // namespace

void XYGraphWidget::openEditorAt(const QPoint& point)
{
    struct EndLabel {
        const QRect& rect;
        double value;
        void (XYGraphWidget::*entered)();
    };
    const EndLabel labels[] = {
        { m_labelRectMinX, m_funcX2Tick(m_minX, m_funcUserData), &XYGraphWidget::onMinXEntered },
        { m_labelRectMaxX, m_funcX2Tick(m_maxX, m_funcUserData), &XYGraphWidget::onMaxXEntered },
        { m_labelRectMinY, m_minY, &XYGraphWidget::onMinYEntered },
        { m_labelRectMaxY, m_maxY, &XYGraphWidget::onMaxYEntered },
    };
    for (const EndLabel& label : labels) {
        if (!label.rect.contains(point, true))
            continue;
        m_edit = new tarnis::LabelEditor(editText(label.value), this);
        connect(m_edit, &QLineEdit::returnPressed, this, label.entered);
        const QRect geometry = tarnis::editorRect(label.rect, tarnis::isQuarterTurn(m_rotation), rect());
        m_edit->resize(geometry.size());
        m_edit->move(geometry.topLeft());
        m_edit->show();
        m_edit->setFocus(Qt::MouseFocusReason);
        return;
    }
}

void XYGraphWidget::onMinXEntered()
{
    if (m_edit == nullptr)
        return;
    const double value = m_funcTick2X(takeNumber(m_edit), m_funcUserData);
    const bool inOrder = (m_minX < m_maxX && value < m_maxX) || (m_minX > m_maxX && value > m_maxX);
    if (!inOrder || tarnis::plotEqual(value, m_minX))
        return;
    onAutoScaleX(false);
    m_minX = value;
    viewTouched();
    refreshPixmap();
}

void XYGraphWidget::onMaxXEntered()
{
    if (m_edit == nullptr)
        return;
    const double value = m_funcTick2X(takeNumber(m_edit), m_funcUserData);
    const bool inOrder = (m_minX < m_maxX && value > m_minX) || (m_minX > m_maxX && value < m_minX);
    if (!inOrder || tarnis::plotEqual(value, m_maxX))
        return;
    onAutoScaleX(false);
    m_maxX = value;
    viewTouched();
    refreshPixmap();
}

void XYGraphWidget::onMinYEntered()
{
    if (m_edit != nullptr)
        enterMinY(takeNumber(m_edit));
}

void XYGraphWidget::onMaxYEntered()
{
    if (m_edit != nullptr)
        enterMaxY(takeNumber(m_edit));
}

void XYGraphWidget::onEditMinY()
{
    if (const auto value = askNumber(this, tr("Edit"), tr("Min Y"), m_minY))
        enterMinY(*value);
}

void XYGraphWidget::onEditMaxY()
{
    if (const auto value = askNumber(this, tr("Edit"), tr("Max Y"), m_maxY))
        enterMaxY(*value);
}

void XYGraphWidget::enterMinY(double value)
{
    if (!(value < m_maxY) || tarnis::plotEqual(value, m_minY))
        return;
    onAutoScaleY(false);
    m_minY = value;
    viewTouched();
    refreshPixmap();
}

void XYGraphWidget::enterMaxY(double value)
{
    if (!(value > m_minY) || tarnis::plotEqual(value, m_maxY))
        return;
    onAutoScaleY(false);
    m_maxY = value;
    viewTouched();
    refreshPixmap();
}
