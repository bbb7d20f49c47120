#include "tarnis/client/settingsmodel.h"

#include "tarnis/client/requestqueue_p.h"
#include "tarnis/server/tarniscmd.h"

#include <QPointer>

#include <functional>
#include <iterator>
#include <utility>

namespace tarnis {

namespace {

constexpr qsizetype maxToolTipChars = 1000;

QString characterProblem(const QString& text)
{
    for (const QChar character : text) {
        if (character.unicode() < 0x20 || character.unicode() == 0x7f)
            return SettingsModel::tr("A setting cannot contain control characters.");
        if (character.unicode() > 0xff)
            return SettingsModel::tr("\"%1\" is outside of Latin-1 and cannot be sent.").arg(character);
    }
    return {};
}

} // namespace

class TARNIS_NO_EXPORT SettingsModel::Private {
public:
    struct Setting {
        QString here;
        QString onServer; ///< null: the server has no such setting
        QString refusal;
        QString sent; ///< accepted since the last refresh; null otherwise
        bool isChanged() const { return onServer.isNull() || here != onServer; }
    };

    Private(SettingsModel& model, Client& modelClient)
        : q(model)
        , client(&modelClient)
    {
    }
    /// Calls `then` with the reply, unless the model has been destroyed.
    void request(const QString& text, const std::function<void(const Reply&)>& then);
    /// `endsSend`: the last request of send().
    void onSettings(const Reply& reply, bool endsSend);
    void follow(const QMap<QString, QString>& values);
    void onAnswer(const QString& name, const QString& value, const Reply& reply);
    void finishSending();
    void rowChanged(const QString& name);
    int rowOf(const QString& name) const { return int(std::distance(settings.begin(), settings.find(name))); }

    SettingsModel& q;
    QPointer<Client> client;
    QMap<QString, Setting> settings;
    bool isSending = false;
    qsizetype unanswered = 0;
    int accepted = 0;
    int refusals = 0;
    QString failure; ///< failure of the send under way
};

void SettingsModel::Private::request(const QString& text, const std::function<void(const Reply&)>& then)
{
    if (!client) {
        then({ .outcome = Reply::Outcome::Failed,
            .data = {},
            .binaryText = {},
            .reason = SettingsModel::tr("The connection to the server was closed."),
            .elapsed = {} });
        return;
    }
    RequestOptions options;
    options.maxSize = maxOwnReply;
    client->request(text, options).then([model = QPointer(&q), then](const Reply& reply) {
        if (model)
            then(reply);
    });
}

void SettingsModel::Private::onSettings(const Reply& reply, bool endsSend)
{
    const QPointer<SettingsModel> alive(&q);
    QString why = endsSend ? std::exchange(failure, QString()) : QString();
    if (reply.isOk()) {
        QMap<QString, QString> values;
        TarnisCmd::makeNameValueMap(reply.text().split(QLatin1Char('\n')), values);
        // The success line of the reply is not a setting.
        if (reply.text().startsWith(QLatin1String("OK:")))
            values.remove(QStringLiteral("OK"));
        follow(values);
        if (alive)
            Q_EMIT q.refreshed();
    } else if (why.isEmpty()) {
        why = reply.reason;
    }
    if (!alive)
        return;
    if (endsSend)
        isSending = false;
    if (!why.isEmpty())
        Q_EMIT q.failed(why);
    else if (endsSend)
        Q_EMIT q.sent(accepted, refusals);
}

void SettingsModel::Private::follow(const QMap<QString, QString>& values)
{
    q.beginResetModel();
    // A server may format an accepted value differently.
    const auto isEdited = [](const Setting& setting) {
        return setting.isChanged() && (setting.sent.isNull() || setting.here != setting.sent);
    };
    settings.removeIf([&](const std::pair<const QString&, Setting&>& entry) {
        return !isEdited(entry.second) && !values.contains(entry.first);
    });
    for (auto entry = settings.begin(); entry != settings.end(); ++entry) {
        Setting& setting = *entry;
        const bool keepsValue = isEdited(setting);
        setting.sent = QString();
        setting.onServer = values.value(entry.key());
        if (!keepsValue)
            setting.here = setting.onServer;
    }
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        // An empty value is different from a missing one.
        const QString text = value->isNull() ? QStringLiteral("") : *value;
        if (!settings.contains(value.key()))
            settings.insert(value.key(), { text, text, {}, {} });
        else if (value->isNull())
            settings[value.key()].onServer = text;
    }
    q.endResetModel();
}

void SettingsModel::Private::onAnswer(const QString& name, const QString& value, const Reply& reply)
{
    const QPointer<SettingsModel> alive(&q);
    --unanswered;
    const auto setting = settings.find(name);
    if (reply.isOk()) {
        ++accepted;
        if (setting != settings.end()) {
            setting->sent = value;
            setting->onServer = value;
            setting->refusal.clear();
        }
    } else if (reply.outcome == Reply::Outcome::Refused) {
        ++refusals;
        if (setting != settings.end())
            setting->refusal = reply.reason;
    } else if (failure.isEmpty()) {
        failure = reply.reason;
    }
    rowChanged(name);
    if (alive && reply.outcome == Reply::Outcome::Refused)
        Q_EMIT q.refused(name, reply.reason);
    if (alive && unanswered == 0)
        finishSending();
}

