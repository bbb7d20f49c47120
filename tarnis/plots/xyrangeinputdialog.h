// The floating box of four numbers that shows and edits a rectangle of a 2D plot. GUI thread only.
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class XYRangeInputDialog;
}

/// A frameless box with a lower and an upper value of both axes. It opens empty. A text that is not a number is
/// replaced by the last accepted value after Return or when the focus is lost.
class XYRangeInputDialog : public QDialog {
    Q_OBJECT

public:
    /// Numbers are shown by QString::number() with format and precision.
    XYRangeInputDialog(QWidget* parent, char format, int precision);
    ~XYRangeInputDialog() override;

    /// Sets the value without emitting a signal.
    void setXMin(double value);
    void setXMax(double value);
    void setYMin(double value);
    void setYMax(double value);

Q_SIGNALS:
    void edited(double x_min, double x_max, double y_min, double y_max); ///< emitted after Return on a number

protected Q_SLOTS:
    void on_xMinEdit_returnPressed();
    void on_xMaxEdit_returnPressed();
    void on_yMinEdit_returnPressed();
    void on_yMaxEdit_returnPressed();
    void on_xMinEdit_editingFinished();
    void on_xMaxEdit_editingFinished();
    void on_yMinEdit_editingFinished();
    void on_yMaxEdit_editingFinished();

protected:
    std::unique_ptr<Ui::XYRangeInputDialog> ui;
    char m_format;
    int m_precision;
    double m_xMin = 0.0;
    double m_xMax = 0.0;
    double m_yMin = 0.0;
    double m_yMax = 0.0;
};
