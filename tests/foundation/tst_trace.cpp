#include "tarnis/foundation/trace_p.h"

#include "tarnis/foundation/threadid_p.h"

#include <QTest>

namespace {

QString lastText;

void collect(QtMsgType, const QMessageLogContext&, const QString& text)
{
    lastText = text;
}

} // namespace

class TestTrace : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void writesFileLineThreadAndText()
    {
        const QtMessageHandler previous = qInstallMessageHandler(collect);
        const int line = __LINE__ + 1;
        TARNIS_TRACE(QStringLiteral("\"quoted\" 100%"));
        qInstallMessageHandler(previous);
        QCOMPARE(lastText,
            QStringLiteral("tst_trace.cpp : %1 %2 | \"quoted\" 100%")
                .arg(line)
                .arg(tarnis::currentThreadNumber(), 0, 16));
    }
};

QTEST_APPLESS_MAIN(TestTrace)
#include "tst_trace.moc"
