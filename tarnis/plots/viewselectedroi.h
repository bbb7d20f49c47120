// The list of regions of interest beside a 2D plot, and the boxes that edit the selected one. GUI thread only.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QList>
#include <QRect>
#include <QWidget>

#include <memory>

namespace Ui {
class ViewSelectedROI;
}

/// Rectangles in whole axis units of a plot, corners included. Each is clipped to a range.
class TARNIS_EXPORT ViewSelectedROI : public QWidget {
    Q_OBJECT

public:
    /// Keeps at most the last `maxCount` rectangles; 0 or less means no limit.
    ViewSelectedROI(int maxCount, QRect range, QWidget* parent);
    ~ViewSelectedROI() override;

    /// If off, every attempt to change shows a warning message box. @{
    void setEditable(bool on);
    bool isEditable() const;
    /// @}
    /// Row of the selected rectangle, or -1.
    int currentIndex() const;
    const QList<QRect>& getRoiList() const; ///< the oldest first, each clipped
    /// Replaces the list, clipped, and selects `index`, at most the last one. Emits RoiChanged() once, or not at all if
    /// neither the rectangles (compared before clipping) nor the selection change.
    void setRoiList(QList<QRect> list, int index);
    /// Adds a rectangle and selects it.
    void addRoi(const QRect& rect);
    void clear(); ///< removes all without confirmation

Q_SIGNALS:
    /// `dataChanged` is false if only the selection has changed.
    void RoiChanged(QList<QRect> roiList, int selectedIndex, bool dataChanged);

public Q_SLOTS:
    /// Shows the corners of that rectangle, or zeros, in the boxes, and emits RoiChanged().
    void on_roiListWidget_currentRowChanged(int currentRow);
    /// Moves one edge of the selected rectangle; the result is clipped. Does nothing without a selection. @{
    void on_x1SpinBox_valueChanged(int arg1);
    void on_y1SpinBox_valueChanged(int arg1);
    void on_x2SpinBox_valueChanged(int arg1);
    void on_y2SpinBox_valueChanged(int arg1);
    /// @}
    void on_deleteButton_clicked(); ///< asks for confirmation; emits a change of data even after Cancel
    void on_clearButton_clicked(); ///< asks first

protected:
    std::unique_ptr<Ui::ViewSelectedROI> ui; ///< the controls
    int m_maxCount; ///< 0: no limit
    QRect m_range; ///< clips every rectangle
    bool m_editable = true; ///< see setEditable()
    QList<QRect> m_roiList; ///< see getRoiList()

    /// Applies a change to the selected rectangle, if there is one.
    template <typename Change> void changeSelected(const Change& change);
};
