#include "tarnis/foundation/trace_p.h"

#include "tarnis/foundation/threadid_p.h"

#include <QTest>

namespace {

QString lastText;
QString lastCategory;

void collect(QtMsgType, const QMessageLogContext& context, const QString& text)
{
    lastText = text;
    lastCategory = QString::fromLatin1(context.category);
}

/// Collects messages while it exists.
class Collector {
public:
    Collector()
        : m_previous(qInstallMessageHandler(collect))
    {
        lastText.clear();
    }
    ~Collector() { qInstallMessageHandler(m_previous); }
    Collector(const Collector&) = delete;
    Collector& operator=(const Collector&) = delete;

private:
    QtMessageHandler m_previous;
};

template <tarnis::TraceCategoryName name> QString nameOf()
{
    return QString::fromLatin1(tarnis::traceCategory<name>().categoryName());
}

} // namespace

class TestTrace : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QLoggingCategory::setFilterRules(QString()); }
    void writesFileLineThreadAndText()
    {
        const Collector collector;
        const int line = __LINE__ + 1;
        TARNIS_TRACE(QStringLiteral("\"quoted\" 100%"));
        QCOMPARE(lastText,
            QStringLiteral("tst_trace.cpp : %1 %2 | \"quoted\" 100%")
                .arg(line)
                .arg(tarnis::currentThreadNumber(), 0, 16));
    }
    void namesTheCategoryByTheFolder()
    {
        using tarnis::traceCategoryName;
        QCOMPARE(nameOf<traceCategoryName("/home/a/src/tarnis/server/tarnis.cpp")>(), QString("tarnis.server"));
        QCOMPARE(nameOf<traceCategoryName("../../tarnis/plots/math/ticks.cpp")>(), QString("tarnis.plots"));
        QCOMPARE(nameOf<traceCategoryName("/srv/tarnis/tarnis/foundation/log.cpp")>(), QString("tarnis.foundation"));
        QCOMPARE(nameOf<traceCategoryName("/usr/src/main.cpp")>(), QString("tarnis"));
        QCOMPARE(nameOf<traceCategoryName("tarnis/main.cpp")>(), QString("tarnis"));
    }
    void writesToItsCategory()
    {
        const Collector collector;
        tarnis::trace(tarnis::traceCategory<tarnis::traceCategoryName("tarnis/server/a.cpp")>(), "a.cpp", 1, "text");
        QCOMPARE(lastCategory, QString("tarnis.server"));
    }
    void leavesTheHostsMessagesAloneWhenSilenced()
    {
        QLoggingCategory::setFilterRules(QStringLiteral("tarnis*.debug=false"));
        const Collector collector;
        bool isEvaluated = false;
        TARNIS_TRACE([&] {
            isEvaluated = true;
            return QString("text");
        }());
        QCOMPARE(lastText, QString());
        QVERIFY(!isEvaluated);
        qDebug("the host's");
        QCOMPARE(lastText, QString("the host's"));
    }
};

QTEST_APPLESS_MAIN(TestTrace)
#include "tst_trace.moc"
