// Step 2: a line to type commands in, and their replies.
#include <tarnis/foundation/log.h>
#include <tarnis/server/tarnis.h>

#include <QApplication>
#include <QFileInfo>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QVBoxLayout>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QString program =
        argc > 1 ? QFileInfo(application.arguments().at(1)).absoluteFilePath() : QStringLiteral("tarnis-simserver");
    initlog("host.log", 3); // blocks and failures, but not every trace

    const QByteArray prompt = "> ";
    Tarnis server(&prompt, nullptr);

    QWidget window;
    auto* const replies = new QPlainTextEdit;
    auto* const line = new QLineEdit;
    auto* const layout = new QVBoxLayout(&window);
    layout->addWidget(replies);
    layout->addWidget(line);
    replies->setReadOnly(true);
    line->setEnabled(false);

    QObject::connect(&server, &Tarnis::StatusChanged, line, [&] { line->setEnabled(server.IsServerConnected()); });
    QObject::connect(line, &QLineEdit::returnPressed, line, [&] {
        // A session with this name is created on first use. The reply is delivered by the signal below, with the second
        // text as its name.
        server.SendCmd("control", "typed", line->text(), false);
        line->clear();
    });
    QObject::connect(
        &server, &Tarnis::onCmdReply, replies, [&](const QString&, const QString& command, const QByteArray& reply) {
            const bool refused = reply.startsWith("NG:");
            replies->appendPlainText((refused ? "refused: " : "") + command + "\n" + QString::fromUtf8(reply));
        });

    window.show();
    if (!server.Run(&program))
        return 1;
    const int result = application.exec();
    server.Shutdown();
    closelog();
    return result;
}
