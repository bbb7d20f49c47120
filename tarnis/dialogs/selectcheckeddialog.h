// A table of check marks with buttons that act on the selected cells. GUI thread only.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QDialog>

#include <memory>

class QEvent;
class QTableWidget;

namespace Ui {
class SelectCheckedDialog;
}

/// Lets the user check cells of a table that the owner fills and reads. The check state is the cell's
/// Qt::CheckStateRole: 2 for checked, 0 for unchecked. Cells without an item and unselected cells are never changed.
class TARNIS_EXPORT SelectCheckedDialog : public QDialog {
    Q_OBJECT
public:
    explicit SelectCheckedDialog(QWidget* parent); ///< not shown yet
    ~SelectCheckedDialog() override;

    /// The table, owned by the dialog. Initially empty.
    QTableWidget* getTable();

Q_SIGNALS:
    /// "Apply" was clicked. The dialog stays open.
    void onApply();

public Q_SLOTS:
    void onSelectAll(); ///< checks the selected cells
    void onUnselectAll(); ///< unchecks the selected cells
    /// Unchecks the checked and partially checked cells of the selection, and checks the others.
    void onReverse();

protected:
    void changeEvent(QEvent* event) override;

    std::unique_ptr<Ui::SelectCheckedDialog> ui; ///< the controls
};
