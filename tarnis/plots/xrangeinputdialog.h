// The floating box of two numbers that shows and edits a selected X range. GUI thread only.
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class XRangeInputDialog;
}

/// A frameless box with a lower and an upper value. It opens empty. A text that is not a number is replaced by the last
/// accepted value after Return or when the focus is lost.
class XRangeInputDialog : public QDialog {
    Q_OBJECT

public:
    /// The labels are `name` with "-min" and "-max"; numbers are formatted by QString::number() with format and
    /// precision.
    XRangeInputDialog(const QString& name, char format, int precision, QWidget* parent);
    ~XRangeInputDialog() override;

    /// Sets the value without emitting a signal.
    void setXMin(double value);
    void setXMax(double value);

Q_SIGNALS:
    void edited(double x_min, double x_max); ///< emitted after Return on a number

protected Q_SLOTS:
    void on_xMinEdit_returnPressed();
    void on_xMaxEdit_returnPressed();
    void on_xMinEdit_editingFinished();
    void on_xMaxEdit_editingFinished();

protected:
    std::unique_ptr<Ui::XRangeInputDialog> ui;
    char m_format;
    int m_precision;
    double m_xMin = 0.0;
    double m_xMax = 0.0;
};
