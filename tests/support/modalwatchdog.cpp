#include "support/modalwatchdog.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPushButton>

namespace tarnis::testing {

ModalWatchdog::ModalWatchdog(QList<Answer> answers)
    : m_answers(std::move(answers))
    , m_openBefore(QApplication::activeModalWidget())
{
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { check(); });
    m_timer.start(5);
}

void ModalWatchdog::check()
{
    constexpr int maxChecks = 2000; // number of checks, about 10 s
    QWidget* window = QApplication::activeModalWidget();
    if (window == nullptr || !window->isVisible() || window == m_openBefore)
        return;
    const bool seenBefore = m_answeredWindows.contains(window); // on top again while a later one closes, or left open
    if (seenBefore && ++m_checks < maxChecks)
        return;
    if (!seenBefore && m_next < m_answers.size()) {
        m_answeredWindows.append(window);
        m_checks = 0;
        // Queued: a timer does not fire again while its own slot runs, and an answer may open the next window.
        QTimer::singleShot(0, window, [answer = m_answers.at(m_next++), window] { answer(*window); });
        return;
    }
    ++m_faults;
    if (auto* dialog = qobject_cast<QDialog*>(window))
        dialog->done(QDialog::Rejected);
    else
        window->close();
}

ModalWatchdog::Answer acceptFile(const QString& path)
{
    return [path](QWidget& window) {
        auto* dialog = qobject_cast<QFileDialog*>(&window);
        if (dialog == nullptr)
            return;
        dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(path);
        const auto* box = dialog->findChild<QDialogButtonBox*>();
        QPushButton* save = box->button(QDialogButtonBox::Save);
        (save != nullptr ? save : box->button(QDialogButtonBox::Open))->click();
    };
}

ModalWatchdog::Answer acceptPrint(const QString& path)
{
    return [path](QWidget& window) {
        auto* dialog = qobject_cast<QPrintDialog*>(&window);
        if (dialog == nullptr)
            return;
        dialog->findChild<QLineEdit*>(QStringLiteral("filename"))->setText(path);
        dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    };
}

ModalWatchdog::Answer agree()
{
    return [](QWidget& window) {
        if (auto* box = qobject_cast<QMessageBox*>(&window))
            box->button(QMessageBox::Yes)->click();
    };
}

ModalWatchdog::Answer reject()
{
    return [](QWidget& window) {
        if (auto* dialog = qobject_cast<QDialog*>(&window))
            dialog->reject();
    };
}

} // namespace tarnis::testing
