// Message boxes while exec() blocks a test: answered, and remembered.
#pragma once

#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QStringList>
#include <QThread>
#include <QTimer>

#include <functional>

namespace tarnis::testing {

/// Presses the given button of each message box that appears during its lifetime, and records what the box showed.
/// Lists have an entry for each box, in order.
class MessageBoxWatcher : public QObject {
public:
    explicit MessageBoxWatcher(QMessageBox::StandardButton answer = QMessageBox::Ok)
        : m_answer(answer)
    {
        connect(&m_timer, &QTimer::timeout, this, &MessageBoxWatcher::check);
        m_timer.start(5);
    }
    QStringList texts;
    QStringList titles;
    QList<QMessageBox::Icon> icons;
    QList<QMessageBox::StandardButtons> buttons;
    QList<QMessageBox::StandardButton> defaultButtons;
    bool areParentless = true;
    bool areOnGuiThread = true;

    std::function<void()> whileOpen; ///< called once for each box, before it is answered
    bool answers = true; ///< false: boxes stay open
    std::function<bool(const QMessageBox&)> leaveOpen; ///< true: this box is left open for the moment

private:
    void check()
    {
        const QPointer<QMessageBox> box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box)
            return;
        if (!box->property("seen").toBool())
            note(*box);
        if (box && answers && !(leaveOpen && leaveOpen(*box)))
            box->button(m_answer)->click();
    }
    void note(QMessageBox& box)
    {
        box.setProperty("seen", true);
        texts.append(box.text());
        titles.append(box.windowTitle());
        icons.append(box.icon());
        buttons.append(box.standardButtons());
        defaultButtons.append(box.defaultButton() ? box.standardButton(box.defaultButton()) : QMessageBox::NoButton);
        areParentless = areParentless && !box.parentWidget();
        areOnGuiThread = areOnGuiThread && QThread::currentThread() == qApp->thread();
        if (const auto act = whileOpen)
            act();
    }

    QMessageBox::StandardButton m_answer;
    QTimer m_timer;
};

} // namespace tarnis::testing
