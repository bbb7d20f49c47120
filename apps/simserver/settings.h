// The server's settings: their names, what each accepts, and their file. Plain values; who uses them reads values().
#pragma once

#include <QList>
#include <QMap>
#include <QString>

#include <functional>

namespace simserver {

struct SettingValues {
    QString inst = QStringLiteral("SIM"); ///< first part of a run directory's name
    QString basePath = QStringLiteral("/"); ///< the server's current directory, as clients see it
    int run = 1; ///< number of the next run
    double rate = 1000.0; ///< events per second of live time, all modules together
    int modules = 8;
    quint64 seed = 1;
    qint64 maxEvents = 0; ///< a run ends by itself after so many events; 0: no limit
    double maxTime = 0.0; ///< a run ends by itself after so many live seconds; 0: no limit
    int peaks = 6;
    double background = 0.5; ///< share of the events
    bool record = false; ///< a run leaves a directory below the base path
    QMap<QString, QString> kept; ///< addresses of readout modules and "user." settings: kept and told, no more
};

class Settings {
public:
    struct Pair {
        QString key;
        QString value;
    };
    struct Context {
        bool running = false; ///< refuses changes that a run cannot take
        std::function<bool(const QString&)> isDirectory; ///< of the server's files; not set: any base path is taken
    };

    static constexpr int maxModules = 256;
    static constexpr double maxRate = 1e7;
    static constexpr int maxRun = 999999;

    Settings();

    const SettingValues& values() const { return m_values; }
    /// Sets all pairs in order, or none. Returns what is wrong with the first bad one, or an empty text.
    QString change(const QList<Pair>& pairs, const Context& context);
    /// The number of the next run, after one has started.
    void setRun(int run) { m_values.run = run; }

    /// Every setting with its value as text, in the order of help, then the kept ones by name.
    QList<Pair> all() const;
    /// A line for each setting: name, range, meaning.
    static QString help();

    /// One "name: value" a line. Returns an error in words, or an empty text.
    QString save(const QString& path) const;
    /// Reads what save() wrote and changes the settings to it, or none of them.
    QString load(const QString& path, const Context& context);

    /// Takes `key:value` words apart. A word without a colon goes on with the value before it, so that a value may hold
    /// blanks. A first word without a colon is an error.
    static QString parsePairs(const QString& text, QList<Pair>& pairs);

private:
    SettingValues m_values;
};

} // namespace simserver
