#include "settings/settingsmodel.h"

#include <tarnis/server/tarnis.h>

#include <QFont>

#include <algorithm>
#include <utility>

namespace console {

namespace {

QString characterProblem(const QString& text, const QString& what)
{
    for (const QChar c : text) {
        if (c.isSpace())
            return SettingsModel::tr("%1 contains a space, which would end it in the request.").arg(what);
        if (c.unicode() < 0x20 || c.unicode() == 0x7f)
            return SettingsModel::tr("%1 contains a control character.").arg(what);
        if (c.unicode() > 0xff)
            return SettingsModel::tr("%1 contains a character outside Latin-1, which cannot be sent.").arg(what);
    }
    return {};
}

/// True for the name itself and with the number of a module behind it.
bool isOfModule(QStringView name, QStringView setting)
{
    const QStringView number = name.mid(setting.size());
    return name.startsWith(setting) && std::all_of(number.begin(), number.end(), [](QChar c) { return c.isDigit(); });
}

/// What a setting means, as far as the console uses it itself.
QString meaningOf(const QString& name)
{
    if (name == u"basepath")
        return SettingsModel::tr("Folder of the data on the server");
    if (name == u"inst")
        return SettingsModel::tr("Name of the instrument");
    if (isOfModule(name, u"ip"))
        return SettingsModel::tr("IP address of the readout module");
    if (isOfModule(name, u"tcp"))
        return SettingsModel::tr("Port at which the readout module delivers its data");
    if (isOfModule(name, u"bcp"))
        return SettingsModel::tr("Port at which the readout module accepts control commands");
    return SettingsModel::tr("A setting of the server: %1").arg(name);
}

} // namespace

QString settingProblem(const QString& name, const QString& value)
{
    if (name.isEmpty())
        return SettingsModel::tr("A setting needs a name.");
    if (name.contains(u':'))
        return SettingsModel::tr("The name contains a colon, which would end it in the request.");
    if (value.contains(u':'))
        return SettingsModel::tr("The value contains a colon, which changes its meaning for the server.");
    const QString problem = characterProblem(name, SettingsModel::tr("The name"));
    return problem.isEmpty() ? characterProblem(value, SettingsModel::tr("The value")) : problem;
}

SettingsModel::SettingsModel(Tarnis& server, QObject* parent)
    : QAbstractTableModel(parent)
    , m_server(server)
    , m_names(server.CopySettings().keys())
{
}

int SettingsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_names.size());
}

int SettingsModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QString SettingsModel::localValue(const QString& name) const
{
    return m_server.GetSettingValue(name, QString());
}

bool SettingsModel::isChanged(const QString& name) const
{
    const auto onServer = m_onServer.constFind(name);
    return onServer == m_onServer.constEnd() || *onServer != localValue(name);
}

QVariant SettingsModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const QString& name = m_names.at(index.row());
    const auto onServer = m_onServer.constFind(name);
    const bool isOnServer = onServer != m_onServer.constEnd();
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        if (index.column() == Name)
            return name;
        if (index.column() == Value)
            return localValue(name);
        return isOnServer ? *onServer : QString();
    case Qt::FontRole:
        if (isChanged(name) && index.column() != OnServer) {
            QFont font;
            font.setBold(true);
            return font;
        }
        return {};
    case Qt::ToolTipRole:
        if (!isOnServer)
            return tr("This setting was not read from the server yet, or does not exist there.");
        if (isChanged(name))
            return tr("Changed here. The server has \u201c%1\u201d.").arg(*onServer);
        return index.column() == Name ? meaningOf(name) : QVariant(index.data().toString());
    case Qt::AccessibleDescriptionRole:
        return isChanged(name) ? tr("changed") : tr("as on the server");
    case ChangedRole:
        return isChanged(name);
    default:
        return {};
    }
}

QVariant SettingsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    // The tool tip shows what a narrow column elides.
    if (orientation != Qt::Horizontal || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
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
    if (role != Qt::EditRole || !checkIndex(index, CheckIndexOption::IndexIsValid) || index.column() != Value)
        return false;
    const QString& name = m_names.at(index.row());
    const QString text = value.toString().trimmed();
    if (text == localValue(name))
        return true;
    if (!store(name, text))
        return false;
    Q_EMIT dataChanged(this->index(index.row(), 0), this->index(index.row(), ColumnCount - 1));
    Q_EMIT edited();
    return true;
}

bool SettingsModel::store(const QString& name, const QString& value)
{
    if (const QString problem = settingProblem(name, value); !problem.isEmpty()) {
        Q_EMIT refused(problem);
        return false;
    }
    if (!m_server.SetSettingValue(name, value)) {
        Q_EMIT refused(
            tr("\u201c%1\u201d is not a valid value for \u201c%2\u201d: it must be an integer.").arg(value, name));
        return false;
    }
    return true;
}

void SettingsModel::setServerValues(const QMap<QString, QString>& values)
{
    for (const QString& name : std::exchange(m_sending, {}))
        m_sent.insert(name, localValue(name));
    m_sent.removeIf([&values](const auto& sent) { return values.value(sent.key()) != sent.value(); });
    follow(values, changedNames());
}

int SettingsModel::setFreshServerValues(const QMap<QString, QString>& values)
{
    m_sending.clear();
    QStringList kept = changedNames();
    const qsizetype edited = kept.size();
    for (auto sent = m_sent.cbegin(); sent != m_sent.cend(); ++sent) {
        const bool isGone = values.value(sent.key()) != sent.value();
        if (isGone && localValue(sent.key()) == sent.value() && !kept.contains(sent.key()))
            kept.append(sent.key());
    }
    follow(values, kept);
    return int(kept.size() - edited);
}

void SettingsModel::noteSending(const QStringList& names)
{
    m_sending += names;
}

void SettingsModel::forgetSent()
{
    m_sending.clear();
    m_sent.clear();
}

/// Updates the values of all rows except the kept ones.
void SettingsModel::follow(const QMap<QString, QString>& values, const QStringList& kept)
{
    for (const QString& name : std::as_const(m_names)) {
        if (!values.contains(name) && !kept.contains(name))
            m_server.GetSettings().remove(name);
    }
    m_onServer = values;
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        if (!kept.contains(value.key()))
            m_server.SetSettingValue(value.key(), value.value());
    }
    reload();
}

bool SettingsModel::add(const QString& name, const QString& value)
{
    if (!store(name, value))
        return false;
    reload();
    return true;
}

bool SettingsModel::isRemovable(int row) const
{
    return row >= 0 && row < m_names.size() && !m_onServer.contains(m_names.at(row));
}

void SettingsModel::remove(int row)
{
    if (row < 0 || row >= m_names.size())
        return;
    m_server.GetSettings().remove(m_names.at(row));
    reload();
}

void SettingsModel::takeServerValues()
{
    for (const QString& name : changedNames()) {
        const auto onServer = m_onServer.constFind(name);
        if (onServer == m_onServer.constEnd())
            m_server.GetSettings().remove(name);
        else
            m_server.SetSettingValue(name, *onServer);
    }
    reload();
}

void SettingsModel::reload()
{
    const QStringList names = m_server.CopySettings().keys();
    if (names == m_names) {
        if (!names.isEmpty())
            Q_EMIT dataChanged(index(0, 0), index(int(names.size()) - 1, ColumnCount - 1));
    } else {
        beginResetModel();
        m_names = names;
        endResetModel();
    }
    Q_EMIT edited();
}

QStringList SettingsModel::changedNames() const
{
    QStringList names;
    for (const QString& name : m_names) {
        if (isChanged(name))
            names.append(name);
    }
    return names;
}

} // namespace console
