// Requests from fragmented bytes, and the text functions.
#include "ending.h"
#include "requests.h"
#include "support/support.h"
#include "text.h"

#include <QtTest>

using namespace simserver;
using tarnis::testing::seededGenerator;

namespace {

using Kind = Request::Kind;

/// "line|stat", "upload|...", "farewell|", "too long|", in order.
QStringList requestsOf(RequestReader& reader)
{
    QStringList requests;
    while (const std::optional<Request> request = reader.next()) {
        const QString text = QString::fromLatin1(request->bytes);
        switch (request->kind) {
        case Kind::Line:
            requests << "line|" + text;
            break;
        case Kind::Upload:
            requests << "upload|" + text;
            break;
        case Kind::Farewell:
            return requests << "farewell|"; // the connection ends here
        case Kind::TooLong:
            requests << "too long|";
            break;
        }
    }
    return requests;
}

QStringList fedWhole(const QByteArray& bytes)
{
    RequestReader reader;
    reader.feed(bytes);
    return requestsOf(reader);
}

} // namespace

class TestSimRequests : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void requestsAreTaken_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("requests");
        QTest::newRow("nothing") << QByteArray() << QStringList();
        QTest::newRow("a line") << QByteArray("stat\n") << QStringList { "line|stat" };
        QTest::newRow("two lines") << QByteArray("stat\nsetting\n") << QStringList { "line|stat", "line|setting" };
        QTest::newRow("an empty line") << QByteArray("\n") << QStringList { "line|" };
        QTest::newRow("a line without end") << QByteArray("sta") << QStringList();
        QTest::newRow("Latin-1") << QByteArray("ls-F \"/M\xfcller\"\n")
                                 << QStringList { QStringLiteral("line|ls-F \"/M\u00fcller\"") };
        QTest::newRow("upload") << QByteArray("txfile a\nb\nc\x04") << QStringList { "upload|txfile a\nb\nc" };
        QTest::newRow("upload without a line feed") << QByteArray("txfile\x04") << QStringList { "upload|txfile" };
        QTest::newRow("upload and line") << QByteArray("txfile a\nb\x04stat\n")
                                         << QStringList { "upload|txfile a\nb", "line|stat" };
        QTest::newRow("upload without end") << QByteArray("txfile a\nb\n") << QStringList();
        QTest::newRow("not quite an upload")
            << QByteArray("txfil\nstat\n") << QStringList { "line|txfil", "line|stat" };
        QTest::newRow("upload inside a line") << QByteArray("x txfile\n") << QStringList { "line|x txfile" };
        QTest::newRow("farewell") << QByteArray("stat\nclose") << QStringList { "line|stat", "farewell|" };
        QTest::newRow("farewell as a line") << QByteArray("close\r\n") << QStringList { "farewell|" };
    }
    void requestsAreTaken()
    {
        QFETCH(QByteArray, bytes);
        QTEST(fedWhole(bytes), "requests");
    }

    void cutsChangeNothing_data() { requestsAreTaken_data(); }
    void cutsChangeNothing()
    {
        QFETCH(QByteArray, bytes);
        auto generator = seededGenerator(1);
        for (int round = 0; round < 50; ++round) {
            RequestReader reader;
            QStringList found;
            for (qsizetype at = 0; at < bytes.size() && !found.contains("farewell|");) {
                const auto size = static_cast<qsizetype>(round == 0 ? 1 : 1 + generator() % 6);
                reader.feed(bytes.mid(at, size));
                found += requestsOf(reader);
                at += size;
            }
            QTEST(found, "requests");
        }
    }

    void tooLongLineIsPassedOver()
    {
        RequestReader reader;
        QStringList found;
        for (int i = 0; i < 10; ++i) {
            reader.feed(QByteArray(20000, 'x'));
            found += requestsOf(reader);
        }
        QCOMPARE(found, QStringList());
        reader.feed("y\nstat\n");
        QCOMPARE(requestsOf(reader), (QStringList { "too long|", "line|stat" }));
        QCOMPARE(fedWhole(QByteArray(RequestReader::maxLine + 1, 'x') + "\nstat\n"),
            (QStringList { "too long|", "line|stat" }));
    }

    void longestLineIsTaken()
    {
        const QByteArray line(RequestReader::maxLine, 'x');
        QCOMPARE(fedWhole(line + '\n'), QStringList { "line|" + QString::fromLatin1(line) });
    }

    void tooLongUploadIsPassedOver()
    {
        RequestReader reader;
        reader.feed("txfile a\n");
        for (int i = 0; i < 300; ++i) {
            reader.feed(QByteArray(64 * 1024, '\n')); // line feeds do not end an upload
            QVERIFY(!reader.next());
        }
        reader.feed("\x04stat\n");
        QCOMPARE(requestsOf(reader), (QStringList { "too long|", "line|stat" }));
    }

    void serverPathsAreCleaned_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("clean");
        QTest::newRow("empty") << ""
                               << "/data";
        QTest::newRow("root") << "/"
                              << "/";
        QTest::newRow("absolute") << "/a/b"
                                  << "/a/b";
        QTest::newRow("slashes at the end") << "/a//b///"
                                            << "/a/b";
        QTest::newRow("relative") << "x"
                                  << "/data/x";
        QTest::newRow("dots") << "/a/./b/../c/."
                              << "/a/c";
        QTest::newRow("above the root") << "/../../etc"
                                        << "/etc";
        QTest::newRow("relative above the root") << "../../.."
                                                 << "/";
        QTest::newRow("names of dots") << "/..."
                                       << "/...";
    }
    void serverPathsAreCleaned()
    {
        QFETCH(QString, path);
        QTEST(cleanServerPath(path, "/data"), "clean");
    }

    void quotesAreTakenOff_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("plain");
        QTest::newRow("none") << "/a b"
                              << "/a b";
        QTest::newRow("around") << "\"/a b\""
                                << "/a b";
        QTest::newRow("inside") << "\"/a\\\"b\""
                                << "/a\"b";
        QTest::newRow("backslash at the end") << "\"/a\\\""
                                              << "/a\\";
        QTest::newRow("backslash and quote") << "\"/a\\\\\"b\""
                                             << "/a\\\"b";
        QTest::newRow("one quote") << "\""
                                   << "\"";
        QTest::newRow("empty") << "\"\""
                               << "";
    }
    void quotesAreTakenOff()
    {
        QFETCH(QString, text);
        QTEST(unquoted(text), "plain");
    }

    void shownTextHoldsNoControlCharacters()
    {
        QCOMPARE(shown("a\nb\x1b"), QStringLiteral("a?b?"));
        QCOMPARE(shown(QString(100, 'x')), QString(60, 'x') + "...");
    }

    void exitIsFound_data()
    {
        QTest::addColumn<QList<QByteArray>>("pieces");
        QTest::addColumn<bool>("found");
        QTest::newRow("bare") << QList<QByteArray> { "exit" } << true;
        QTest::newRow("with a line feed") << QList<QByteArray> { "exit\n" } << true;
        QTest::newRow("with a line end of two bytes") << QList<QByteArray> { "exit\r\n" } << true;
        QTest::newRow("in pieces") << QList<QByteArray> { "ex", "it" } << true;
        QTest::newRow("behind another line") << QList<QByteArray> { "hello\nexit" } << true;
        QTest::newRow("before another line") << QList<QByteArray> { "exit\nhello\n" } << true;
        QTest::newRow("another word") << QList<QByteArray> { "exited" } << false;
        QTest::newRow("behind other words") << QList<QByteArray> { "please exit\n" } << false;
        QTest::newRow("nothing") << QList<QByteArray> { "\n", "\n" } << false;
        QTest::newRow("behind a long line") << QList<QByteArray> { QByteArray(10000, 'x'), "exit" } << false;
        QTest::newRow("on the line behind a long one")
            << QList<QByteArray> { QByteArray(10000, 'x'), "\nexit" } << true;
    }
    void exitIsFound()
    {
        QFETCH(QList<QByteArray>, pieces);
        QByteArray line;
        bool found = false;
        for (const QByteArray& piece : pieces)
            found = found || takesExit(line, piece);
        QTEST(found, "found");
    }
};

QTEST_APPLESS_MAIN(TestSimRequests)
#include "tst_simrequests.moc"
