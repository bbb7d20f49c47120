#include "support/cases.h"
#include "tarnis/server/localserver_p.h"

#include <QTest>

using namespace tarnis::testing;

class TestLocalServer : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void workingDirectory_data()
    {
        addColumns<QString, QString>("processPath", "expected");
        addCase("program in a folder", "/opt/daq/server", "/opt/daq/");
        addCase("arguments do not count", "/opt/daq/server -c /etc/x", "/opt/daq/");
        addCase("a blank in a folder's name cuts the path", "/opt/my daq/server", "/opt/");
        addCase("relative", "bin/server", "bin/");
        addCase("bare name", "server", "./");
        addCase("in the root", "/server", "//");
    }
    void workingDirectory()
    {
        QFETCH(QString, processPath);
        QFETCH(QString, expected);
        QCOMPARE(tarnis::workingDirectory(processPath), expected);
    }

    void announcedPort_data()
    {
        QTest::addColumn<QString>("output");
        QTest::addColumn<int>("expected"); // -1: not announced
        QTest::newRow("whole line") << "UI port: 5000\n" << 5000;
        QTest::newRow("behind other output") << "starting\nUI port: 5000\nready\n" << 5000;
        QTest::newRow("no blank") << "UI port:5000\n" << 5000;
        QTest::newRow("blanks around the digits") << "UI port:  5000 \r\n" << 5000;
        QTest::newRow("largest") << "UI port: 65535\n" << 65535;
        QTest::newRow("too large") << "UI port: 70000\n" << 0;
        QTest::newRow("one too large") << "UI port: 65536\n" << 0;
        QTest::newRow("negative") << "UI port: -1\n" << 0;
        QTest::newRow("zero") << "UI port: 0\n" << 0;
        QTest::newRow("no number") << "UI port: none\n" << 0;
        QTest::newRow("something behind the number") << "UI port: 5000.\n" << 0;
        QTest::newRow("no base but 10") << "UI port: 0x10\n" << 0;
        QTest::newRow("no line feed") << "UI port: 5000" << 0;
        QTest::newRow("nothing behind") << "UI port:" << 0;
        QTest::newRow("the first one counts") << "UI port: 1\nUI port: 2\n" << 1;
        QTest::newRow("other case") << "ui port: 5000\n" << -1;
        QTest::newRow("second piece of a line") << " 5000\n" << -1;
        QTest::newRow("empty") << "" << -1;
    }
    void announcedPort()
    {
        QFETCH(QString, output);
        QFETCH(int, expected);
        const std::optional<quint16> port = tarnis::announcedPort(output);
        QCOMPARE(port ? int(*port) : -1, expected);
    }
};

QTEST_APPLESS_MAIN(TestLocalServer)
#include "tst_localserver.moc"
