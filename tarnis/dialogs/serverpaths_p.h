// Requests, replies and ancestors of server folders for the path choosers. No widgets.
#pragma once

#include <QString>
#include <QStringList>

class TarnisCmd;

namespace tarnis {

/// A new command, to be passed to TarnisSession::send(), which takes ownership: `text` for the server, `name` for the
/// receiver of the reply.
TarnisCmd* browseCommand(const QString& text, const QString& name);

/// The request that lists `dir`, each double quote in it escaped by a backslash.
QString listRequest(const QString& dir);

/// True for a reply that reports success.
bool isGoodReply(const QString& reply);

/// The lines after the first one of a reply, including empty ones.
QStringList replyLines(const QString& reply);

/// The directories from the root to `dir`: "/a/b" returns "/", "/a", "/a/b". If `dir` ends with "/", the last one is
/// `dir` without it; for the root the list is "/". Empty for a path of more than 16384 characters.
QStringList ancestors(const QString& dir);

/// `dir` and `name` joined by "/"; none is added if `dir` ends with one.
QString joinedPath(const QString& dir, const QString& name);

/// `path` without the "/" characters at its end; "/" becomes empty.
QString withoutTrailingSlashes(const QString& path);

} // namespace tarnis
