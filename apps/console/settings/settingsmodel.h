// The manager's settings as an editable table, beside the server's values at the last request.
#pragma once

#include <QAbstractTableModel>
#include <QMap>
#include <QStringList>

class Tarnis;

namespace console {

/// Why `value` cannot be sent to the server as the value of `name`, as a text for users; empty if it can. Settings are
/// sent as name:value pairs separated by spaces, in Latin-1, without escaping.
QString settingProblem(const QString& name, const QString& value);

/// One row per setting, sorted by name. Values are stored in the manager at once, but not sent. The console shows
/// the manager's settings; a host without a manager uses tarnis::SettingsModel. GUI thread.
class SettingsModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Name, Value, OnServer, ColumnCount };
    /// True for a row whose value differs from the server's.
    static constexpr int ChangedRole = Qt::UserRole;

    SettingsModel(Tarnis& server, QObject* parent);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// Stores a value in the manager. For a value that cannot be sent or that the manager refuses: returns false, emits
    /// `refused`, and keeps the previous value.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    /// Sets the server's current values. Unedited rows are updated; edited ones keep their value.
    void setServerValues(const QMap<QString, QString>& values);
    /// As above for a restarted server: settings that were sent before and are now missing also keep their value.
    /// Returns their number.
    int setFreshServerValues(const QMap<QString, QString>& values);
    /// These settings are being sent; if the next setServerValues() contains them, they count as sent.
    void noteSending(const QStringList& names);
    /// Another server is in use: nothing was sent to it.
    void forgetSent();
    /// Stores a new or existing setting as setData() does.
    bool add(const QString& name, const QString& value);
    /// True for a setting that exists only locally. Others would reappear with the next reading.
    bool isRemovable(int row) const;
    /// Removes the setting locally; the server keeps it.
    void remove(int row);
    /// Resets all values to the server's; removes settings that the server does not have.
    void takeServerValues();
    /// Reads the manager's settings again, after others have changed them.
    void reload();

    QStringList changedNames() const;
    int rowOf(const QString& name) const { return int(m_names.indexOf(name)); }

Q_SIGNALS:
    void refused(const QString& why);
    /// Emitted after any change of values or rows.
    void edited();

protected:
    QString localValue(const QString& name) const;
    bool isChanged(const QString& name) const;
    bool store(const QString& name, const QString& value);
    void follow(const QMap<QString, QString>& values, const QStringList& kept);

    Tarnis& m_server;
    QStringList m_names; ///< ascending, the rows
    QMap<QString, QString> m_onServer;
    QStringList m_sending; ///< being sent to the server
    QMap<QString, QString> m_sent; ///< settings sent by the user that the server had at the last request
};

} // namespace console
