/// @file
/// The settings of a server as a table of local and server values.
#pragma once

#include <tarnis/client/client.h>
#include <tarnis/tarnis_export.h>

#include <QAbstractTableModel>
#include <QMap>
#include <QString>
#include <QStringList>

#include <memory>

namespace tarnis {

/// One row for each setting, sorted by name. Local values are edited by setData() or setValue(). send() sends those
/// that differ from the server's, each as a separate request, so that a refusal refers to one name. Lives on the
/// client's thread.
///
///     auto* settings = new tarnis::SettingsModel(*server->client("control"), this);
///     tableView->setModel(settings);
///     settings->refresh();
class TARNIS_EXPORT SettingsModel : public QAbstractTableModel {
    Q_OBJECT
public:
    /// The columns of the table.
    enum Column {
        Name, ///< name of the setting
        Value, ///< here; editable
        OnServer, ///< value at the last refresh(); empty for a setting that the server does not have
        ColumnCount ///< number of columns
    };
    /// Additional data of the rows.
    enum Role {
        ChangedRole = Qt::UserRole, ///< bool: the local value differs from the server's
        RefusalRole, ///< QString: why the server refused the value; empty if it did not. Also the tool tip, escaped
    };

    /// Empty until the first refresh() or setValue(). The client may be destroyed before the model: refresh() and
    /// send() then fail.
    explicit SettingsModel(Client& client, QObject* parent = nullptr);
    ~SettingsModel() override; ///< requests under way continue, their replies are dropped

    int rowCount(const QModelIndex& parent = {}) const override; ///< 0 below an index
    int columnCount(const QModelIndex& parent = {}) const override; ///< 0 below an index
    QVariant data(const QModelIndex& index, int role) const override; ///< texts, ChangedRole, RefusalRole
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override; ///< translated
    Qt::ItemFlags flags(const QModelIndex& index) const override; ///< the column Value is editable
    /// As setValue(). False, after invalidValue(), for a value that cannot be sent.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    /// Requests the server's settings, at most 1 MiB of text. Local values that were not edited are updated; edited
    /// ones are kept. Ends with refreshed() or failed().
    void refresh();
    /// Sends every changed value, then refreshes. Ends with sent() or failed(); refused() is emitted before that. Does
    /// nothing while a send is under way.
    void send();
    bool isSending() const; ///< between send() and its end

    /// Sets a local value; a new name adds a row. Leading and trailing spaces are removed. False, after invalidValue(),
    /// for a name or value that cannot be sent.
    bool setValue(const QString& name, const QString& value);
    /// Resets the local values to the server's, and removes settings that it does not have.
    void discardChanges();

    QStringList names() const; ///< ascending; row i is the i-th
    QString value(const QString& name) const; ///< local value; null for an unknown name
    QString serverValue(const QString& name) const; ///< value at the last refresh(); null if the server has none
    QStringList changedNames() const; ///< the names that send() would send
    QString refusal(const QString& name) const; ///< as RefusalRole

    /// Why "name:value" cannot be sent to a server, as a text for users; empty if it can. A setting is sent in Latin-1
    /// without any escapes.
    static QString problem(const QString& name, const QString& value);

Q_SIGNALS:
    /// A value was not stored, see problem().
    void invalidValue(const QString& name, const QString& reason);
    /// The server has refused a value. The local value stays changed.
    void refused(const QString& name, const QString& reason);
    /// A send has ended, with the numbers of accepted and refused values.
    void sent(int accepted, int refused);
    /// The server's values have been updated.
    void refreshed();
    /// A refresh or send failed: no connection, or timeout. Unanswered values are still changed.
    void failed(const QString& reason);

private:
    class TARNIS_NO_EXPORT Private;
    std::unique_ptr<Private> d;
};

} // namespace tarnis