void SettingsModel::Private::finishSending()
{
    request(QStringLiteral("setting"), [this](const Reply& reply) { onSettings(reply, true); });
}

void SettingsModel::Private::rowChanged(const QString& name)
{
    if (settings.contains(name))
        Q_EMIT q.dataChanged(q.index(rowOf(name), 0), q.index(rowOf(name), ColumnCount - 1));
}

SettingsModel::SettingsModel(Client& client, QObject* parent)
    : QAbstractTableModel(parent)
    , d(std::make_unique<Private>(*this, client))
{
}

SettingsModel::~SettingsModel() = default;

int SettingsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(d->settings.size());
}

int SettingsModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant SettingsModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const auto entry = std::next(d->settings.cbegin(), index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return index.column() == Name ? entry.key() : index.column() == Value ? entry->here : entry->onServer;
    case Qt::ToolTipRole:
        // Tool tips detect markup, and this is a text from the server.
        return entry->refusal.isEmpty()
            ? QVariant()
            : QVariant(QStringLiteral("<qt>%1").arg(entry->refusal.left(maxToolTipChars).toHtmlEscaped()));
    case ChangedRole:
        return entry->isChanged();
    case RefusalRole:
        return entry->refusal;
    default:
        return {};
    }
}

QVariant SettingsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Name:
        return tr("Name");
    case Value:
        return tr("Value here");
    case OnServer:
        return tr("On the server");
    default:
        return {};
    }
}

Qt::ItemFlags SettingsModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    return index.column() == Value ? flags | Qt::ItemIsEditable : flags;
}

bool SettingsModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::EditRole || index.column() != Value || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return false;
    return setValue(std::next(d->settings.cbegin(), index.row()).key(), value.toString());
}

void SettingsModel::refresh()
{
    d->request(QStringLiteral("setting"), [this](const Reply& reply) { d->onSettings(reply, false); });
}

void SettingsModel::send()
{
    if (d->isSending)
        return;
    d->isSending = true;
    d->accepted = 0;
    d->refusals = 0;
    d->failure.clear();
    const QStringList changed = changedNames();
    d->unanswered = changed.size();
    if (changed.isEmpty()) {
        d->finishSending();
        return;
    }
    QMap<QString, QString> values;
    for (const QString& name : changed)
        values.insert(name, value(name));
    const QPointer<SettingsModel> alive(this);
    for (auto entry = values.cbegin(); entry != values.cend() && alive; ++entry) {
        d->request(QStringLiteral("setting %1:%2").arg(entry.key(), *entry),
            [this, name = entry.key(), text = *entry](const Reply& reply) { d->onAnswer(name, text, reply); });
    }
}

bool SettingsModel::isSending() const
{
    return d->isSending;
}

bool SettingsModel::setValue(const QString& name, const QString& value)
{
    const QString text = value.trimmed().isEmpty() ? QStringLiteral("") : value.trimmed();
    if (const QString why = problem(name, text); !why.isEmpty()) {
        Q_EMIT invalidValue(name, why);
        return false;
    }
    if (!d->settings.contains(name)) {
        const int row = int(std::distance(d->settings.begin(), d->settings.lowerBound(name)));
        beginInsertRows({}, row, row);
        d->settings.insert(name, { text, {}, {}, {} });
        endInsertRows();
        return true;
    }
    Private::Setting& setting = d->settings[name];
    if (setting.here != text) {
        setting.here = text;
        setting.refusal.clear();
        d->rowChanged(name);
    }
    return true;
}

void SettingsModel::discardChanges()
{
    beginResetModel();
    d->settings.removeIf([](const auto& entry) { return entry.value().onServer.isNull(); });
    for (Private::Setting& setting : d->settings) {
        setting.here = setting.onServer;
        setting.refusal.clear();
    }
    endResetModel();
}

QStringList SettingsModel::names() const
{
    return d->settings.keys();
}

QString SettingsModel::value(const QString& name) const
{
    return d->settings.value(name).here;
}

QString SettingsModel::serverValue(const QString& name) const
{
    return d->settings.value(name).onServer;
}

QStringList SettingsModel::changedNames() const
{
    QStringList names;
    for (auto entry = d->settings.cbegin(); entry != d->settings.cend(); ++entry) {
        if (entry->isChanged())
            names.append(entry.key());
    }
    return names;
}

QString SettingsModel::refusal(const QString& name) const
{
    return d->settings.value(name).refusal;
}

QString SettingsModel::problem(const QString& name, const QString& value)
{
    if (name.isEmpty() || name.contains(QLatin1Char(' ')))
        return tr("The name of a setting must be one word.");
    if (name.contains(QLatin1Char(':')) || value.contains(QLatin1Char(':')))
        return tr("A setting cannot contain a colon, which separates its name from its value.");
    if (value.contains(QLatin1String("  ")))
        return tr("The value contains several consecutive spaces, of which the server would keep one.");
    return characterProblem(name + value);
}

} // namespace tarnis
