#include "tarnis/foundation/retranslator.h"

#include <QAction>
#include <QEvent>
#include <QLabel>
#include <QPointer>
#include <QWidget>

#include <utility>

namespace tarnis {

namespace {

/// What a retranslator sets; calls for the same property of the same object replace each other.
enum class Property { None, Text, Title };

/// A child of the widget: a widget passes a language change on to its children after it has handled it itself.
class Retranslator : public QObject {
public:
    Retranslator(QWidget& widget, const QObject* subject, Property property)
        : QObject(&widget)
        , m_subject(subject)
        , m_property(property)
    {
    }

    bool sets(const QObject* subject, Property property) const
    {
        return m_property != Property::None && m_subject == subject && m_property == property;
    }
    void setApply(std::function<void()> apply) { m_apply = std::move(apply); }

    bool event(QEvent* event) override
    {
        if (event->type() == QEvent::LanguageChange)
            m_apply();
        return QObject::event(event);
    }

private:
    const QObject* m_subject; ///< only compared, as it may have been destroyed
    Property m_property;
    std::function<void()> m_apply;
};

Retranslator& retranslatorOf(QWidget& widget, const QObject* subject, Property property)
{
    for (QObject* const child : widget.children()) {
        auto* const retranslator = dynamic_cast<Retranslator*>(child);
        if (retranslator && retranslator->sets(subject, property))
            return *retranslator;
    }
    return *new Retranslator(widget, subject, property); // the widget's
}

} // namespace

void onLanguageChange(QWidget& widget, std::function<void()> apply)
{
    retranslatorOf(widget, nullptr, Property::None).setApply(std::move(apply));
}

void setTranslatedText(QLabel& label, const TranslatedText& text)
{
    label.setText(text());
    retranslatorOf(label, &label, Property::Text).setApply([&label, text] { label.setText(text()); });
}

void setTranslatedText(QAction& action, QWidget& owner, const TranslatedText& text)
{
    const QString first = text();
    action.setText(first);
    retranslatorOf(owner, &action, Property::Text)
        .setApply([pointer = QPointer<QAction>(&action), text, last = first]() mutable {
            if (!pointer || pointer->text() != last)
                return;
            last = text();
            pointer->setText(last);
        });
}

void setTranslatedTitle(QWidget& window, const TranslatedText& title)
{
    window.setWindowTitle(title());
    retranslatorOf(window, &window, Property::Title).setApply([&window, title] { window.setWindowTitle(title()); });
}

} // namespace tarnis
