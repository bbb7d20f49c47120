// Menus by keyboard, on a platform that gives the focus to menus and closes those that open behind another one.
#pragma once

#include "support/children.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMenu>
#include <QTest>

namespace tarnis::testing {

/// Chooses an entry of the open menu of a plot as a user does, by Return; the test ends if it cannot be chosen.
inline void chooseByKey(QMenu* menu, QWidget& plot, const QString& text)
{
    QAction* const entry = menu != nullptr ? entryOf(*menu, text) : nullptr;
    if (entry == nullptr || !entry->isEnabled())
        qFatal("%s cannot be chosen", qPrintable(text));
    menu->setActiveAction(entry);
    QTest::keyClick(menu, Qt::Key_Return);
    plot.window()->activateWindow();
}

/// Chooses an entry as soon as a menu with it opens.
class MenuDriver : public QObject {
public:
    explicit MenuDriver(const QString& text)
        : m_text(text)
    {
        QCoreApplication::instance()->installEventFilter(this);
    }
    bool hasChosen() const { return m_hasChosen; }

protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        const auto* const menu = event->type() == QEvent::Show ? qobject_cast<QMenu*>(object) : nullptr;
        if (QAction* const entry = menu != nullptr ? entryOf(*menu, m_text) : nullptr) {
            entry->trigger();
            m_hasChosen = true;
        }
        return false;
    }

private:
    QString m_text;
    bool m_hasChosen = false;
};

} // namespace tarnis::testing
