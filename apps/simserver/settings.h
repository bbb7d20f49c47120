// The server's settings: names, accepted values, and their file. Users of the settings read values().
#pragma once

#include <QList>
#include <QMap>
#include <QString>

#include <functional>

namespace simserver {

struct SettingValues {
    QString inst = QStringLiteral("SIM"); ///< first part of a run directory's name
    QString basePath = QStringLiteral("/"); ///< the server's current directory, as a client path
    int run = 1; ///< number of the next run
    double rate = 1000.0; ///< events per second of live time, all modules together
    int modules = 8;
    quint64 seed = 1;
    qint64 maxEvents = 0; ///< a run ends after this number of events; 0: no limit
    double maxTime = 0.0; ///< a run ends after this number of live seconds; 0: no limit
    int peaks = 6;
    double background = 0.5; ///< fraction of the events
    bool record = false; ///< a run writes a directory below the base path
    QMap<QString, QString> kept; ///< addresses of readout modules and "user." settings: only stored and reported
};

class Settings {
public:
    struct Pair {
        QString key;
        QString value;
    };
    struct Context {
        bool running = false; ///< refuses changes that are not possible during a run
        std::function<bool(const QString&)> isDirectory; ///< for the server's files; not set: any base path is accepted
    };

    static constexpr int maxModules = 256;
    static constexpr double maxRate = 1e7;
    static constexpr int maxRun = 999999;

    Settings();

    const SettingValues& values() const { return m_values; }
    /// Sets all pairs in order, or none. Returns the error of the first invalid one, or an empty text.
    QString change(const QList<Pair>& pairs, const Context& context);
    /// The number of the next run, after one has started.
    void setRun(int run) { m_values.run = run; }

    /// Every setting with its value as text, in the order of help, then the stored ones by name.
    QList<Pair> all() const;
    /// A line for each setting: name, range, meaning.
    static QString help();

    /// Writes one "name: value" per line. Returns an error text, or an empty text.
    QString save(const QString& path) const;
    /// Reads a file of save() and applies all of its settings, or none.
    QString load(const QString& path, const Context& context);

    /// Parses `key:value` words. A word without a colon continues the previous value, so that a value may contain
    /// spaces. A first word without a colon is an error.
    static QString parsePairs(const QString& text, QList<Pair>& pairs);

private:
    SettingValues m_values;
};

} // namespace simserver
