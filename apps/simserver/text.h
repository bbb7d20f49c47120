// Text functions shared by several parts of the server.
#pragma once

#include <QString>

namespace simserver {

/// The shortest text that is read as the same number.
QString numberText(double number);

/// Text of a client for a message: at most 60 characters, control characters as "?".
QString shown(const QString& text);

/// A path of the server's files without ".", ".." and doubled slashes: it begins with "/" and ends with one only as the
/// root itself. A relative path starts at `base`; ".." does not leave the root.
QString cleanServerPath(const QString& path, const QString& base);

/// Removes a pair of double quotes and the backslashes before double quotes inside. Other text is unchanged.
QString unquoted(const QString& text);

} // namespace simserver
