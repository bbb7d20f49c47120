// The part of the file system that clients see: everything below one root, under paths that begin with "/" there. No
// path and no symbolic link leads out of the root.
#pragma once

#include <QByteArray>
#include <QString>

#include <filesystem>

namespace simserver {

class ServerFiles {
public:
    static constexpr int maxEntries = 200000;

    /// `root` is a directory that exists.
    explicit ServerFiles(const QString& root);

    struct Listing {
        QByteArray entries; ///< one name a line, sorted by bytes; directories end with "/"
        QString error; ///< empty on success
    };
    /// What `directory` holds. Names that begin with a dot or hold a line feed are left out.
    Listing list(const QString& directory) const;

    struct Content {
        QByteArray bytes;
        QString error; ///< empty on success
    };
    /// A whole file of at most `limit` bytes.
    Content read(const QString& path, qint64 limit) const;

    bool isDirectory(const QString& path) const;
    /// Writes a whole file, in place of an old one of that name only when everything is on disk. Returns an error in
    /// words, or an empty text.
    QString write(const QString& path, const QByteArray& content) const;
    /// Makes one directory; it is an error if there is something of that name.
    QString makeDirectory(const QString& path) const;
    /// Where a path of the server lies on this machine; whatever it is, it is below the root as text.
    QString localPath(const QString& path) const;

private:
    /// The real place of something that exists. `error` is set if it does not, or if it lies outside of the root.
    std::filesystem::path realPath(const QString& path, QString& error) const;
    bool isInside(const std::filesystem::path& real) const;

    std::filesystem::path m_root; ///< without symbolic links
};

} // namespace simserver
