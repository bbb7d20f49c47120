// The window in which a user asks for a peak search on a plot and reads its results. GUI thread only.
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

/// Checks the two numbers that the user typed, emits them, and lists the peaks that its owner hands back. It searches
/// nothing itself: the owner connects search() and answers with appendResults().
class TARNIS_EXPORT PeakSearchDialog : public QDialog {
    Q_OBJECT
public:
    /// Threshold 20 %, width 15 samples, an empty table.
    explicit PeakSearchDialog(QWidget* parent);
    ~PeakSearchDialog() override;

    /// Replaces the table by one row a peak: centre, height above the background, full width at half maximum.
    void appendResults(QList<PeakSearch::Gaussian> const& peaks);

Q_SIGNALS:
    /// A search is asked for: `threshold` in per cent, 0 to 100; `width` in samples, at least 3; `peak` always true.
    void search(int threshold, int width, bool peak);
    /// The table's current row, which is the index of the peak, or -1.
    void selectedChange(int);
    /// The check box by which the owner draws the fitted samples instead of the curve.
    void toggledDisplayPoints(bool);

public Q_SLOTS:
    /// Emits search(), or warns of the first of the two numbers that is out of range. Text that is no number is 0.
    void onSearch();
    /// Emits selectedChange() with the row; the others are the signal's of QTableWidget.
    void currentCellChanged(int currentRow, int currentColumn, int previousRow, int previousColumn);

protected:
    void changeEvent(QEvent* event) override;

    std::unique_ptr<Ui::PeakSearchDialog> ui; ///< the controls
};
