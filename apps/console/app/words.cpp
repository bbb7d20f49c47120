#include "app/words.h"

#include <QEvent>
#include <QLabel>

namespace console {

namespace {

constexpr QLatin1String speakerName("speaker");

/// A child of the widget that it speaks for: a change of the language reaches it when the widget has taken it up.
class Speaker : public QObject {
public:
    explicit Speaker(QWidget& widget)
        : QObject(&widget)
    {
        setObjectName(speakerName);
    }

    void speak(const std::function<void()>& speech)
    {
        m_speech = speech;
        m_speech();
    }
    bool event(QEvent* event) override
    {
        if (event->type() == QEvent::LanguageChange)
            m_speech();
        return QObject::event(event);
    }

protected:
    std::function<void()> m_speech;
};

void speakFor(QWidget& widget, const std::function<void()>& speech)
{
    auto* speaker = static_cast<Speaker*>(widget.findChild<QObject*>(speakerName, Qt::FindDirectChildrenOnly));
    if (!speaker)
        speaker = new Speaker(widget); // the widget's
    speaker->speak(speech);
}

} // namespace

void say(QLabel& label, const Words& words)
{
    speakFor(label, [&label, words] { label.setText(words()); });
}

void keepTitle(QWidget& window, const Words& title)
{
    speakFor(window, [&window, title] { window.setWindowTitle(title()); });
}

} // namespace console
