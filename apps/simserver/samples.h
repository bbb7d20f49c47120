// Something to browse for a server that was started without a root of its own.
#pragma once

#include <QString>

namespace simserver {

/// Fills an empty directory with folders, configuration files and run directories, names with blanks, quotes and
/// umlauts among them. Returns an error in words, or an empty text.
QString makeSamples(const QString& directory);

} // namespace simserver
