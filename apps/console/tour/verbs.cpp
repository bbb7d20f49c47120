#include "tour/verbs.h"

#include "commandpanel.h"
#include "mainwindow.h"

#include <QLineEdit>

namespace console {

void waitForState(Person& person, MainWindow& window, ServerState state, const QString& what)
{
    person.waitUntil(what, [&] { return window.controller().state() == state; });
}

void ask(Person& person, MainWindow& window, const QString& command)
{
    auto& edit = person.find<QLineEdit>(window, "commandEdit");
    person.clearText(edit);
    person.type(edit, command);
    person.key(edit, Qt::Key_Return);
    person.expect(edit.text().isEmpty(), QStringLiteral("%1 has gone out").arg(command));
    person.waitUntil(QStringLiteral("%1 is answered").arg(command), [&] { return !window.commandPanel().isBusy(); });
}

QString lastOf(MainWindow& window, const QString& command)
{
    const QString record = window.commandPanel().recordText();
    return record.mid(record.lastIndexOf(QStringLiteral("> ") + command));
}

} // namespace console
