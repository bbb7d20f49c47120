// System messages: posts in English, and the same translated.
#include "support/metamethods.h"
#include "support/wait.h"
#include "tarnis/foundation/sysmsg.h"
#include "tarnis/foundation/systemmessages.h"
#include "tarnis/foundation/translation.h"

#include <QSignalSpy>
#include <QTest>

#include <thread>
#include <vector>

using tarnis::SystemMessage;
using tarnis::SystemMessages;

class TestSysMsg : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hasOneSignalAndNoSlot()
    {
        QCOMPARE(tarnis::testing::ownMethods(SysMsg::staticMetaObject),
            QStringList { QStringLiteral("signal onSysMsg(QString)") });
    }

    void theGlobalInstanceHasNoParent() { QCOMPARE(_g_sysMsg.parent(), nullptr); }

    void streamsTextsAndNumbers()
    {
        QCOMPARE(emitted([] { _g_sysMsg << 42; }), QStringList { "42" });
        QCOMPARE(emitted([] { _g_sysMsg << QStringLiteral("100%") << -7 << QString(); }),
            (QStringList { "100%", "-7", "" }));
    }

    void postsAFormattedText()
    {
        int result = 0;
        QCOMPARE(emitted([&] { result = _g_sysMsg.postLog("port %d of %s", 5000, "Größe"); }),
            QStringList { QStringLiteral("port 5000 of Größe") });
        QCOMPARE(result, 20);
    }

    void cutsAt2045Bytes_data()
    {
        QTest::addColumn<int>("length");
        for (const int length : { 0, 2044, 2045, 2046, 5000 })
            QTest::addRow("%d bytes", length) << length;
    }
    void cutsAt2045Bytes()
    {
        QFETCH(int, length);
        const QByteArray text(length, 'x');
        int result = -1;
        QCOMPARE(emitted([&] { result = _g_sysMsg.postLog("%s", text.constData()); }),
            QStringList { QString::fromLatin1(text.left(2045)) });
        QCOMPARE(result, length);
    }

    void cutInsideACharacterIsNoDisaster()
    {
        const QByteArray text = QByteArray(2044, 'x') + "ß";
        const QStringList texts = emitted([&] { _g_sysMsg.postLog("%s", text.constData()); });
        QCOMPARE(texts.value(0).size(), 2045);
        QCOMPARE(texts.value(0).back(), QChar(QChar::ReplacementCharacter));
    }

    void swallowsAFormatThatFails()
    {
        // A wide character that the locale cannot write makes the formatter fail.
        const wchar_t unwritable[] = { static_cast<wchar_t>(-1), L'\0' };
        int result = 0;
        QCOMPARE(emitted([&] { result = _g_sysMsg.postLog("%ls", unwritable); }), QStringList());
        QVERIFY(result < 0);
        QCOMPARE(emitted([] { _g_sysMsg.postLog("next"); }), QStringList { "next" });
    }

    void aSlotMayPostAgain()
    {
        const QObject receiver;
        connect(&_g_sysMsg, &SysMsg::onSysMsg, &receiver, [](const QString& text) {
            if (text == QLatin1String("first"))
                _g_sysMsg.postLog("second");
        });
        QStringList texts = emitted([] { _g_sysMsg.postLog("first"); });
        texts.sort();
        QCOMPARE(texts, (QStringList { "first", "second" }));
    }

    void threadsPostAtTheSameTime()
    {
        constexpr int threadCount = 4;
        constexpr int postCount = 200;
        QStringList texts;
        const QObject receiver;
        connect(&_g_sysMsg, &SysMsg::onSysMsg, &receiver, [&](const QString& text) { texts.append(text); });
        {
            std::vector<std::jthread> threads;
            for (int t = 0; t < threadCount; ++t) {
                threads.emplace_back([t] {
                    for (int i = 0; i < postCount; ++i)
                        _g_sysMsg.postLog("%d", t);
                });
            }
        }
        TRY_COMPARE(texts.size(), threadCount * postCount);
        for (int t = 0; t < threadCount; ++t)
            QCOMPARE(texts.count(QString::number(t)), postCount);
    }

    void cleanup() { tarnis::setLanguage(QLocale(QLocale::English)); }

    void aMessageIsReadInEnglishAndTranslated()
    {
        const SystemMessage message { "Local Server[%1] Started", { QStringLiteral("/bin/server") } };
        QCOMPARE(message.translated(), "Local Server[/bin/server] Started");
        tarnis::setLanguage(QLocale(QLocale::German));
        QCOMPARE(message.translated(), "Lokaler Server [/bin/server] gestartet");
        QCOMPARE(message.text(), "Local Server[/bin/server] Started");
    }

    void anArgumentMayHoldAPlaceMarker()
    {
        const SystemMessage message { "Socket Error %1 %2",
            { QStringLiteral("0"), QStringLiteral("Connection (%1)") } };
        QCOMPARE(message.text(), "Socket Error 0 Connection (%1)");
        tarnis::setLanguage(QLocale(QLocale::German));
        QCOMPARE(message.translated(), "Verbindungsfehler 0: Connection (%1)");
    }

    void aPostReachesBothChannelsInOrder()
    {
        QStringList seen;
        const QObject receiver;
        connect(&_g_sysMsg, &SysMsg::onSysMsg, &receiver, [&](const QString& text) { seen << "plain " + text; });
        connect(&SystemMessages::instance(), &SystemMessages::posted, &receiver,
            [&](const SystemMessage& message) { seen << "parts " + message.arguments.join(u','); });
        SystemMessages::instance().post({ "Socket Error %1 %2", { QStringLiteral("1"), QStringLiteral("100%s") } });
        QCOMPARE(seen, (QStringList { "plain Socket Error 1 100%s", "parts 1,100%s" }));
    }

    void whatAHostPostsIsNotTheLibrarys()
    {
        int posted = 0;
        const QObject receiver;
        connect(&SystemMessages::instance(), &SystemMessages::posted, &receiver, [&] { ++posted; });
        _g_sysMsg << QStringLiteral("from a host");
        QCOMPARE(posted, 0);
    }

private:
    // The texts that _g_sysMsg emits while `action` runs.
    template <typename Action> static QStringList emitted(const Action& action)
    {
        QStringList texts;
        const QObject receiver;
        connect(&_g_sysMsg, &SysMsg::onSysMsg, &receiver, [&](const QString& text) { texts.append(text); });
        action();
        return texts;
    }
};

QTEST_MAIN(TestSysMsg)
#include "tst_sysmsg.moc"
