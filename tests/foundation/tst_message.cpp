// Display of the library's messages: message boxes, the host's handler, the Qt log.
#include "support/modalwatchdog.h"
#include "support/wait.h"

#include <tarnis/foundation/message.h>
#include <tarnis/plots/viewselectedroi.h>
#include <tarnis/server/tarnissession.h>

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include <memory>

using tarnis::Message;
using tarnis::MessageButton;
using tarnis::MessageKind;
using tarnis::testing::ModalWatchdog;

namespace {

/// A host's handler: stores messages and answers them.
class HostHandler {
public:
    explicit HostHandler(MessageButton answer = MessageButton::Ok)
    {
        tarnis::setMessageHandler([this, answer](const Message& message) {
            messages.append(message);
            return answer;
        });
    }
    ~HostHandler() { tarnis::setMessageHandler({}); }
    HostHandler(const HostHandler&) = delete;
    HostHandler& operator=(const HostHandler&) = delete;

    QList<Message> messages;
};

} // namespace

class TestMessage : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setApplicationName(QStringLiteral("host")); }
    void showsABoxByDefault()
    {
        QWidget window;
        QString seen;
        ModalWatchdog watchdog({ [&](QWidget& widget) {
            auto& box = dynamic_cast<QMessageBox&>(widget);
            seen = box.windowTitle() + '|' + box.text() + '|' + QString::number(box.icon());
            QCOMPARE(box.parentWidget(), &window);
            QCOMPARE(box.standardButtons(), QMessageBox::Yes | QMessageBox::No);
            QCOMPARE(box.defaultButton(), box.button(QMessageBox::No));
            box.button(QMessageBox::Yes)->click();
        } });
        const MessageButton answer = tarnis::showMessage({ .kind = MessageKind::Question,
            .title = "title",
            .text = "text",
            .buttons = MessageButton::Yes | MessageButton::No,
            .defaultButton = MessageButton::No,
            .window = &window });
        QCOMPARE(answer, MessageButton::Yes);
        QVERIFY(watchdog.isContent());
        QCOMPARE(seen, QString("title|text|%1").arg(QMessageBox::Question));
    }

    void givesTheHostASessionsError()
    {
        HostHandler host;
        TarnisSession::showErrorMessage(QAbstractSocket::HostNotFoundError, "unused");
        QCOMPARE(host.messages.size(), 1);
        QCOMPARE(host.messages.first().title, QString("host"));
        QCOMPARE(host.messages.first().text, QString("The host was not found."));
        QCOMPARE(host.messages.first().kind, MessageKind::Information);
        QCOMPARE(host.messages.first().buttons, tarnis::MessageButtons(MessageButton::Ok));
        QVERIFY(!host.messages.first().window);
    }

    void givesTheHostAMissingPrompt()
    {
        HostHandler host;
        TarnisSession session("localhost", 1, nullptr, nullptr);
        // Called from another thread, it is shown on the application's thread.
        const std::unique_ptr<QThread> thread(QThread::create([&] { session.GetPrompt(); }));
        thread->start();
        TRY_COMPARE(host.messages.size(), 1);
        thread->wait();
        QCOMPARE(host.messages.first().title, QString("Assertion"));
        QCOMPARE(host.messages.first().kind, MessageKind::Critical);
    }

    void givesTheHostADialogsWarning()
    {
        HostHandler host;
        ViewSelectedROI roi(2, QRect(0, 0, 10, 10), nullptr);
        roi.setEditable(false);
        roi.setRoiList({ QRect(1, 1, 2, 2) }, 0);
        QCOMPARE(host.messages.size(), 1);
        QCOMPARE(host.messages.first().text, QString("Can not edit ROI."));
        QCOMPARE(host.messages.first().kind, MessageKind::Warning);
        QCOMPARE(host.messages.first().window, static_cast<QObject*>(&roi));
    }

    void takesTheHostsAnswer_data()
    {
        QTest::addColumn<MessageButton>("answer");
        QTest::addColumn<int>("left");
        QTest::newRow("ok") << MessageButton::Ok << 0;
        QTest::newRow("cancel") << MessageButton::Cancel << 1;
        QTest::newRow("none") << MessageButton::None << 1;
    }
    void takesTheHostsAnswer()
    {
        QFETCH(MessageButton, answer);
        QFETCH(int, left);
        ViewSelectedROI roi(2, QRect(0, 0, 10, 10), nullptr);
        roi.setRoiList({ QRect(1, 1, 2, 2) }, 0);
        HostHandler host(answer);
        roi.findChild<QPushButton*>("deleteButton")->click();
        QCOMPARE(host.messages.size(), 1);
        QCOMPARE(host.messages.first().buttons, MessageButton::Ok | MessageButton::Cancel);
        QCOMPARE(host.messages.first().defaultButton, MessageButton::Cancel);
        QCOMPARE(roi.getRoiList().size(), left);
    }

    void returnsThePreviousHandler()
    {
        QVERIFY(!tarnis::setMessageHandler([](const Message&) { return MessageButton::Yes; }));
        const tarnis::MessageHandler previous = tarnis::setMessageHandler({});
        QVERIFY(previous);
        QCOMPARE(previous({}), MessageButton::Yes);
        QVERIFY(!tarnis::setMessageHandler({}));
    }

    void lendsTheDefaultHandler()
    {
        tarnis::setMessageHandler([](const Message& message) {
            Message changed = message;
            changed.title = "changed";
            return tarnis::defaultMessageHandler()(changed);
        });
        QString seen;
        ModalWatchdog watchdog({ [&](QWidget& widget) {
            seen = widget.windowTitle();
            dynamic_cast<QMessageBox&>(widget).button(QMessageBox::Ok)->click();
        } });
        QCOMPARE(tarnis::showMessage({ .title = "title", .text = "text" }), MessageButton::Ok);
        tarnis::setMessageHandler({});
        QVERIFY(watchdog.isContent());
        QCOMPARE(seen, QString("changed"));
    }

    void takesAnotherDefault()
    {
        const tarnis::MessageHandler boxes = tarnis::defaultMessageHandler();
        tarnis::setDefaultMessageHandler([](const Message&) { return MessageButton::No; });
        QCOMPARE(tarnis::showMessage({}), MessageButton::No);
        {
            const HostHandler host(MessageButton::Yes);
            QCOMPARE(tarnis::showMessage({}), MessageButton::Yes);
        }
        QCOMPARE(tarnis::showMessage({}), MessageButton::No);
        tarnis::setDefaultMessageHandler(boxes);
    }

    void logsWithoutAnyHandler()
    {
        const tarnis::MessageHandler boxes = tarnis::defaultMessageHandler();
        tarnis::setDefaultMessageHandler({});
        QTest::ignoreMessage(QtWarningMsg, "a \"quoted\" text");
        QCOMPARE(tarnis::showMessage({ .title = "title", .text = "a \"quoted\" text" }), MessageButton::None);
        tarnis::setDefaultMessageHandler(boxes);
    }

    void letsAHandlerReplaceItself()
    {
        tarnis::setMessageHandler([](const Message&) {
            tarnis::setMessageHandler([](const Message&) { return MessageButton::No; });
            return MessageButton::Yes;
        });
        QCOMPARE(tarnis::showMessage({}), MessageButton::Yes);
        QCOMPARE(tarnis::showMessage({}), MessageButton::No);
        tarnis::setMessageHandler({});
    }
};

QTEST_MAIN(TestMessage)
#include "tst_message.moc"
