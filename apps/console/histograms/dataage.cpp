#include "histograms/dataage.h"

#include "saves/savereports.h"
#include <tarnis/foundation/retranslator.h>

#include <QDateTime>
#include <QFont>
#include <QLabel>

namespace console {

namespace {

constexpr int lookMs = 500;

QString textOf(const QTime& time)
{
    return time.toString(u"HH:mm:ss");
}

} // namespace

DataAge::DataAge(QWidget& window, const std::function<bool()>& isExpected)
    : QObject(&window)
    , m_window(window)
    , m_label(new QLabel(&window))
    , m_isExpected(isExpected)
{
    m_label->setObjectName(QStringLiteral("dataAgeLabel"));
    m_label->setTextFormat(Qt::PlainText);
    m_label->setWordWrap(true);
    connect(&m_timer, &QTimer::timeout, this, &DataAge::check);
    m_timer.start(lookMs);
    showState(false);
}

void DataAge::answered()
{
    m_waiting.invalidate();
    check();
}

void DataAge::arrived()
{
    m_dataTime = QTime::currentTime();
    setDataTime(m_window, QDateTime::currentDateTime());
    answered();
}

void DataAge::check()
{
    if (!m_isExpected()) {
        m_waiting.invalidate();
    } else if (!m_waiting.isValid()) {
        m_waiting.start();
        m_waitingTime = QTime::currentTime();
    }
    showState(m_waiting.isValid() && m_waiting.elapsed() > m_limitMs);
}

void DataAge::showState(bool isLate)
{
    QFont font = m_label->font();
    if (font.bold() != isLate) {
        font.setBold(isLate);
        m_label->setFont(font);
    }
    const QTime data = m_dataTime;
    const auto dataText = [data] {
        return data.isValid() ? tr("Last data: %1.").arg(textOf(data)) : tr("No data yet.");
    };
    if (!isLate) {
        tarnis::setTranslatedText(*m_label, dataText);
        return;
    }
    tarnis::setTranslatedText(*m_label, [dataText, since = m_waitingTime, seconds = m_waiting.elapsed() / 1000] {
        return dataText() + u' '
            + tr("The server has not answered since %1 (%2 s). The window waits.").arg(textOf(since)).arg(seconds);
    });
}

} // namespace console
