// Sample files for a server that was started without a root.
#pragma once

#include <QString>

namespace simserver {

/// Fills an empty directory with folders, configuration files and run directories, including names with spaces, quotes
/// and umlauts. Returns an error text, or an empty text.
QString makeSamples(const QString& directory);

} // namespace simserver
