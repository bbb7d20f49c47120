#include "serverfiles.h"

#include "text.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace simserver {

namespace {

QString systemText(const std::error_code& code)
{
    return QString::fromStdString(code.message());
}

} // namespace

ServerFiles::ServerFiles(const QString& root)
    : m_root(QFile::encodeName(QFileInfo(root).canonicalFilePath()).toStdString())
{
}

ServerFiles::Listing ServerFiles::list(const QString& directory) const
{
    Listing listing;
    const fs::path real = realPath(directory, listing.error);
    if (!listing.error.isEmpty())
        return listing;
    std::error_code code;
    fs::directory_iterator entry(real, code);
    std::vector<std::string> names;
    for (; !code && entry != fs::directory_iterator(); entry.increment(code)) {
        std::string name = entry->path().filename().native();
        if (name.starts_with('.') || name.find('\n') != std::string::npos)
            continue;
        if (names.size() == maxEntries) {
            listing.error = QStringLiteral("more than %1 entries").arg(maxEntries);
            return listing;
        }
        std::error_code ignored; // a dangling link is not a directory
        if (entry->is_directory(ignored))
            name += '/';
        names.push_back(std::move(name));
    }
    if (code) {
        listing.error = systemText(code);
        return listing;
    }
    std::sort(names.begin(), names.end());
    for (const std::string& name : names)
        listing.entries.append(name.data(), static_cast<qsizetype>(name.size())).append('\n');
    return listing;
}

ServerFiles::Content ServerFiles::read(const QString& path, qint64 limit) const
{
    Content content;
    const fs::path real = realPath(path, content.error);
    if (!content.error.isEmpty())
        return content;
    std::error_code code;
    if (!fs::is_regular_file(real, code)) {
        content.error = QStringLiteral("not an ordinary file");
        return content;
    }
    QFile file(QFile::decodeName(QByteArray::fromStdString(real.native())));
    if (!file.open(QIODevice::ReadOnly)) {
        content.error = file.errorString();
        return content;
    }
    content.bytes = file.read(limit + 1);
    if (content.bytes.size() > limit)
        content = { {}, QStringLiteral("larger than %1 bytes").arg(limit) };
    return content;
}

bool ServerFiles::isDirectory(const QString& path) const
{
    QString error;
    const fs::path real = realPath(path, error);
    std::error_code code;
    return error.isEmpty() && fs::is_directory(real, code);
}

QString ServerFiles::write(const QString& path, const QByteArray& content) const
{
    QString error;
    const fs::path real = newPath(path, error);
    if (!error.isEmpty())
        return error;
    std::error_code code;
    const fs::file_status status = fs::symlink_status(real, code);
    if (fs::exists(status) && !fs::is_regular_file(status))
        return QStringLiteral("not an ordinary file");
    QSaveFile file(QFile::decodeName(QByteArray::fromStdString(real.native())));
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    file.write(content);
    // commit() alone does not detect a full disk while writing the last bytes.
    return file.flush() && file.commit() ? QString() : file.errorString();
}

QString ServerFiles::makeDirectory(const QString& path) const
{
    QString error;
    const fs::path real = newPath(path, error);
    if (!error.isEmpty())
        return error;
    std::error_code code;
    if (fs::create_directory(real, code))
        return {};
    return code ? systemText(code) : QStringLiteral("it exists");
}

QString ServerFiles::localPath(const QString& path) const
{
    return QFile::decodeName(QByteArray::fromStdString(m_root.native())) + cleanServerPath(path, QStringLiteral("/"));
}

fs::path ServerFiles::realPath(const QString& path, QString& error) const
{
    const QString relative = cleanServerPath(path, QStringLiteral("/")).mid(1);
    std::error_code code;
    fs::path real = fs::canonical(m_root / QFile::encodeName(relative).toStdString(), code);
    if (code)
        error = systemText(code);
    else if (!isInside(real))
        error = QStringLiteral("it lies outside of the root");
    return real;
}

fs::path ServerFiles::newPath(const QString& path, QString& error) const
{
    const QString clean = cleanServerPath(path, QStringLiteral("/"));
    const qsizetype slash = clean.lastIndexOf(QLatin1Char('/'));
    const fs::path directory = realPath(clean.left(slash), error);
    return directory / QFile::encodeName(clean.mid(slash + 1)).toStdString();
}

bool ServerFiles::isInside(const fs::path& real) const
{
    const auto [rootEnd, ignored] = std::mismatch(m_root.begin(), m_root.end(), real.begin(), real.end());
    return rootEnd == m_root.end();
}

} // namespace simserver
