// The manager's settings as an editable table, beside the values that the server had when it was last asked.
#pragma once

#include <QAbstractTableModel>
#include <QMap>
#include <QStringList>

class Tarnis;

namespace console {

/// Why `value` cannot go to the server as the value of `name`, in words; empty if it can. Settings go as name:value
/// pairs between blanks, in Latin-1, without any escaping.
QString settingProblem(const QString& name, const QString& value);

/// One row per setting, by name. The values are the manager's own and go there at once; nothing is sent. GUI thread.
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
    /// Stores a value in the manager. A value that cannot be sent or that the manager refuses: false, `refused` tells
    /// why, and the value before stays.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    /// Takes what the server has now. Rows that were not edited follow; edited ones keep their value.
    void setServerValues(const QMap<QString, QString>& values);
    /// The same for a server that has restarted: what was sent to the previous one and is gone keeps its value too.
    /// Returns how many settings that are.
    int setFreshServerValues(const QMap<QString, QString>& values);
    /// These go to the server now; if the next setServerValues() brings them back they count as sent.
    void noteSending(const QStringList& names);
    /// Another server is in use: nothing was sent to it.
    void forgetSent();
    /// Stores a new or existing setting as setData() does.
    bool add(const QString& name, const QString& value);
    /// True for a setting that exists here alone. Another would come back with the next reading.
    bool isRemovable(int row) const;
    /// Forgets the setting here; the server keeps it.
    void remove(int row);
    /// Puts every value back to the server's; settings that the server does not have go.
    void takeServerValues();
    /// Reads the manager's settings again, after others have changed them.
    void reload();

    QStringList changedNames() const;
    int rowOf(const QString& name) const { return int(m_names.indexOf(name)); }

Q_SIGNALS:
    void refused(const QString& why);
    /// After any change of values or rows.
    void edited();

protected:
    QString localValue(const QString& name) const;
    bool isChanged(const QString& name) const;
    bool store(const QString& name, const QString& value);
    void follow(const QMap<QString, QString>& values, const QStringList& kept);

    Tarnis& m_server;
    QStringList m_names; ///< ascending, the rows
    QMap<QString, QString> m_onServer;
    QStringList m_sending; ///< on their way to the server
    QMap<QString, QString> m_sent; ///< what the user sent and the server still had when it was last asked
};

} // namespace console
