// The manager's settings, readout addresses and base path. Operations call one another through the virtual slots, so
// that a subclass can intercept them.
#include "tarnis/server/tarnis.h"

#include "tarnis/foundation/log.h"

namespace {

constexpr int pairsPerLine = 5;

struct ReadoutKeys {
    QString ip;
    QString tcp;
    QString bcp;
};

ReadoutKeys readoutKeys()
{
    return { QStringLiteral("ip"), QStringLiteral("tcp"), QStringLiteral("bcp") };
}

ReadoutKeys readoutKeys(int index)
{
    return { QStringLiteral("ip%1").arg(index), QStringLiteral("tcp%1").arg(index),
        QStringLiteral("bcp%1").arg(index) };
}

bool readAddress(const Tarnis& manager, const ReadoutKeys& keys, QString& ip, unsigned int& tcp, unsigned int& bcp)
{
    bool tcpIsNumber = false;
    bool bcpIsNumber = false;
    ip = manager.GetSettingValue(keys.ip, QString());
    tcp = manager.GetSettingValue(keys.tcp, QString()).toUInt(&tcpIsNumber);
    bcp = manager.GetSettingValue(keys.bcp, QString()).toUInt(&bcpIsNumber);
    return tcpIsNumber && bcpIsNumber;
}

// The result of each store is ignored: a refused port is not stored, but the address text still shows it.
void storeAddress(Tarnis& manager, const ReadoutKeys& keys, const QString& ip, unsigned int tcp, unsigned int bcp)
{
    manager.SetSettingValue(keys.ip, ip);
    manager.SetSettingValue(keys.tcp, QString::number(tcp));
    manager.SetSettingValue(keys.bcp, QString::number(bcp));
}

QString readoutAddressText(const QString& ip, unsigned int tcp)
{
    return ip + QLatin1Char(':') + QString::number(tcp);
}

// "setting" lines of five pairs. A full line ends with its last pair, a shorter last line with a space.
QList<QString> settingLines(const QMap<QString, QString>& settings)
{
    QList<QString> lines;
    QString line;
    int pairs = 0;
    for (auto setting = settings.cbegin(); setting != settings.cend(); ++setting) {
        if (pairs == 0)
            line = QStringLiteral("setting ");
        line += setting.key() + QLatin1Char(':') + setting.value();
        if (++pairs == pairsPerLine) {
            lines.append(line);
            pairs = 0;
        } else {
            line += QLatin1Char(' ');
        }
    }
    if (pairs > 0)
        lines.append(line);
    return lines;
}

} // namespace

QString Tarnis::GetReadoutAddressText() const
{
    const QMutexLocker locker(&m_mutex);
    return m_readoutAddress;
}

QString Tarnis::GetStatValue(const QString& key) const
{
    const QMutexLocker locker(&m_mutex);
    return m_stats.value(key);
}

QString Tarnis::GetSettingValue(const QString& key, const QString& defaultValue) const
{
    const QMutexLocker locker(&m_mutex);
    return m_settings.value(key, defaultValue);
}

bool Tarnis::SetSettingValue(const QString& key, const QString& value)
{
    LOG_BLOCK("Tarnis::SetSettingValue, key[%s] value[%s]", qUtf8Printable(key), qUtf8Printable(value));
    const QMutexLocker locker(&m_mutex);
    const bool accepted = CheckSettingKey(key, value);
    if (accepted)
        m_settings[key] = value;
    return accepted;
}

bool Tarnis::CheckSettingKey(const QString& key, const QString& value) const
{
    LOG_BLOCK("Tarnis::CheckSettingKey(key[%s], value[%s])", qUtf8Printable(key), qUtf8Printable(value));
    bool accepted = true;
    // The indexed keys, "tcp1" and so on, are not checked.
    if (key == QLatin1String("tcp") || key == QLatin1String("bcp"))
        value.toInt(&accepted);
    if (!accepted)
        LOG_DBG("    return false");
    return accepted;
}

QMap<QString, QString>& Tarnis::GetSettings()
{
    return m_settings;
}

QMap<QString, QString> Tarnis::CopySettings() const
{
    const QMutexLocker locker(&m_mutex);
    return m_settings;
}

bool Tarnis::GetReadoutAddress(QString& ip, unsigned int& tcp, unsigned int& bcp) const
{
    try {
        return readAddress(*this, readoutKeys(), ip, tcp, bcp);
    } catch (...) {
        return false;
    }
}

bool Tarnis::GetReadoutAddress(int index, QString& ip, unsigned int& tcp, unsigned int& bcp) const
{
    try {
        return readAddress(*this, readoutKeys(index), ip, tcp, bcp);
    } catch (...) {
        return false;
    }
}

bool Tarnis::SetReadoutAddress(QString& ip, unsigned int tcp, unsigned int bcp)
{
    const QMutexLocker locker(&m_mutex);
    try {
        storeAddress(*this, readoutKeys(), ip, tcp, bcp);
        m_readoutAddress = readoutAddressText(ip, tcp);
        return true;
    } catch (...) {
        return false;
    }
}

bool Tarnis::SetReadoutAddress(int index, QString& ip, unsigned int tcp, unsigned int bcp)
{
    const QMutexLocker locker(&m_mutex);
    try {
        storeAddress(*this, readoutKeys(index), ip, tcp, bcp);
        m_readoutAddress = readoutAddressText(ip, tcp);
        return true;
    } catch (...) {
        return false;
    }
}

bool Tarnis::SetBasePath(const QString& path, bool bWithInst)
{
    LOG_BLOCK("SetBasePath");
    const QMutexLocker locker(&m_mutex);
    const SERVER_STATUS status = m_status;
    const QString command = bWithInst ? QLatin1String("setting inst:")
            + GetSettingValue(QStringLiteral("inst"), QString()) + QLatin1String(" basepath:") + path
                                      : QLatin1String("setting basepath:") + path;
    const bool send = status == SERVER_CONNECTED || status == READOUT_CONNECTED || status == READOUT_ERROR;
    if (send || status == IDLE)
        SetSettingValue(QStringLiteral("basepath"), path);
    if (send) {
        SendCmd(QStringLiteral("control"), QStringLiteral("settingBasePathCmd"), command, false);
        Q_EMIT onBasePathChange(path);
    }
    return false;
}

void Tarnis::AddCommand(const QString& line)
{
    const QMutexLocker locker(&m_mutex);
    m_commands.append(line);
}

int Tarnis::DownloadSettings(const QString& sessionId, bool bSave)
{
    LOG_BLOCK(
        "Tarnis::DownloadSettings(sessionId[%s], bSave[%s])", qUtf8Printable(sessionId), bSave ? "true" : "false");
    const QMutexLocker locker(&m_mutex);
    m_commands += settingLines(m_settings);
    int sent = 0;
    // By index: a subclass's SendCmd() may add lines, which are sent too.
    for (; sent < m_commands.size(); ++sent) {
        const QString line = m_commands.at(sent);
        SendCmd(sessionId, QStringLiteral("updateSettingCmd%1").arg(sent), line, false);
    }
    m_commands.clear();
    if (bSave)
        SendCmd(sessionId, QStringLiteral("savesettingCmd"), QStringLiteral("savesetting"), false);
    return sent;
}
