// The floating box of two numbers that shows and edits a selected X range. GUI thread only.
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class XRangeInputDialog;
}

/// A frameless box with a lower and an upper value. It opens empty; a text that is no number gives way to the last
/// accepted one after Return or when the focus leaves.
class XRangeInputDialog : public QDialog {
    Q_OBJECT

public:
    /// `name` stands before "-min" and "-max"; numbers are shown by QString::number() with format and precision.
    XRangeInputDialog(const QString& name, char format, int precision, QWidget* parent);
    ~XRangeInputDialog() override;

    /// Stores the value and shows it, without a signal.
    void setXMin(double value);
    void setXMax(double value);

Q_SIGNALS:
    void edited(double x_min, double x_max); ///< after Return on a number

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
