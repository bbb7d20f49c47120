// The table of the settings, in any width.
#pragma once

#include <QTableView>

namespace console {

/// Names and headers are always complete; the values share the remaining width. A table that is too narrow for this
/// scrolls sideways.
class SettingsTable : public QTableView {
    Q_OBJECT
public:
    explicit SettingsTable(QWidget* parent = nullptr);

    void setModel(QAbstractItemModel* model) override;

protected:
    void updateGeometries() override;
    int sizeHintForColumn(int column) const override;
};

} // namespace console
