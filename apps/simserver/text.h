// Small text functions that several parts of the server share.
#pragma once

#include <QString>

namespace simserver {

/// The shortest text that gives the number again.
QString numberText(double number);

/// What a client sent, for a message: at most 60 characters, control characters as "?".
QString shown(const QString& text);

/// A path of the server's files without ".", ".." and doubled slashes: it begins with "/" and ends with one only as the
/// root itself. A relative path starts at `base`; ".." does not leave the root.
QString cleanServerPath(const QString& path, const QString& base);

/// Takes a pair of double quotes off and the backslashes before double quotes inside. Other text stays as it is.
QString unquoted(const QString& text);

} // namespace simserver
