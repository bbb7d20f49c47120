#include "tarnis/plots/viewselectedroi.h"

#include "tarnis/foundation/modalbox_p.h"
#include "tarnis/foundation/retranslator.h"

#include "ui_viewselectedroi.h"

#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QSignalBlocker>

#include <algorithm>

namespace {

bool isConfirmed(const QString& question)
{
    return tarnis::showBox(QMessageBox::NoIcon, nullptr, QString(), question, QMessageBox::Ok | QMessageBox::Cancel,
               QMessageBox::Cancel)
        == QMessageBox::Ok;
}

QString itemText(const QRect& rect)
{
    return QStringLiteral("ROI (%1,%2)-(%3,%4)").arg(rect.left()).arg(rect.top()).arg(rect.right()).arg(rect.bottom());
}

} // namespace

ViewSelectedROI::ViewSelectedROI(int maxCount, QRect range, QWidget* parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::ViewSelectedROI>())
    , m_maxCount(std::max(maxCount, 0))
    , m_range(range.normalized())
{
    ui->setupUi(this);
    tarnis::onLanguageChange(*this, [this] { ui->retranslateUi(this); });
}

ViewSelectedROI::~ViewSelectedROI() = default;

void ViewSelectedROI::setEditable(bool on)
{
    const std::initializer_list<QWidget*> controls = { ui->roiListWidget, ui->x1SpinBox, ui->y1SpinBox, ui->x2SpinBox,
        ui->y2SpinBox, ui->deleteButton, ui->clearButton };
    for (QWidget* control : controls)
        control->setEnabled(on);
    m_editable = on;
}

bool ViewSelectedROI::isEditable() const
{
    return m_editable;
}

int ViewSelectedROI::currentIndex() const
{
    return ui->roiListWidget->currentRow();
}

const QList<QRect>& ViewSelectedROI::getRoiList() const
{
    return m_roiList;
}

void ViewSelectedROI::setRoiList(QList<QRect> list, int index)
{
    if (!m_editable) {
        tarnis::showBox(QMessageBox::Warning, this, QApplication::applicationName(), tr("Can not edit ROI."));
        return;
    }
    const int selected = std::min(index, static_cast<int>(list.size()) - 1);
    // Compared before clipping: a spin box outside of the range counts as a change, and so snaps back.
    const bool changed = list != m_roiList;
    for (QRect& rect : list)
        rect &= m_range;
    if (!changed && currentIndex() == selected)
        return;
    {
        const QSignalBlocker block(this);
        const QSignalBlocker blockList(ui->roiListWidget);
        m_roiList = list;
        ui->roiListWidget->clear();
        for (const QRect& rect : std::as_const(list))
            ui->roiListWidget->addItem(itemText(rect));
        ui->clearButton->setEnabled(!list.isEmpty());
        if (selected >= 0) {
            ui->roiListWidget->setCurrentRow(selected);
            on_roiListWidget_currentRowChanged(selected);
        }
    }
    Q_EMIT RoiChanged(m_roiList, currentIndex(), changed);
}

void ViewSelectedROI::addRoi(const QRect& rect)
{
    QList<QRect> list = m_roiList;
    list.append(rect);
    if (m_maxCount > 0 && list.size() > m_maxCount)
        list.remove(0, list.size() - m_maxCount);
    setRoiList(list, static_cast<int>(list.size()) - 1);
}

void ViewSelectedROI::clear()
{
    setRoiList({}, -1);
}

void ViewSelectedROI::on_roiListWidget_currentRowChanged(int currentRow)
{
    const bool isSelected = currentRow >= 0 && currentRow < m_roiList.size();
    const QRect rect = isSelected ? m_roiList.at(currentRow) : QRect(QPoint(0, 0), QPoint(0, 0));
    {
        const QSignalBlocker block(this);
        const std::pair<QSpinBox*, int> edges[] = { { ui->x1SpinBox, rect.left() }, { ui->x2SpinBox, rect.right() },
            { ui->y1SpinBox, rect.top() }, { ui->y2SpinBox, rect.bottom() } };
        for (const auto& [spinBox, value] : edges) {
            const QSignalBlocker blockSpinBox(spinBox);
            spinBox->setValue(value);
            spinBox->setEnabled(isSelected);
        }
        ui->deleteButton->setEnabled(isSelected);
        if (!m_roiList.isEmpty())
            ui->clearButton->setEnabled(true);
    }
    Q_EMIT RoiChanged(m_roiList, currentRow, false);
}

template <typename Change> void ViewSelectedROI::changeSelected(const Change& change)
{
    const int row = currentIndex();
    if (row < 0 || row >= m_roiList.size())
        return;
    QList<QRect> list = m_roiList;
    change(list[row]);
    setRoiList(list, row);
}

void ViewSelectedROI::on_x1SpinBox_valueChanged(int arg1)
{
    changeSelected([arg1](QRect& rect) { rect.setLeft(arg1); });
}

void ViewSelectedROI::on_y1SpinBox_valueChanged(int arg1)
{
    changeSelected([arg1](QRect& rect) { rect.setTop(arg1); });
}

void ViewSelectedROI::on_x2SpinBox_valueChanged(int arg1)
{
    changeSelected([arg1](QRect& rect) { rect.setRight(arg1); });
}

void ViewSelectedROI::on_y2SpinBox_valueChanged(int arg1)
{
    changeSelected([arg1](QRect& rect) { rect.setBottom(arg1); });
}

void ViewSelectedROI::on_deleteButton_clicked()
{
    const int row = currentIndex();
    if (row < 0) {
        ui->deleteButton->setEnabled(false);
        return;
    }
    const QPointer<ViewSelectedROI> self(this);
    const bool wereBlocked = blockSignals(true);
    const bool confirmed = isConfirmed(tr("Are you sure to delete selected item?"));
    if (self == nullptr)
        return;
    if (confirmed && row < m_roiList.size()) {
        QList<QRect> list = m_roiList;
        list.removeAt(row);
        setRoiList(list, row);
    }
    blockSignals(wereBlocked);
    // Emitted even after Cancel.
    Q_EMIT RoiChanged(m_roiList, currentIndex(), true);
}

void ViewSelectedROI::on_clearButton_clicked()
{
    if (m_roiList.isEmpty()) {
        ui->clearButton->setEnabled(false);
        return;
    }
    const QPointer<ViewSelectedROI> self(this);
    if (isConfirmed(tr("Are you sure to clear all items?")) && self != nullptr)
        setRoiList({}, -1);
}
