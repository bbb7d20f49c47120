/// @file
/// A command, which a caller passes to a TarnisSession, and the two parsers that turn a reply's text into maps. The
/// caller's thread writes a command before it is sent, the session's thread while it is handled. After that it is only
/// read.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QList>
#include <QMap>
#include <QSharedPointer>
#include <QString>

/// The text of the request, the caller's name for it, and how the session reads the reply. Created with `new` by the
/// sender; TarnisSession::send() takes ownership.
class TARNIS_EXPORT TarnisCmd {
public:
    QString m_cmdName; ///< the caller's name, by which a handler of `result` identifies the request
    QString m_cmd; ///< command text without routing prefix and line end; empty: nothing is sent, the reply is empty
    bool m_bUser1 = false; ///< a flag for the caller; the library never reads it
    bool m_bUser2 = false; ///< another one
    QString m_replyText; ///< the text after a binary reply's payload; null for a text reply
    int m_afterSleep = AFTER_SLEEP_DEFAULT; ///< pause of the session, in ms, after it has delivered the result
    bool m_bBinary = false; ///< the reply has the binary form
    bool m_bProgress = false; ///< pieces of a text reply are emitted by TarnisSession::read as they arrive

    static const int AFTER_SLEEP_DEFAULT = 20; ///< ms

    /// Uses the text unchanged; an empty text is allowed.
    explicit TarnisCmd(const QString& cmd);
    virtual ~TarnisCmd();
    TarnisCmd(const TarnisCmd&) = delete;
    TarnisCmd& operator=(const TarnisCmd&) = delete;

    /// The request without its line end, routing prefix included. A session calls it once, when it is about to send the
    /// command.
    virtual QString getCmdString() const;
    /// The module that the command is addressed to; empty for commands without an addressee.
    virtual QString getUnicastId() const;

    /// Cuts a reply into sections. A line that begins with "--" starts a section; its key is the line without any "--",
    /// untrimmed. Sections of one key are joined in order; lines before the first key, under an empty key, and keys
    /// without lines are ignored. `out` is cleared first.
    static void devideByKey(const QString& text, QMap<QString, QList<QString>>& out);
    /// Reads lines of the form name, colon, value; the value may contain further colons. One leading and all trailing
    /// white-space characters of both are removed. Lines without a name or colon are ignored, a later line replaces an
    /// earlier one of the same name. `out` is cleared first.
    static void makeNameValueMap(const QList<QString>& lines, QMap<QString, QString>& out);
};

/// The form in which a command crosses threads. The last holder destroys the command.
using PTarnisCmd = QSharedPointer<TarnisCmd>;
