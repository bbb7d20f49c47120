/// @file
/// The settings of a server as a table: the values here beside those on the server.
#pragma once

#include <tarnis/client/client.h>
#include <tarnis/tarnis_export.h>

#include <QAbstractTableModel>
#include <QMap>
#include <QString>
#include <QStringList>

#include <memory>

namespace tarnis {

/// One row for each setting, by name. Values are edited here, by setData() or setValue(); send() sends those that
/// differ from the server's, each as a request of its own, so that a refusal belongs to one name. Lives on the client's
/// thread.
///
///     auto* settings = new tarnis::SettingsModel(*server->client("control"), this);
///     tableView->setModel(settings);
///     settings->refresh();
class TARNIS_EXPORT SettingsModel : public QAbstractTableModel {
    Q_OBJECT
public:
    /// The columns of the table.
    enum Column {
        Name, ///< of the setting
        Value, ///< here; editable
        OnServer, ///< as of the last refresh(); empty for a setting that the server does not have
        ColumnCount ///< number of columns
    };
    /// What the rows tell besides their texts.
    enum Role {
        ChangedRole = Qt::UserRole, ///< bool: the value here differs from the server's
        RefusalRole, ///< QString: why the server refused the value; empty if it did not. Also the tool tip, escaped
    };

    /// Without rows until the first refresh() or setValue(). The client may be destroyed before the model: refresh()
    /// and send() then fail.
    explicit SettingsModel(Client& client, QObject* parent = nullptr);
    ~SettingsModel() override; ///< requests under way go on, their replies are dropped

    int rowCount(const QModelIndex& parent = {}) const override; ///< 0 below an index
    int columnCount(const QModelIndex& parent = {}) const override; ///< 0 below an index
    QVariant data(const QModelIndex& index, int role) const override; ///< texts, ChangedRole, RefusalRole
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override; ///< translated
    Qt::ItemFlags flags(const QModelIndex& index) const override; ///< the column Value is editable
    /// As setValue(). False, after rejected(), for a value that cannot be sent.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    /// Requests the server's settings, at most 1 MiB of text. Values that were not edited here follow them; edited ones
    /// stay. Ends with refreshed() or failed().
    void refresh();
    /// Sends every changed value, then refreshes. Ends with sent() or failed(); refused() comes before. Does nothing
    /// while a send is under way.
    void send();
    bool isSending() const; ///< between send() and its end

    /// Stores a value here; a new name adds a row. Spaces at its ends are dropped. False, after rejected(), for a name
    /// or value that cannot be sent.
    bool setValue(const QString& name, const QString& value);
    /// Puts the values here back to the server's, and drops settings that it does not have.
    void discardChanges();

    QStringList names() const; ///< ascending; row i is the i-th
    QString value(const QString& name) const; ///< here; null for an unknown name
    QString serverValue(const QString& name) const; ///< as of the last refresh(); null if the server has none
    QStringList changedNames() const; ///< those that send() would send
    QString refusal(const QString& name) const; ///< as RefusalRole

    /// Why "name:value" cannot go to a server, as a text for users; empty if it can. A setting is sent in Latin-1
    /// without any escapes.
    static QString problem(const QString& name, const QString& value);

Q_SIGNALS:
    /// A value was not stored, see problem().
    void rejected(const QString& name, const QString& reason);
    /// The server has refused a value. It stays here, changed.
    void refused(const QString& name, const QString& reason);
    /// A send has ended: so many were accepted, so many refused.
    void sent(int accepted, int refused);
    /// The values of the server are the current ones.
    void refreshed();
    /// A refresh or a send did not get through: no connection, time-out. What was not answered is still changed.
    void failed(const QString& reason);

private:
    class TARNIS_NO_EXPORT Private;
    std::unique_ptr<Private> d;
};

} // namespace tarnis
