// The kernel of the 2D filter and the dialog for entering it. GUI thread only.
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

/// A 5 by 5 kernel and the divisor of its weighted sum. The default is the identity.
struct Graph2DFilter {
    /// Indexed by row and column as shown in the form.
    int matrix[5][5] = { {}, {}, { 0, 0, 1, 0, 0 }, {}, {} };
    int divisor = 1; ///< 0: no division
};
Q_DECLARE_METATYPE(Graph2DFilter)

/// Lets the user enter a kernel. Text that is not a 32-bit integer counts as 0. Opens with the last kernel accepted in
/// the process.
class TARNIS_EXPORT Graph2DFilterDialog : public QDialog {
    Q_OBJECT
public:
    /// Not shown yet. Registers Graph2DFilter with Qt, for queued and string-based connections.
    explicit Graph2DFilterDialog(QWidget* parent);
    ~Graph2DFilterDialog() override;

Q_SIGNALS:
    /// Emitted once, when the user confirms, before the dialog closes.
    void accepted(Graph2DFilter filter);

public Q_SLOTS:
    void onAccepted(); ///< reads the kernel from the fields

protected:
    /// The edits of the form: the kernel's row by row, then the divisor's.
    std::array<QLineEdit*, 26> fields() const;

    std::unique_ptr<Ui::Graph2DFilterDialog> ui; ///< the controls
};
