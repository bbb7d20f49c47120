// QSaveFile is not used: in Qt 6.4 its commit() does not report a failed flush, and it refuses devices and pipes.
#include "tarnis/foundation/files.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <algorithm>
#include <cerrno>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnis {

namespace {

/// The context of the texts in the catalogues.
struct Texts {
    Q_DECLARE_TR_FUNCTIONS(tarnis::Files)
};

/// The text for a failed call. `folder` is the destination folder.
QString causeOf(int code, const QString& folder = {})
{
    switch (code) {
    case ENOSPC:
        return Texts::tr("no space is left on the device: free some or choose another folder");
    case EDQUOT:
        return Texts::tr("the disk quota is used up: free some space or choose another folder");
    case EFBIG:
        return Texts::tr("the file would be larger than this file system allows");
    case EACCES:
    case EPERM:
        return Texts::tr("permission denied: choose another file or folder");
    case EROFS:
        return Texts::tr("the file system is read-only: choose another folder");
    case ENOENT:
        if (!folder.isEmpty() && !QFileInfo(folder).isDir()) {
            return Texts::tr("the folder '%1' does not exist: create it or choose another one").arg(folder);
        }
        return Texts::tr("there is no such file");
    case ENOTDIR:
        return Texts::tr("'%1' is not a folder").arg(folder);
    case EISDIR:
        return Texts::tr("it is a folder: give the name of a file");
    case EPIPE:
        return Texts::tr("the reader has closed the pipe");
    case ENAMETOOLONG:
        return Texts::tr("the name is too long: choose a shorter one");
    case ELOOP:
        return Texts::tr("the symbolic link leads nowhere: choose another file");
    default:
        return qt_error_string(code);
    }
}

/// A descriptor that closes itself.
class Descriptor {
public:
    explicit Descriptor(int number)
        : m_number(number)
    {
    }
    ~Descriptor()
    {
        if (m_number >= 0)
            ::close(m_number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    bool isOpen() const { return m_number >= 0; }
    int number() const { return m_number; }
    /// 0, or a write error that the file system reports only on close.
    int close()
    {
        const int result = ::close(m_number);
        m_number = -1;
        return result == 0 ? 0 : errno;
    }

private:
    int m_number;
};

int openFile(const QString& path, int flags)
{
    return ::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC, 0666); // NOLINT(*-vararg): POSIX
}

/// 0, or the code of the error.
int writeAll(int descriptor, QByteArrayView content)
{
    while (!content.isEmpty()) {
        const ssize_t written = ::write(descriptor, content.data(), static_cast<std::size_t>(content.size()));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return written == 0 ? ENOSPC : errno;
        content = content.sliced(written);
    }
    return 0;
}

/// 0, or the code of the error. Devices and some file systems have nothing to synchronise, which is no error.
int synchronise(int descriptor)
{
    if (::fsync(descriptor) == 0 || errno == EINVAL || errno == ENOSYS || errno == ENOTSUP)
        return 0;
    return errno;
}

/// The file that a chain of symbolic links leads to, which need not exist; nothing if they form a loop.
std::optional<QString> linkTarget(QString path)
{
    constexpr int maxLinks = 40; // as the kernel allows
    for (int i = 0; i < maxLinks; ++i) {
        const QFileInfo info(path);
        if (!info.isSymLink())
            return path;
        path = info.symLinkTarget();
    }
    return std::nullopt;
}

/// A new file with a unique name in `folder`, removed by the destructor unless it has been renamed.
class TemporaryFile {
public:
    explicit TemporaryFile(const QString& folder)
        : m_path(freeName(folder))
        , m_file(openFile(m_path, O_WRONLY | O_CREAT | O_EXCL))
        , m_error(m_file.isOpen() ? 0 : errno)
        , m_exists(m_file.isOpen())
    {
    }
    ~TemporaryFile()
    {
        if (m_exists)
            ::unlink(QFile::encodeName(m_path).constData());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    /// 0, or the code of the first error.
    int replace(const QString& path, QByteArrayView content)
    {
        if (m_error == 0)
            m_error = writeAll(m_file.number(), content);
        if (m_error == 0)
            keepPermissions(path);
        if (m_error == 0)
            m_error = synchronise(m_file.number());
        if (m_error == 0)
            m_error = m_file.close();
        if (m_error == 0 && ::rename(QFile::encodeName(m_path).constData(), QFile::encodeName(path).constData()) != 0)
            m_error = errno;
        m_exists = m_exists && m_error != 0;
        return m_error;
    }

private:
    /// The name is random, so that two programs that save at the same time do not collide.
    static QString freeName(const QString& folder)
    {
        return QStringLiteral("%1/.tarnis-%2")
            .arg(folder, QString::number(QRandomGenerator::system()->generate64(), 36));
    }

    /// A file system without permissions or owners ignores this.
    void keepPermissions(const QString& path) const
    {
        struct stat previous { };
        if (::stat(QFile::encodeName(path).constData(), &previous) != 0)
            return;
        [[maybe_unused]] const int owned = ::fchown(m_file.number(), previous.st_uid, previous.st_gid);
        [[maybe_unused]] const int kept = ::fchmod(m_file.number(), previous.st_mode & 07777U);
    }

    QString m_path;
    Descriptor m_file;
    int m_error;
    bool m_exists;
};

int writeDirectly(const QString& path, QByteArrayView content)
{
    Descriptor file(openFile(path, O_WRONLY | O_NOCTTY));
    if (!file.isOpen())
        return errno;
    const int error = writeAll(file.number(), content);
    return error != 0 ? error : file.close();
}

bool isSpecial(const QString& path)
{
    struct stat info { };
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 && !S_ISREG(info.st_mode) && !S_ISDIR(info.st_mode);
}

/// Reads to the end, at most `maxBytes` + 1 bytes; the extra byte shows the caller that the file is too large.
int readAll(int descriptor, qsizetype maxBytes, QByteArray& bytes)
{
    constexpr qsizetype chunk = qsizetype { 1 } << 16;
    struct stat info { };
    const bool ordinary = ::fstat(descriptor, &info) == 0 && S_ISREG(info.st_mode);
    qsizetype expected = ordinary ? static_cast<qsizetype>(std::min<off_t>(info.st_size, maxBytes)) + 1 : chunk;
    qsizetype filled = 0;
    while (filled <= maxBytes) {
        bytes.resize(std::min(std::max(expected, filled + chunk), maxBytes + 1));
        const ssize_t count =
            ::read(descriptor, bytes.data() + filled, static_cast<std::size_t>(bytes.size() - filled));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return errno;
        if (count == 0)
            break;
        filled += count;
        expected = filled * 2;
    }
    bytes.resize(filled);
    return 0;
}

} // namespace

QString writeFile(const QString& path, QByteArrayView content)
{
    // A descriptor's name in /dev/fd is a link to a pipe or terminal that has no path of its own.
    if (isSpecial(path)) {
        const int error = writeDirectly(path, content);
        return error == 0 ? QString() : causeOf(error);
    }
    const std::optional<QString> target = linkTarget(path);
    if (path.isEmpty() || !target)
        return causeOf(path.isEmpty() ? ENOENT : ELOOP);
    const QFileInfo info(*target);
    if (info.isDir())
        return causeOf(EISDIR);
    // rename() would replace a file that the user has made read-only.
    if (info.exists() && ::faccessat(AT_FDCWD, QFile::encodeName(*target).constData(), W_OK, AT_EACCESS) != 0)
        return causeOf(errno);
    const QString folder = info.path();
    const int error = TemporaryFile(folder).replace(*target, content);
    return error == 0 ? QString() : causeOf(error, folder);
}

QString writeDescriptor(int descriptor, QByteArrayView content)
{
    const int error = writeAll(descriptor, content);
    return error == 0 ? QString() : causeOf(error);
}

FileContent readFile(const QString& path, qsizetype maxBytes)
{
    const Descriptor file(openFile(path, O_RDONLY | O_NOCTTY));
    if (!file.isOpen())
        return { .bytes = {}, .error = causeOf(errno, QFileInfo(path).path()) };
    FileContent content;
    const int error = readAll(file.number(), maxBytes, content.bytes);
    if (error != 0)
        return { .bytes = {}, .error = causeOf(error, QFileInfo(path).path()) };
    if (content.bytes.size() > maxBytes) {
        return { .bytes = {}, .error = Texts::tr("it is larger than %1 bytes").arg(maxBytes) };
    }
    return content;
}

} // namespace tarnis
