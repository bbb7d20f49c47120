// How the path choosers speak of the server's folders: requests, replies, ancestors. No widget.
#pragma once

#include <QString>
#include <QStringList>

class TarnisCmd;

namespace tarnis {

/// A new command, given up to a session by send(): `text` for the server, `name` for the receiver of the reply.
TarnisCmd* browseCommand(const QString& text, const QString& name);

/// The request that lists `dir`, each double quote in it escaped by a backslash.
QString listRequest(const QString& dir);

/// True for a reply that reports success.
bool isGoodReply(const QString& reply);

/// The lines behind the first one of a reply, empty ones included.
QStringList replyLines(const QString& reply);

/// The directories on the way to `dir`, the root first and `dir` itself last: "/a/b" gives "/", "/a", "/a/b". Where
/// `dir` ends with "/", the last is `dir` without it; the root alone is "/". A path of more than 16384
/// characters has none.
QStringList ancestors(const QString& dir);

/// `dir` and `name` with one "/" between them, none added where `dir` ends with one.
QString joinedPath(const QString& dir, const QString& name);

/// `path` without the "/" characters at its end; "/" becomes empty.
QString withoutTrailingSlashes(const QString& path);

} // namespace tarnis
