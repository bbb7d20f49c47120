// The simulated server without its connections: acquisition, settings, files and fault. Commands operate on it.
#pragma once

#include "acquisition.h"
#include "faults.h"
#include "serverfiles.h"
#include "settings.h"

#include <QString>

#include <functional>

namespace simserver {

/// Status of the connections.
struct ServerFacts {
    int port = 0;
    int clients = 0;
    quint64 requests = 0;
    double upSeconds = 0.0;
};

class Simulation {
public:
    /// `root` must be an existing directory; `savePath` is the local file of savesetting, empty for simserver.settings
    /// in the root.
    Simulation(const Settings& settings, const QString& root, const QString& savePath);

    /// Each returns the reason of a refusal, or an empty text.
    QString changeSettings(const QList<Settings::Pair>& pairs);
    QString saveSettings() const;
    QString start();
    QString stop();

    void clear() { m_acquisition.clear(); }
    void setSpectrum(const Spectrum& spectrum) { m_acquisition.setSpectrum(spectrum); }
    /// Advances the time. A run that is ended by a preset is recorded.
    void advance(double seconds, const std::function<bool()>& mayGoOn);

    const Acquisition& acquisition() const { return m_acquisition; }
    std::vector<Module>& modules() { return m_acquisition.modules(); }
    const Settings& settings() const { return m_settings; }
    const ServerFiles& files() const { return m_files; }
    FaultSwitch& fault() { return m_fault; }
    const QString& runDirectory() const { return m_runDirectory; } ///< empty if the run writes none
    const QString& saveName() const { return m_saveName; } ///< name of the file of savesetting in messages

    /// Set by the owner of the connections.
    std::function<ServerFacts()> facts = [] { return ServerFacts(); };

private:
    QString record() const;

    Settings m_settings;
    Acquisition m_acquisition;
    ServerFiles m_files;
    FaultSwitch m_fault;
    QString m_savePath;
    QString m_saveName;
    QString m_runDirectory;
};

} // namespace simserver
