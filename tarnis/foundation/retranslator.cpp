#include "tarnis/foundation/retranslator.h"

#include <QAction>
#include <QEvent>
#include <QPointer>
#include <QWidget>

#include <utility>

namespace tarnis {

namespace {

/// A widget hands the event on to all its children, after its own turn.
class LanguageFollower : public QObject {
public:
    LanguageFollower(QWidget& widget, std::function<void()> apply)
        : QObject(&widget)
        , m_apply(std::move(apply))
    {
    }

    bool event(QEvent* event) override
    {
        if (event->type() == QEvent::LanguageChange)
            m_apply();
        return QObject::event(event);
    }

protected:
    std::function<void()> m_apply;
};

class ActionNamer : public QObject {
public:
    ActionNamer(QAction& action, QWidget& owner)
        : QObject(&owner)
        , m_action(&action)
    {
    }

    bool names(const QAction& action) const { return m_action == &action; }
    void setText(std::function<QString()> text)
    {
        m_text = std::move(text);
        apply();
    }
    bool event(QEvent* event) override
    {
        if (event->type() == QEvent::LanguageChange && m_action && m_action->text() == m_last)
            apply();
        return QObject::event(event);
    }

protected:
    void apply()
    {
        m_last = m_text();
        m_action->setText(m_last);
    }

    QPointer<QAction> m_action;
    std::function<QString()> m_text;
    QString m_last; ///< as it was given to the action
};

ActionNamer& namerOf(QAction& action, QWidget& owner)
{
    for (QObject* const child : owner.children()) {
        auto* const namer = dynamic_cast<ActionNamer*>(child);
        if (namer && namer->names(action))
            return *namer;
    }
    return *new ActionNamer(action, owner); // the owner's
}

} // namespace

void followLanguage(QWidget& widget, std::function<void()> apply)
{
    new LanguageFollower(widget, std::move(apply)); // the widget's
}

void nameAction(QAction& action, QWidget& owner, std::function<QString()> text)
{
    namerOf(action, owner).setText(std::move(text));
}

} // namespace tarnis
