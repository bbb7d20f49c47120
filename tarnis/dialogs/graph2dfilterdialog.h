// The kernel of the 2D filter and the dialog that asks for it. GUI thread only.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QDialog>
#include <QMetaType>

#include <array>
#include <memory>

class QLineEdit;
namespace Ui {
class Graph2DFilterDialog;
}

/// A 5 by 5 kernel and what its weighted sum is divided by. The default is the identity.
struct Graph2DFilter {
    /// By row and column as the form shows them.
    int matrix[5][5] = { {}, {}, { 0, 0, 1, 0, 0 }, {}, {} };
    int divisor = 1; ///< 0: no division
};
Q_DECLARE_METATYPE(Graph2DFilter)

/// Asks for a kernel. Text that is no integer of 32 bits counts as 0. Opens with what was accepted last in the process.
class TARNIS_EXPORT Graph2DFilterDialog : public QDialog {
    Q_OBJECT
public:
    /// Not shown yet. Registers Graph2DFilter with Qt, for queued and string-based connections.
    explicit Graph2DFilterDialog(QWidget* parent);
    ~Graph2DFilterDialog() override;

Q_SIGNALS:
    /// Once, when the user confirms, before the dialog closes.
    void accepted(Graph2DFilter filter);

public Q_SLOTS:
    void onAccepted(); ///< takes the kernel from the fields

protected:
    /// The edits of the form: the kernel's row by row, then the divisor's.
    std::array<QLineEdit*, 26> fields() const;

    std::unique_ptr<Ui::Graph2DFilterDialog> ui; ///< the controls
};
