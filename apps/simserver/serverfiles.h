// The part of the file system that is visible to clients: everything below one root, which is "/" for them. No path or
// symbolic link can leave the root.
#pragma once

#include <QByteArray>
#include <QString>

#include <filesystem>

namespace simserver {

class ServerFiles {
public:
    static constexpr int maxEntries = 200000;

    /// `root` must be an existing directory.
    explicit ServerFiles(const QString& root);

    struct Listing {
        QByteArray entries; ///< one name per line, sorted by bytes; directories end with "/"
        QString error; ///< empty on success
    };
    /// The entries of `directory`. Omits names that begin with a dot or contain a line feed.
    Listing list(const QString& directory) const;

    struct Content {
        QByteArray bytes;
        QString error; ///< empty on success
    };
    /// Reads a complete file of at most `limit` bytes.
    Content read(const QString& path, qint64 limit) const;

    bool isDirectory(const QString& path) const;
    /// Writes a complete file, replacing an old one only when everything is on disk. Returns an error text, or an empty
    /// text.
    QString write(const QString& path, const QByteArray& content) const;
    /// Creates one directory; it is an error if the name exists.
    QString makeDirectory(const QString& path) const;
    /// Converts a path of the server to a local path, which is always textually below the root.
    QString localPath(const QString& path) const;

private:
    /// The real path of an existing entry. `error` is set if it does not exist or is outside of the root.
    std::filesystem::path realPath(const QString& path, QString& error) const;
    /// The real path of an entry that need not exist, in an existing directory. `error` refers to that directory.
    std::filesystem::path newPath(const QString& path, QString& error) const;
    bool isInside(const std::filesystem::path& real) const;

    std::filesystem::path m_root; ///< without symbolic links
};

} // namespace simserver
