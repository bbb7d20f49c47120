// The choice of the language in the menu View.
#pragma once

#include <QMenu>

class QActionGroup;
class QSettings;

namespace console {

/// One entry for the desktop's language and one for each catalogue. The choice is kept under "window/language" of
/// `store`, which must outlive the menu, and is in force as soon as the menu exists, unless `language` is given: that
/// is in force until something is chosen, and is not kept.
class LanguageMenu : public QMenu {
    Q_OBJECT
public:
    LanguageMenu(QSettings& store, const QString& language, QWidget* parent);

protected:
    void changeEvent(QEvent* event) override;
    void choose(const QString& code);
    void setTexts();

    QSettings& m_store;
    QActionGroup* m_group;
    QAction* m_desktopAction;
};

} // namespace console
