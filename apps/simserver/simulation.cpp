#include "simulation.h"

#include "text.h"

#include <tarnis/foundation/log.h>

#include <QDate>

namespace simserver {

namespace {

/// Has the form prefix, six digits, underscore, date, by which hosts recognise run directories.
QString runDirectoryName(const SettingValues& values, const QDate& date)
{
    return values.inst + QStringLiteral("%1").arg(values.run, 6, 10, QLatin1Char('0'))
        + date.toString(QStringLiteral("_yyyyMMdd"));
}

QByteArray runText(const Acquisition& acquisition, const Settings& settings)
{
    QString text = QStringLiteral("run: %1\nevents: %2\nrejected: %3\nlive time: %4\nreal time: %5\n")
                       .arg(acquisition.run())
                       .arg(acquisition.events())
                       .arg(acquisition.rejected())
                       .arg(numberText(acquisition.liveTime()), numberText(acquisition.realTime()));
    for (const Settings::Pair& pair : settings.all()) {
        if (pair.key != QStringLiteral("run"))
            text += pair.key + QStringLiteral(": ") + pair.value + QLatin1Char('\n');
    }
    return text.toUtf8();
}

/// A spectrum in the .spe text format.
QByteArray speText(const Histogram1D& histogram, const Acquisition& acquisition)
{
    QByteArray text = "$SPEC_ID:\r\n" + histogram.name.toUtf8() + " of run " + QByteArray::number(acquisition.run())
        + "\r\n$MEAS_TIM:\r\n" + QByteArray::number(qRound64(acquisition.liveTime())) + ' '
        + QByteArray::number(qRound64(acquisition.realTime())) + "\r\n$DATA:\r\n0 "
        + QByteArray::number(histogram.axis.bins - 1) + "\r\n";
    for (const double count : histogram.counts)
        text += QByteArray::number(count, 'f', 0).rightJustified(8) + "\r\n";
    return text;
}

} // namespace

Simulation::Simulation(const Settings& settings, const QString& root, const QString& savePath)
    : m_settings(settings)
    , m_acquisition(settings.values())
    , m_files(root)
    , m_savePath(savePath)
    , m_saveName(savePath)
{
    if (savePath.isEmpty()) {
        m_saveName = QStringLiteral("/simserver.settings");
        m_savePath = m_files.localPath(m_saveName);
    }
}

QString Simulation::changeSettings(const QList<Settings::Pair>& pairs)
{
    const Settings::Context context { .running = m_acquisition.isRunning(),
        .isDirectory = [this](const QString& path) { return m_files.isDirectory(path); } };
    QString error = m_settings.change(pairs, context);
    if (error.isEmpty())
        m_acquisition.configure(m_settings.values());
    return error;
}

QString Simulation::saveSettings() const
{
    return m_settings.save(m_savePath);
}

QString Simulation::start()
{
    const SettingValues& values = m_settings.values();
    if (m_acquisition.isRunning())
        return QStringLiteral("run %1 is under way").arg(m_acquisition.run());
    QString directory;
    if (values.record) {
        directory = cleanServerPath(runDirectoryName(values, QDate::currentDate()), values.basePath);
        const QString error = m_files.makeDirectory(directory);
        if (!error.isEmpty())
            return QStringLiteral("cannot make the run directory '%1': %2").arg(directory, error);
    }
    m_runDirectory = directory;
    m_acquisition.start(values.run);
    m_settings.setRun(values.run == Settings::maxRun ? 0 : values.run + 1);
    return {};
}

QString Simulation::stop()
{
    if (!m_acquisition.isRunning())
        return QStringLiteral("no run is under way");
    m_acquisition.stop();
    return record();
}

void Simulation::advance(double seconds, const std::function<bool()>& mayGoOn)
{
    if (!m_acquisition.isRunning())
        return;
    m_acquisition.advance(seconds, mayGoOn);
    if (m_acquisition.isRunning())
        return;
    LOG_INFO("run %d has reached its preset: %llu events", m_acquisition.run(),
        static_cast<unsigned long long>(m_acquisition.events()));
    const QString error = record();
    if (!error.isEmpty())
        LOG_ERR("%s", error.toUtf8().constData());
}

QString Simulation::record() const
{
    if (m_runDirectory.isEmpty())
        return {};
    const Histogram1D& total = *m_acquisition.histograms().find1D(QStringLiteral("total"));
    QString error = m_files.write(m_runDirectory + QStringLiteral("/run.txt"), runText(m_acquisition, m_settings));
    if (error.isEmpty())
        error = m_files.write(m_runDirectory + QStringLiteral("/total.spe"), speText(total, m_acquisition));
    return error.isEmpty()
        ? error
        : QStringLiteral("the run has stopped, but '%1' is not complete: %2").arg(m_runDirectory, error);
}

} // namespace simserver
