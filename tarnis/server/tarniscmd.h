/// @file
/// A command: what a caller hands to a TarnisSession, and the two parsers that turn a reply's text into maps.
/// The caller's thread fills a command before it is sent, the session's thread while it is handled; afterwards it is
/// only read.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QList>
#include <QMap>
#include <QSharedPointer>
#include <QString>

/// The text that goes on the wire, the caller's name for it, and how the session reads the reply. Made with `new` by
/// the sender; TarnisSession::send() takes it over.
class TARNIS_EXPORT TarnisCmd {
public:
    QString m_cmdName; ///< the caller's name, by which a handler of `result` knows what was asked
    QString m_cmd; ///< command text without routing prefix and line end; empty: nothing is sent, the reply is empty
    bool m_bUser1 = false; ///< a mark of the caller's own; the library never reads it
    bool m_bUser2 = false; ///< another one
    QString m_replyText; ///< the text behind a binary reply's payload; null for a text reply
    int m_afterSleep = AFTER_SLEEP_DEFAULT; ///< ms that the session pauses after it has delivered the result
    bool m_bBinary = false; ///< the reply comes in the binary form
    bool m_bProgress = false; ///< pieces of a text reply go out through TarnisSession::read as they come

    static const int AFTER_SLEEP_DEFAULT = 20; ///< ms

    /// Takes the text as it stands; empty text is legal.
    explicit TarnisCmd(const QString& cmd);
    virtual ~TarnisCmd();
    TarnisCmd(const TarnisCmd&) = delete;
    TarnisCmd& operator=(const TarnisCmd&) = delete;

    /// The request without its line end, routing prefix included. A session asks once, when the command's turn comes.
    virtual QString getCmdString() const;
    /// The module that the command is addressed to; empty for commands without an addressee.
    virtual QString getUnicastId() const;

    /// Cuts a reply into sections. A line that begins with "--" opens one; its key is the line without any "--",
    /// untrimmed. Sections of one key are joined in order; lines before the first key, under an empty key, and keys
    /// without lines leave nothing. `out` is cleared first.
    static void devideByKey(const QString& text, QMap<QString, QList<QString>>& out);
    /// Reads lines of the form name, colon, value; the value may hold further colons. Both lose one white-space
    /// character in front and all at the end. Lines without a name or colon are passed over, a later line replaces an
    /// earlier one of the same name. `out` is cleared first.
    static void makeNameValueMap(const QList<QString>& lines, QMap<QString, QString>& out);
};

/// The form in which a command crosses threads. The last holder destroys the command.
using PTarnisCmd = QSharedPointer<TarnisCmd>;
