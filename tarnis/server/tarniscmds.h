// Commands with a routing prefix, and the two that parse their own reply.
#pragma once

#include <tarnis/server/tarniscmd.h>

#include <QByteArray>

class TarnisCmdH;

/// A command for all readout modules.
class TARNIS_EXPORT TarnisCmdBroadcast : public TarnisCmd {
public:
    explicit TarnisCmdBroadcast(const QString& cmd); ///< the text without its prefix
    /// "broadcast " and the command text.
    QString getCmdString() const override;
};

/// A command for the multicast family.
class TARNIS_EXPORT TarnisCmdMulticastOrsino : public TarnisCmd {
public:
    explicit TarnisCmdMulticastOrsino(const QString& cmd); ///< the text without its prefix
    /// "mc orsino " and the command text.
    QString getCmdString() const override;
};

/// A command for one module.
class TARNIS_EXPORT TarnisCmdUnicast : public TarnisCmd {
public:
    /// The module's id first, the command text second: the reverse of the order on the wire.
    TarnisCmdUnicast(const QString& id, const QString& cmd);
    /// "unicast ", the id, a space and the command text.
    QString getCmdString() const override;
    QString getUnicastId() const override;
    /// For subclasses that handle their own reply; does nothing here.
    virtual void onReply(const QByteArray& reply, TarnisCmdH* handler);

protected:
    QString m_unicastId; ///< the module's id
};

/// A command for one module, with an index for the caller that is not sent.
class TARNIS_EXPORT TarnisCmdUnicastWithIndex : public TarnisCmdUnicast {
public:
    /// As TarnisCmdUnicast; any index is stored unchanged.
    TarnisCmdUnicastWithIndex(const QString& id, const QString& cmd, int index);
    int getIndex() const; ///< as given

protected:
    int m_index; ///< the caller's
};

/// "stat", with the values of its last reply. Used on one thread once the session has delivered the reply.
class TARNIS_EXPORT TarnisCmdStat : public TarnisCmd {
public:
    TarnisCmdStat(); ///< no values yet
    /// Replaces the values by those of a reply: UTF-8 lines of name, colon, value. A null reply changes nothing, an
    /// empty one clears the values.
    virtual void onReply(const QByteArray& reply);
    /// The value of a name; a null string where the last reply has none.
    QString GetValue(const QString& name);
    /// The word after the first `prefix` + `suffix` in `text`, up to the next space or the end of the text; a line feed
    /// does not end it. Empty where they do not occur.
    QString getValue(const QString& text, const QString& prefix, const QString& suffix);

protected:
    QMap<QString, QString> m_values; ///< by name
};

/// "setting", with the values of its last reply. As TarnisCmdStat in everything else.
class TARNIS_EXPORT TarnisCmdSetting : public TarnisCmd {
public:
    TarnisCmdSetting(); ///< no values yet
    /// As TarnisCmdStat::onReply().
    virtual void onReply(const QByteArray& reply);
    /// The value of a name; a null string where the last reply has none.
    QString GetValue(const QString& name);
    /// As TarnisCmdStat::getValue().
    QString getValue(const QString& text, const QString& prefix, const QString& suffix);

protected:
    QMap<QString, QString> m_values; ///< by name
};
