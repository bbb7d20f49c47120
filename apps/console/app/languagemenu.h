// The language submenu of the menu View.
#pragma once

#include <QMenu>

class QActionGroup;
class QSettings;

namespace console {

/// One entry for the desktop's language and one for each catalogue. The choice is stored under "window/language" in
/// `store`, which must outlive the menu, and is applied when the menu is created. If `language` is given, it is applied
/// instead until the user chooses one, and is not stored.
class LanguageMenu : public QMenu {
    Q_OBJECT
public:
    LanguageMenu(QSettings& store, const QString& language, QWidget* parent);

protected:
    void choose(const QString& code);
    void setTexts();

    QSettings& m_store;
    QActionGroup* m_group;
    QAction* m_desktopAction;
};

} // namespace console
