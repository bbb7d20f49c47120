// The program of examples/instrument on servers that misbehave: each command ends exactly once, memory stays bounded,
// no message box appears, and the window works again when the fault is over.
#include "instrument.h"

#include "support/quickserver.h"
#include "support/scriptedserver.h"
#include "support/serverfaults.h"
#include "support/support.h"
#include "support/wait.h"

#include <tarnis/foundation/message.h>
#include <tarnis/live/livemap.h>
#include <tarnis/live/liveplot.h>

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTableView>
#include <QTest>
#include <QThreadPool>

#include <memory>

using namespace tarnis;
using namespace tarnis::testing;
using namespace std::chrono_literals;

using State = LiveWidget::State;

namespace {

constexpr int commandCount = 6;

/// Polls 50 times a second.
ServerOptions quickPolls()
{
    ServerOptions options = quick();
    options.statInterval = 20ms;
    return options;
}

RequestOptions impatient()
{
    RequestOptions options;
    options.silence = 200ms;
    options.deadline = 10s;
    return options;
}

/// The window and the actions of its user.
class InstrumentUser {
public:
    InstrumentUser()
        : m_window(std::make_unique<Instrument>(quickPolls(), impatient()))
    {
        m_window->resize(900, 600);
        m_window->show();
    }
    Instrument& window() { return *m_window; }
    LiveWidget& spectrum() { return *m_window->findChild<LivePlot*>(); }
    LiveWidget& image() { return *m_window->findChild<LiveMap*>(); }
    QStringList log() const { return m_window->findChild<QPlainTextEdit*>()->toPlainText().split('\n'); }
    /// How often a command has ended.
    qsizetype ends(const QString& command) const
    {
        return log().filter(QRegularExpression(QString("^[0-9:]+ [<!] %1: ").arg(command))).size();
    }
    bool isDone(const QString& command) const
    {
        return !log().filter(QRegularExpression(QString("^[0-9:]+ < %1: ").arg(command))).isEmpty();
    }
    bool isAlive()
    {
        const QString command = QString("help a%1").arg(m_asked++);
        m_window->send(command);
        // An unknown topic: a refusal is an answer, too.
        return eventually([&] { return ends(command) == 1; }) && !log().filter(command + ": unknown").isEmpty();
    }

private:
    std::unique_ptr<Instrument> m_window;
    int m_asked = 0;
};

} // namespace

class TestInstrument : public QObject {
    Q_OBJECT
private:
    int m_messages = 0;

private Q_SLOTS:
    void initTestCase()
    {
        setMessageHandler([this](const Message&) {
            ++m_messages;
            return MessageButton::Ok;
        });
    }
    void cleanup()
    {
        QThreadPool::globalInstance()->waitForDone();
        QCOMPARE(m_messages, 0);
        QVERIFY(!QApplication::activeModalWidget());
    }

    void revertsEditedSettings()
    {
        InstrumentUser user;
        user.window().open(SIMSERVER_PATH);
        QAbstractItemModel* const model = user.window().findChild<QTableView*>()->model();
        QVERIFY(eventually([&] { return model->rowCount() > 0; }));
        const auto value = [&] { return model->index(0, SettingsModel::Value).data().toString(); };
        const QString before = value();
        QVERIFY(model->setData(model->index(0, SettingsModel::Value), before + '1', Qt::EditRole));
        QCOMPARE(value(), before + '1');
        for (QPushButton* const button : user.window().findChildren<QPushButton*>()) {
            if (button->text() == "Re&vert")
                button->click();
        }
        QCOMPARE(value(), before);
    }

    void operatesALocalServer()
    {
        qputenv("TARNIS_SIMSERVER_OPTIONS", "--rate 1000");
        InstrumentUser user;
        user.window().open(SIMSERVER_PATH);
        QVERIFY(eventually([&] { return user.spectrum().state() == State::Current; }));
        const QList<QAction*> actions = user.window().findChildren<QAction*>();
        const auto press = [&](const QString& text) {
            for (QAction* const action : actions) {
                if (action->text() == text && action->isEnabled())
                    action->trigger();
            }
        };
        press("&Start run");
        QVERIFY(eventually([&] { return user.ends("start") == 1; }));
        QVERIFY(eventually([&] { return user.image().last().maximum > 0.0; }));
        auto* const settings = dynamic_cast<SettingsModel*>(user.window().findChild<QTableView*>()->model());
        QVERIFY(eventually([&] { return settings->serverValue("rate") == "1000"; }));
        settings->setValue("rate", "2000");
        settings->setValue("modules", "none");
        settings->send();
        QVERIFY(eventually([&] { return !user.log().filter("Settings: 1 accepted, 1 refused").isEmpty(); }));
        QVERIFY(!user.log().filter("modules was not set: ").isEmpty());
        press("S&top run");
        QVERIFY(eventually([&] { return user.isDone("stop"); }));
    }

