// Checks the document of the simulated server: runs its examples and compares its tables with the program.
#include "faults.h"
#include "settings.h"
#include "simserver/simprogram.h"

#include <QFile>
#include <QRegularExpression>
#include <QtTest>

using simtest::BinaryReply;
using simtest::Connection;
using simtest::Program;

namespace {

QString document()
{
    QFile file(SIMSERVER_DOCUMENT);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The examples, one text each: commands after "> ", replies below.
QStringList transcripts()
{
    static const QRegularExpression block(QStringLiteral("^```transcript\\n(.*?)^```$"),
        QRegularExpression::MultilineOption | QRegularExpression::DotMatchesEverythingOption);
    QStringList texts;
    for (const QRegularExpressionMatch& match : block.globalMatch(document()))
        texts << match.captured(1);
    return texts;
}

/// The pattern of an expected reply: "..." matches the rest of a line or, alone on a line, any lines.
QRegularExpression pattern(const QString& expected)
{
    QString text;
    for (const QString& line : expected.split('\n', Qt::SkipEmptyParts)) {
        if (line == "...")
            text += "(?:[^\n]*\n)*";
        else
            text += QRegularExpression::escape(line).replace("\\.\\.\\.", "[^\n]*") + "\n";
    }
    return QRegularExpression(QRegularExpression::anchoredPattern(text));
}

QString play(Connection& connection, const QString& command)
{
    if (!command.startsWith("hist1d") && !command.startsWith("hist2d") && !command.startsWith("rxfile"))
        return QString::fromUtf8(connection.ask(command.toLatin1()));
    const BinaryReply reply = connection.askBinary(command.toLatin1());
    return QStringLiteral("(%1 bytes)\n").arg(reply.length) + QString::fromUtf8(reply.text);
}

} // namespace

class TestSimDocument : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void examplesAreTrue_data()
    {
        QTest::addColumn<QString>("transcript");
        int number = 0;
        for (const QString& transcript : transcripts())
            QTest::addRow("%d: %s", ++number, qPrintable(transcript.section('\n', 0, 0))) << transcript;
        QVERIFY(number > 10);
    }
    void examplesAreTrue()
    {
        QFETCH(QString, transcript);
        Program program;
        Connection connection(program.port());
        for (const QString& example : ("\n" + transcript).split("\n> ", Qt::SkipEmptyParts)) {
            const QString command = example.section('\n', 0, 0);
            const QString reply = play(connection, command);
            const bool matches = pattern(example.section('\n', 1)).match(reply).hasMatch();
            QVERIFY2(matches, qPrintable("> " + command + '\n' + reply));
        }
    }

    void everyFaultIsInTheTable()
    {
        const QString text = document();
        for (const simserver::FaultInfo& info : simserver::allFaults()) {
            const qsizetype at = text.indexOf(QStringLiteral("\n| `%1` | ").arg(info.name));
            QVERIFY2(at >= 0, info.name);
            const QString pause =
                text.mid(at + 1).section('\n', 0, 0).section('|', -2, -2).section(',', 0, 0).trimmed();
            if (info.delayMs > 0)
                QCOMPARE(pause, QString::number(info.delayMs));
        }
    }

    void everySettingIsInTheTable()
    {
        const QString text = document();
        for (const simserver::Settings::Pair& pair : simserver::Settings().all()) {
            const QString name = QStringLiteral("`%1`").arg(pair.key);
            QVERIFY2(text.contains("\n| " + name) || text.contains(", " + name), qPrintable(pair.key));
        }
    }

    void everyOptionIsInTheTable()
    {
        Program help({ "--help" });
        const QString options = QString::fromUtf8(help.outputUntil("\nFaults"));
        const QString text = document();
        static const QRegularExpression name(QStringLiteral("\\n  (?:-\\w, )?(--[a-z-]+)"));
        int count = 0;
        for (const QRegularExpressionMatch& match : name.globalMatch(options)) {
            QVERIFY2(text.contains('`' + match.captured(1)), qPrintable(match.captured(1)));
            ++count;
        }
        QVERIFY(count >= 19);
    }
};

QTEST_GUILESS_MAIN(TestSimDocument)
#include "tst_simdocument.moc"
