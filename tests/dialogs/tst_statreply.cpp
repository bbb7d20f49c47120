// The lines of a statistics reply, against nvUpdate() line by line.
#include "support/support.h"

#include "tarnis/dialogs/statreply_p.h"

#include <QTest>

using namespace tarnis;

namespace {

QStringList texts(const QList<NameValue>& values)
{
    QStringList texts;
    for (const NameValue& item : values)
        texts.append(item.name + '=' + item.value);
    return texts;
}

/// The oracle: splits off each line and searches each name from the start.
QList<NameValue> speltOut(const QString& reply)
{
    QList<NameValue> values;
    for (const QString& line : reply.split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon <= 0)
            continue;
        const QString key = line.left(colon);
        if (key == "OK" || key == "NG")
            continue;
        nvUpdate(values, NameValue { key, line.mid(colon + 1) });
    }
    return values;
}

} // namespace

class TestStatReply : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void readsOneValueFromEachLine_data()
    {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<QStringList>("values");
        QTest::newRow("empty") << "" << QStringList();
        QTest::newRow("no line feed at the end") << "a:1\nb:2" << QStringList({ "a=1", "b=2" });
        QTest::newRow("no value") << "a:\n" << QStringList("a=");
        QTest::newRow("no name") << ":1\n" << QStringList();
        QTest::newRow("colons in the value") << "a:1:2:3" << QStringList("a=1:2:3");
        QTest::newRow("repeated") << "a:1\nb:2\na:3\nb:" << QStringList({ "a=3", "b=" });
        QTest::newRow("status lines") << "OK: x\nNG: y\nOK :z" << QStringList("OK =z");
        QTest::newRow("nothing is trimmed") << " a : 1 \r\n" << QStringList(" a = 1 \r");
    }

    void readsOneValueFromEachLine()
    {
        QFETCH(QString, reply);
        QFETCH(QStringList, values);
        QCOMPARE(texts(namedValues(reply)), values);
    }

    void randomRepliesMatchTheOracle()
    {
        auto generator = testing::seededGenerator(55);
        const QStringList pieces { "a", "b", "A", "OK", "NG", ":", ":", "\n", "\n", " ", "1", "ä" };
        std::uniform_int_distribution<qsizetype> piece(0, pieces.size() - 1);
        std::uniform_int_distribution<int> length(0, 40);
        for (int round = 0; round < 50000; ++round) {
            QString reply;
            for (int i = length(generator); i > 0; --i)
                reply += pieces.at(piece(generator));
            QVERIFY2(texts(namedValues(reply)) == texts(speltOut(reply)), qPrintable(reply));
        }
    }
};

QTEST_APPLESS_MAIN(TestStatReply)
#include "tst_statreply.moc"
