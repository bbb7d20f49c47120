// The history of the command line, alone and under the arrow keys.
#include "command/commandedit.h"
#include "command/history.h"

#include <QTest>

using namespace console;

class TestConsoleHistory : public QObject {
    Q_OBJECT

    static History historyOf(const QStringList& commands)
    {
        History history;
        for (const QString& command : commands)
            history.add(command);
        return history;
    }

private Q_SLOTS:
    void anEmptyHistoryReturnsTheCurrentText()
    {
        History history;
        QCOMPARE(history.older(QStringLiteral("typed")), QStringLiteral("typed"));
        QCOMPARE(history.newer(QStringLiteral("typed")), QStringLiteral("typed"));
    }

    void walksBackAndForth()
    {
        History history = historyOf({ "a", "b" });
        QCOMPARE(history.older(QStringLiteral("draft")), QStringLiteral("b"));
        QCOMPARE(history.older(QStringLiteral("b")), QStringLiteral("a"));
        QCOMPARE(history.older(QStringLiteral("a")), QStringLiteral("a"));
        QCOMPARE(history.newer(QStringLiteral("a")), QStringLiteral("b"));
        QCOMPARE(history.newer(QStringLiteral("b")), QStringLiteral("draft"));
        QCOMPARE(history.newer(QStringLiteral("draft")), QStringLiteral("draft"));
    }

    void theDraftMayBeEmpty()
    {
        History history = historyOf({ "a" });
        QCOMPARE(history.older(QString()), QStringLiteral("a"));
        QVERIFY(history.newer(QStringLiteral("a")).isEmpty());
    }

    void aCommandEndsTheWalk()
    {
        History history = historyOf({ "a", "b" });
        history.older(QStringLiteral("draft"));
        history.add(QStringLiteral("c"));
        QCOMPARE(history.newer(QStringLiteral("x")), QStringLiteral("x"));
        QCOMPARE(history.older(QString()), QStringLiteral("c"));
    }

    void keepsNeitherEmptyNorRepeatedCommands()
    {
        QCOMPARE(historyOf({ "a", "", "a", "b", "a" }).entries(), (QStringList { "a", "b", "a" }));
    }

    void dropsTheOldest()
    {
        History history;
        for (int i = 0; i <= History::limit; ++i)
            history.add(QString::number(i));
        QCOMPARE(history.entries().size(), qsizetype(History::limit));
        QCOMPARE(history.entries().first(), QStringLiteral("1"));
        QStringList many;
        for (int i = 0; i < 2 * History::limit; ++i)
            many.append(QString::number(i));
        history.setEntries(many);
        QCOMPARE(history.entries().size(), qsizetype(History::limit));
        QCOMPARE(history.entries().last(), many.last());
    }

    void theArrowKeysWalk()
    {
        CommandEdit edit;
        edit.history().setEntries({ "a", "b" });
        QTest::keyClicks(&edit, QStringLiteral("draft"));
        QTest::keyClick(&edit, Qt::Key_Up);
        QTest::keyClick(&edit, Qt::Key_Up, Qt::KeypadModifier);
        QCOMPARE(edit.text(), QStringLiteral("a"));
        QTest::keyClick(&edit, Qt::Key_Up, Qt::ControlModifier);
        QCOMPARE(edit.text(), QStringLiteral("a"));
        QTest::keyClick(&edit, Qt::Key_Down);
        QTest::keyClick(&edit, Qt::Key_Down);
        QCOMPARE(edit.text(), QStringLiteral("draft"));
    }
};

QTEST_MAIN(TestConsoleHistory)
#include "tst_consolehistory.moc"
