// The theme of the console's plots: the submenu in the menu View, and the style of each plot.
#pragma once

#include <QMenu>

class QActionGroup;
class QSettings;

namespace console {

/// The themes, in the order of the menu.
enum class PlotTheme {
    Window, ///< light or dark, like the console's windows
    Light,
    Dark,
    Print,
    HighContrast,
    Classic ///< the library's plots without a style
};

/// Applies the current theme, that of the windows until a menu exists, to the plots of a window. Called when it opens;
/// the menu updates open windows. If it was applied before, the user's later choices for the plot are kept.
void applyTheme(QWidget& window);
/// As above for all plots of the window, overriding the user's choices.
void reapplyTheme(QWidget& window);

/// One entry for each theme. The choice is stored under "window/plotLook" in `store`, which must outlive the menu, and
/// is applied to all plots when the menu is created.
class PlotThemeMenu : public QMenu {
    Q_OBJECT
public:
    PlotThemeMenu(QSettings& store, QWidget* parent);

protected:
    void changeEvent(QEvent* event) override;
    void choose(PlotTheme theme);
    void setTexts();

    QSettings& m_store;
    QActionGroup* m_group;
};

} // namespace console