    void survivesFaults_data()
    {
        QTest::addColumn<QByteArray>("fault");
        for (const QByteArray& fault : replyFaults())
            QTest::newRow(fault.constData()) << fault;
    }
    void survivesFaults()
    {
        QFETCH(QByteArray, fault);
        qputenv("TARNIS_SIMSERVER_OPTIONS", "--start --rate 1000");
        ServerProcess process;
        process.start(SIMSERVER_PATH);
        QVERIFY(eventually([&] { return process.port() != 0; }));
        Client control(quickPolls().client);
        control.connectTo("127.0.0.1", process.port());
        InstrumentUser user;
        user.window().open(QString("127.0.0.1:%1").arg(process.port()));
        QVERIFY(eventually([&] { return user.image().state() == State::Current; }));
        const qint64 before = residentBytes();

        const auto set = control.request(QString::fromLatin1("fault " + fault + " delay:5"));
        QVERIFY(eventually([&] { return set.isFinished(); }));
        for (int i = 0; i < commandCount; ++i)
            user.window().send(QString("help c%1").arg(i));
        for (int i = 0; i < commandCount; ++i)
            QVERIFY(eventually([&] { return user.ends(QString("help c%1").arg(i)) == 1; }));
        QVERIFY(hasGrownLessThan(64, before));

        const auto cleared = control.request("fault none");
        QVERIFY(eventually([&] { return cleared.isFinished(); }));
        // A reply still outstanding from before the end of the fault may make one command fail.
        QVERIFY(eventually([&] { return user.isAlive(); }));
        for (int i = 0; i < commandCount; ++i)
            QCOMPARE(user.ends(QString("help c%1").arg(i)), 1);
        QVERIFY(eventually([&] { return user.spectrum().state() == State::Current; }));
    }

    void reportsServersThatDoNotStart_data()
    {
        QTest::addColumn<QByteArray>("fault");
        for (const QByteArray& fault : startFaults())
            QTest::newRow(fault.constData()) << fault;
    }
    void reportsServersThatDoNotStart()
    {
        QFETCH(QByteArray, fault);
        qputenv("TARNIS_SIMSERVER_OPTIONS", "--fault " + fault);
        InstrumentUser user;
        user.window().open(SIMSERVER_PATH);
        user.window().send("stat");
        QVERIFY(eventually([&] { return !user.log().filter("Failed: ").isEmpty(); }));
        QVERIFY(eventually([&] { return user.ends("stat") == 1; }));
        QVERIFY(!user.isDone("stat"));
    }

    void survivesScripts_data()
    {
        QTest::addColumn<int>("kind");
        int kind = 0;
        for (const char* const name :
            { "refuses connections", "endless text", "huge payload", "markup", "endless refusal", "not a greeting" })
            QTest::newRow(name) << kind++;
    }
    void survivesScripts()
    {
        QFETCH(int, kind);
        const QByteArray much(16 << 20, 'x'); // more than the program accepts
        const QByteArray markup("NG:<img src='file:///etc/passwd'><b>bold</b>\n");
        const QList<Script> answers { {}, { Step::raw(much), Step::silence() }, { Step::binary(much, "OK: (0 1 2)\n") },
            { Step::text(markup) }, { Step::text("NG:" + much) }, {} };
        ScriptedServer server;
        if (kind == 5)
            for (int i = 0; i < 100; ++i)
                server.setScript(i, { Step::raw("HTTP/1.1 400 Bad Request\r\n\r\n"), Step::drop() });
        server.answerOthers([answer = answers.at(kind)](const std::string& request) {
            const bool isHistogram = request.rfind("hist", 0) == 0;
            if (isHistogram && answer.size() == 1 && answer.front().kind == Step::Kind::Text)
                return Script { Step::binary("", QByteArray::fromStdString(answer.front().bytes)) };
            return answer;
        });
        const quint16 port = kind == 0 ? ScriptedServer::closedPort() : server.port();
        InstrumentUser user;
        const qint64 before = residentBytes();
        user.window().open(QString("127.0.0.1:%1").arg(port));
        if (kind != 0 && kind != 5)
            QVERIFY(eventually([&] { return user.spectrum().state() == State::Failed; }));
        for (int i = 0; i < commandCount; ++i)
            user.window().send(QString("c%1").arg(i));
        for (int i = 0; i < commandCount; ++i)
            QVERIFY(eventually([&] { return user.ends(QString("c%1").arg(i)) == 1; }));
        const QList<QLabel*> labels = user.window().findChildren<QLabel*>();
        for (const QLabel* const label : labels)
            QVERIFY2(label->textFormat() == Qt::PlainText || !label->text().contains('<'), qPrintable(label->text()));
        server.answerOthers([](const std::string&) { return Script { Step::text("NG:\n") }; });
        // Ends the replies under way, which take memory of the server, too.
        QVERIFY(eventually([&] { return hasGrownLessThan(96, before); }));
    }
};

QTEST_MAIN(TestInstrument)
#include "tst_instrument.moc"
