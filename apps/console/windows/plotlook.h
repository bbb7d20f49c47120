// How the plots of the console look: the choice in the menu View, and the style on each plot.
#pragma once

#include <QMenu>

class QActionGroup;
class QSettings;

namespace console {

/// The looks, in the order of the menu.
enum class PlotLook {
    Window, ///< light or dark, as the console's windows
    Light,
    Dark,
    Print,
    HighContrast,
    Classic ///< as the library's plots are without a style
};

/// The look in force; that of the windows until a menu exists.
PlotLook plotLook();
/// Gives the plots of a window the look in force. Called when it opens; the menu sees to those that are open. A plot
/// that has had it keeps what the user has chosen for it since.
void applyLook(QWidget& window);
/// The same for all plots of the window.
void reapplyLook(QWidget& window);

/// One entry for each look. The choice is kept under "window/plotLook" of `store`, which must outlive the menu, and is
/// in force for all plots as soon as the menu exists.
class PlotLookMenu : public QMenu {
    Q_OBJECT
public:
    PlotLookMenu(QSettings& store, QWidget* parent);

protected:
    void changeEvent(QEvent* event) override;
    void choose(PlotLook look);
    void setTexts();

    QSettings& m_store;
    QActionGroup* m_group;
};

} // namespace console
