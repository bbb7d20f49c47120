#include "tarnis/foundation/systemmessages.h"

#include "tarnis/foundation/sysmsg.h"
#include "tarnis/foundation/translation.h"

#include <QTest>

using tarnis::SystemMessage;
using tarnis::SystemMessages;

class TestSystemMessages : public QObject {
    Q_OBJECT

private Q_SLOTS:
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
};

QTEST_MAIN(TestSystemMessages)
#include "tst_systemmessages.moc"
