// The window in which the user starts a peak search on a plot and reads the results. GUI thread only.
#pragma once

#include <tarnis/peak/peaksearch.h>
#include <tarnis/tarnis_export.h>

#include <QDialog>
#include <QList>

#include <memory>

class QEvent;

namespace Ui {
class PeakSearchDialog;
}

/// Checks and emits the two numbers that the user has entered, and lists the resulting peaks. It does not search
/// itself: the owner connects search() and calls appendResults().
class TARNIS_EXPORT PeakSearchDialog : public QDialog {
    Q_OBJECT
public:
    /// Threshold 20 %, width 15 samples, an empty table.
    explicit PeakSearchDialog(QWidget* parent);
    ~PeakSearchDialog() override;

    /// Replaces the table by one row per peak: centre, height above the background, full width at half maximum.
    void appendResults(QList<PeakSearch::Gaussian> const& peaks);

Q_SIGNALS:
    /// The user requests a search: `threshold` in per cent, 0 to 100; `width` in samples, at least 3; `peak` always
    /// true.
    void search(int threshold, int width, bool peak);
    /// The table's current row, which is the index of the peak, or -1.
    void selectedChange(int);
    /// The check box was toggled: whether the owner should draw the fitted samples instead of the curve.
    void toggledDisplayPoints(bool);

public Q_SLOTS:
    /// Emits search(), or shows a warning about the first of the two numbers that is out of range. Text that is not a
    /// number counts as 0.
    void onSearch();
    /// Emits selectedChange() with the row; the other parameters are those of QTableWidget's signal.
    void currentCellChanged(int currentRow, int currentColumn, int previousRow, int previousColumn);

protected:
    void changeEvent(QEvent* event) override;

    std::unique_ptr<Ui::PeakSearchDialog> ui; ///< the controls
};
