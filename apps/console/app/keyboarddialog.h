// The keys of the console in a table: those of the menus, then those that are in no menu, and gestures of the mouse.
#pragma once

#include <QDialog>

class QMenu;
class QTableWidget;

namespace console {

/// Shows key names in the desktop's format, and follows the language while it is open.
class KeyboardDialog : public QDialog {
    Q_OBJECT
public:
    KeyboardDialog(const QList<QMenu*>& menus, QWidget* parent);

    /// Scrolls to the keys of plots.
    void showPlots();

protected:
    void setTexts();
    void addMenus();
    void addOthers();
    void addGestures();
    void addRow(const QString& keys, const QString& text);

    QList<QMenu*> m_menus;
    QTableWidget* m_table;
    int m_firstOfPlots = 0; // row
};

} // namespace console
