#include "tour/tourhelpers.h"

#include "command/commandpanel.h"
#include "mainwindow.h"
#include "notices/noticebar.h"

#include <QLineEdit>

namespace console {

void waitForState(Person& person, MainWindow& window, ServerState state, const QString& what)
{
    const auto has = [&](ServerState wanted) { return window.controller().state() == wanted; };
    person.waitUntil(what, [&] { return has(state) || has(ServerState::Failed); });
    if (!has(state)) // waiting on would bring nothing
        throw TourFailure(
            QStringLiteral("%1: %2").arg(what, person.find<NoticeBar>(window, "noticeBar").notice().text));
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
