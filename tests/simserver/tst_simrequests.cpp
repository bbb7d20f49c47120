// Requests from fragmented bytes, and the text functions.
#include "exitrequests.h"
#include "requests.h"
#include "support/cases.h"
#include "support/support.h"
#include "text.h"

#include <QtTest>

using namespace simserver;
using namespace tarnis::testing;

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
        addColumns<QByteArray, QStringList>("bytes", "requests");
        addCase("nothing", QByteArray(), QStringList());
        addCase("a line", QByteArray("stat\n"), QStringList { "line|stat" });
        addCase("two lines", QByteArray("stat\nsetting\n"), QStringList { "line|stat", "line|setting" });
        addCase("an empty line", QByteArray("\n"), QStringList { "line|" });
        addCase("a line without end", QByteArray("sta"), QStringList());
        addCase("Latin-1", QByteArray("ls-F \"/M\xfcller\"\n"),
            QStringList { QStringLiteral("line|ls-F \"/M\u00fcller\"") });
        addCase("upload", QByteArray("txfile a\nb\nc\x04"), QStringList { "upload|txfile a\nb\nc" });
        addCase("upload without a line feed", QByteArray("txfile\x04"), QStringList { "upload|txfile" });
        addCase(
            "upload and line", QByteArray("txfile a\nb\x04stat\n"), QStringList { "upload|txfile a\nb", "line|stat" });
        addCase("upload without end", QByteArray("txfile a\nb\n"), QStringList());
        addCase("not quite an upload", QByteArray("txfil\nstat\n"), QStringList { "line|txfil", "line|stat" });
        addCase("upload inside a line", QByteArray("x txfile\n"), QStringList { "line|x txfile" });
        addCase("farewell", QByteArray("stat\nclose"), QStringList { "line|stat", "farewell|" });
        addCase("farewell as a line", QByteArray("close\r\n"), QStringList { "farewell|" });
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
        addColumns<QString, QString>("path", "clean");
        addCase("empty", "", "/data");
        addCase("root", "/", "/");
        addCase("absolute", "/a/b", "/a/b");
        addCase("slashes at the end", "/a//b///", "/a/b");
        addCase("relative", "x", "/data/x");
        addCase("dots", "/a/./b/../c/.", "/a/c");
        addCase("above the root", "/../../etc", "/etc");
        addCase("relative above the root", "../../..", "/");
        addCase("names of dots", "/...", "/...");
    }
    void serverPathsAreCleaned()
    {
        QFETCH(QString, path);
        QTEST(cleanServerPath(path, "/data"), "clean");
    }

    void quotesAreTakenOff_data()
    {
        addColumns<QString, QString>("text", "plain");
        addCase("none", "/a b", "/a b");
        addCase("around", "\"/a b\"", "/a b");
        addCase("inside", "\"/a\\\"b\"", "/a\"b");
        addCase("backslash at the end", "\"/a\\\"", "/a\\");
        addCase("backslash and quote", "\"/a\\\\\"b\"", "/a\\\"b");
        addCase("one quote", "\"", "\"");
        addCase("empty", "\"\"", "");
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
        addColumns<QList<QByteArray>, bool>("pieces", "found");
        addCase("bare", QList<QByteArray> { "exit" }, true);
        addCase("with a line feed", QList<QByteArray> { "exit\n" }, true);
        addCase("with a line end of two bytes", QList<QByteArray> { "exit\r\n" }, true);
        addCase("in pieces", QList<QByteArray> { "ex", "it" }, true);
        addCase("behind another line", QList<QByteArray> { "hello\nexit" }, true);
        addCase("before another line", QList<QByteArray> { "exit\nhello\n" }, true);
        addCase("another word", QList<QByteArray> { "exited" }, false);
        addCase("behind other words", QList<QByteArray> { "please exit\n" }, false);
        addCase("nothing", QList<QByteArray> { "\n", "\n" }, false);
        addCase("behind a long line", QList<QByteArray> { QByteArray(10000, 'x'), "exit" }, false);
        addCase("on the line behind a long one", QList<QByteArray> { QByteArray(10000, 'x'), "\nexit" }, true);
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
