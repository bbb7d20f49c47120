#include "settings.h"

#include "events.h"
#include "text.h"

#include <tarnis/foundation/log.h>

#include <QFile>
#include <QRegularExpression>
#include <QSaveFile>

#include <algorithm>
#include <array>
#include <cmath>

namespace simserver {

namespace {

constexpr int maxKept = 512;
constexpr qsizetype maxValueLength = 1024;
constexpr qint64 maxFileBytes = qint64 { 1 } << 20;

/// Reads and writes one setting. `set` returns an error, or an empty text.
struct Handler {
    const char* name;
    const char* range;
    const char* meaning;
    bool whileRunning;
    QString (*set)(SettingValues&, const QString&);
    QString (*get)(const SettingValues&);
};

QString setWhole(const QString& text, qint64 minimum, qint64 maximum, qint64& number)
{
    bool valid = false;
    const qint64 parsed = text.toLongLong(&valid);
    if (!valid || parsed < minimum || parsed > maximum)
        return QStringLiteral("a whole number from %1 to %2").arg(minimum).arg(maximum);
    number = parsed;
    return {};
}

QString setInt(const QString& text, int minimum, int maximum, int& number)
{
    qint64 parsed = number;
    QString wanted = setWhole(text, minimum, maximum, parsed);
    number = static_cast<int>(parsed);
    return wanted;
}

QString setReal(const QString& text, double minimum, double maximum, double& number)
{
    bool valid = false;
    const double parsed = text.toDouble(&valid);
    if (!valid || !(parsed >= minimum && parsed <= maximum))
        return QStringLiteral("a number from %1 to %2").arg(numberText(minimum), numberText(maximum));
    number = parsed;
    return {};
}

QString setRate(SettingValues& values, const QString& text)
{
    double rate = 0.0;
    const QString wanted = setReal(text, 0.0, Settings::maxRate, rate);
    // Below a thousandth the gaps could overflow.
    if (!wanted.isEmpty() || (rate != 0.0 && rate < 0.001))
        return QStringLiteral("0, or a number from 0.001 to %1").arg(numberText(Settings::maxRate));
    values.rate = rate;
    return {};
}

QString setSeed(SettingValues& values, const QString& text)
{
    bool valid = false;
    const quint64 seed = text.toULongLong(&valid);
    if (!valid || text.startsWith(QLatin1Char('-')))
        return QStringLiteral("a whole number from 0 to 18446744073709551615");
    values.seed = seed;
    return {};
}

QString setInst(SettingValues& values, const QString& text)
{
    static const QRegularExpression form(QStringLiteral("\\A[A-Za-z0-9._-]{0,32}\\z"));
    if (!form.match(text).hasMatch() || text.startsWith(QLatin1Char('.')))
        return QStringLiteral("up to 32 letters, digits, '_', '-' and '.', not beginning with '.'");
    values.inst = text.isEmpty() ? SettingValues().inst : text;
    return {};
}

QString setBasePath(SettingValues& values, const QString& text)
{
    if (text.isEmpty())
        return QStringLiteral("a directory");
    values.basePath = cleanServerPath(text, QStringLiteral("/"));
    return {};
}

QString setRecord(SettingValues& values, const QString& text)
{
    if (text != QStringLiteral("on") && text != QStringLiteral("off"))
        return QStringLiteral("on or off");
    values.record = text == QStringLiteral("on");
    return {};
}

const std::array<Handler, 11> handlers { {
    { "inst", "text", "first part of a run directory's name; empty puts back SIM", false, setInst,
        [](const SettingValues& v) { return v.inst; } },
    { "basepath", "directory", "where runs and uploads go, and what pwd answers", false, setBasePath,
        [](const SettingValues& v) { return v.basePath; } },
    { "run", "0..999999", "number of the next run", false,
        [](SettingValues& v, const QString& text) { return setInt(text, 0, Settings::maxRun, v.run); },
        [](const SettingValues& v) { return QString::number(v.run); } },
    { "rate", "0, 0.001..1e7", "events per second, all modules together", true, setRate,
        [](const SettingValues& v) { return numberText(v.rate); } },
    { "modules", "1..256", "detector modules; a change clears the histograms", false,
        [](SettingValues& v, const QString& text) { return setInt(text, 1, Settings::maxModules, v.modules); },
        [](const SettingValues& v) { return QString::number(v.modules); } },
    { "seed", "whole number", "with the run number it decides which events come", false, setSeed,
        [](const SettingValues& v) { return QString::number(v.seed); } },
    { "maxevents", "whole number", "a run stops by itself after so many events; 0: it does not", true,
        [](SettingValues& v, const QString& text) { return setWhole(text, 0, qint64 { 1 } << 53, v.maxEvents); },
        [](const SettingValues& v) { return QString::number(v.maxEvents); } },
    { "maxtime", "0..1e9", "a run stops by itself after so many live seconds; 0: it does not", true,
        [](SettingValues& v, const QString& text) { return setReal(text, 0.0, 1e9, v.maxTime); },
        [](const SettingValues& v) { return numberText(v.maxTime); } },
    { "peaks", "0..12", "peaks over the background", false,
        [](SettingValues& v, const QString& text) { return setInt(text, 0, EventModel::maxPeaks, v.peaks); },
        [](const SettingValues& v) { return QString::number(v.peaks); } },
    { "background", "0..1", "share of the events that belongs to no peak", false,
        [](SettingValues& v, const QString& text) { return setReal(text, 0.0, 1.0, v.background); },
        [](const SettingValues& v) { return numberText(v.background); } },
    { "record", "on|off", "a run leaves a directory with its numbers below the base path", false, setRecord,
        [](const SettingValues& v) { return v.record ? QStringLiteral("on") : QStringLiteral("off"); } },
} };

const Handler* findHandler(const QString& key)
{
    const auto found =
        std::find_if(handlers.begin(), handlers.end(), [&](const Handler& h) { return key == QLatin1String(h.name); });
    return found == handlers.end() ? nullptr : &*found;
}

/// Settings that are only stored: ip, tcp, bcp with or without an index, and names that begin with "user.".
QString setKept(SettingValues& values, const QString& key, const QString& value)
{
    static const QRegularExpression port(QStringLiteral("\\A(tcp|bcp)[0-9]{0,3}\\z"));
    static const QRegularExpression other(QStringLiteral("\\A(ip[0-9]{0,3}|user\\.[A-Za-z0-9._-]{1,60})\\z"));
    if (port.match(key).hasMatch()) {
        int number = 0;
        const QString wanted = setInt(value, 0, 65535, number);
        if (!wanted.isEmpty())
            return QStringLiteral("%1 must be %2").arg(key, wanted);
    } else if (!other.match(key).hasMatch()) {
        return QStringLiteral("unknown setting '%1'").arg(shown(key));
    }
    if (values.kept.size() >= maxKept && !values.kept.contains(key))
        return QStringLiteral("more than %1 settings").arg(maxKept);
    values.kept.insert(key, value);
    return {};
}

QString setOne(SettingValues& values, const Settings::Pair& pair, const Settings::Context& context)
{
    if (pair.value.size() > maxValueLength)
        return QStringLiteral("the value of '%1' is too long").arg(shown(pair.key));
    const Handler* const handler = findHandler(pair.key);
    if (handler == nullptr)
        return setKept(values, pair.key, pair.value);
    const QString before = handler->get(values);
    const QString wanted = handler->set(values, pair.value);
    if (!wanted.isEmpty())
        return QStringLiteral("%1 must be %2").arg(pair.key, wanted);
    if (context.running && !handler->whileRunning && handler->get(values) != before)
        return QStringLiteral("%1 cannot change during a run").arg(pair.key);
    if (handler->set == setBasePath && context.isDirectory && !context.isDirectory(values.basePath))
        return QStringLiteral("basepath '%1' is not a directory below the root").arg(shown(pair.value));
    return {};
}

} // namespace

Settings::Settings()
{
    m_values.kept = { { QStringLiteral("ip"), QStringLiteral("127.0.0.1") },
        { QStringLiteral("tcp"), QStringLiteral("5001") }, { QStringLiteral("bcp"), QStringLiteral("5002") } };
}

QString Settings::change(const QList<Pair>& pairs, const Context& context)
{
    SettingValues changed = m_values;
    for (const Pair& pair : pairs) {
        QString error = setOne(changed, pair, context);
        if (!error.isEmpty())
            return error;
    }
    m_values = std::move(changed);
    return {};
}

QList<Settings::Pair> Settings::all() const
{
    QList<Pair> pairs;
    for (const Handler& handler : handlers)
        pairs.append({ QString::fromLatin1(handler.name), handler.get(m_values) });
    for (auto it = m_values.kept.cbegin(); it != m_values.kept.cend(); ++it)
        pairs.append({ it.key(), it.value() });
    return pairs;
}

QString Settings::help()
{
    QString text;
    for (const Handler& handler : handlers)
        text += strprintf("  %-11s %-14s %s\n", handler.name, handler.range, handler.meaning);
    text += strprintf("  %-11s %-14s %s\n", "ip[N]", "text", "address of readout module N; only kept");
    text += strprintf("  %-11s %-14s %s\n", "tcp[N]", "0..65535", "its TCP port; only kept");
    text += strprintf("  %-11s %-14s %s\n", "bcp[N]", "0..65535", "its BCP port; only kept");
    text += strprintf("  %-11s %-14s %s\n", "user.NAME", "text", "anything that a host wants to keep here");
    return text;
}

QString Settings::save(const QString& path) const
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    QString text;
    for (const Pair& pair : all())
        text += pair.key + QStringLiteral(": ") + pair.value + QLatin1Char('\n');
    file.write(text.toUtf8());
    // commit() alone does not detect a full disk while writing the last bytes.
    return file.flush() && file.commit() ? QString() : file.errorString();
}

QString Settings::load(const QString& path, const Context& context)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    QList<Pair> pairs;
    int number = 0;
    for (const QString& line : QString::fromUtf8(file.read(maxFileBytes)).split(QLatin1Char('\n'))) {
        ++number;
        if (line.trimmed().isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        const qsizetype colon = line.indexOf(QLatin1Char(':'));
        if (colon < 1)
            return QStringLiteral("line %1 is not of the form name: value").arg(number);
        pairs.append({ line.left(colon).trimmed(), line.mid(colon + 1).trimmed() });
    }
    return change(pairs, context);
}

QString Settings::parsePairs(const QString& text, QList<Pair>& pairs)
{
    for (const QString& word : text.split(QLatin1Char(' '))) {
        const qsizetype colon = word.indexOf(QLatin1Char(':'));
        if (colon > 0)
            pairs.append({ word.left(colon), word.mid(colon + 1) });
        else if (!pairs.isEmpty())
            pairs.last().value += QLatin1Char(' ') + word;
        else if (!word.isEmpty())
            return QStringLiteral("'%1' is not of the form key:value").arg(shown(word));
    }
    for (Pair& pair : pairs)
        pair.value = pair.value.trimmed();
    return {};
}

} // namespace simserver
