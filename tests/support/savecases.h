// Locations where a file can and cannot be saved, for the tests of all saves.
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <optional>

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnis::testing {

/// A folder on a separate full disk of 8 KiB, filled by a file. Needs the permission to mount.
class FullDisk {
public:
    FullDisk()
        : m_isMounted(::mount("tmpfs", path("").toLocal8Bit().constData(), "tmpfs", 0, "size=8k") == 0)
    {
        if (!m_isMounted)
            return;
        QFile old(path("old"));
        QFile filler(path("filler"));
        if (!old.open(QIODevice::WriteOnly) || old.write("old") != 3 || !old.flush()
            || !filler.open(QIODevice::WriteOnly) || filler.write(QByteArray(4096, 'x')) != 4096)
            qFatal("cannot fill the disk");
    }
    ~FullDisk()
    {
        if (m_isMounted)
            ::umount2(path("").toLocal8Bit().constData(), MNT_DETACH);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

    bool isMounted() const { return m_isMounted; }
    QString path(const QString& name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
    bool m_isMounted;
};

/// The kind of failure.
enum class SaveFailure { None, FullDevice, FullDisk, ReadOnlyFolder, VanishedFolder, SlashInName, FolderInPlace };

/// The data rows of a test that saves in each location: `failure`, and a part of the expected error. `impossible` is a
/// location that the file chooser of the save does not accept.
inline void addSaveFailures(SaveFailure impossible = SaveFailure::None)
{
    QTest::addColumn<SaveFailure>("failure");
    QTest::addColumn<QString>("cause");
    QTest::newRow("no failure") << SaveFailure::None << QString();
    QTest::newRow("/dev/full") << SaveFailure::FullDevice << "no space is left";
    QTest::newRow("full disk") << SaveFailure::FullDisk << "no space is left";
    QTest::newRow("read-only folder") << SaveFailure::ReadOnlyFolder << "permission denied";
    QTest::newRow("vanished folder") << SaveFailure::VanishedFolder << "does not exist";
    if (impossible != SaveFailure::SlashInName)
        QTest::newRow("slash in the name") << SaveFailure::SlashInName << "does not exist";
    if (impossible != SaveFailure::FolderInPlace)
        QTest::newRow("a folder of that name") << SaveFailure::FolderInPlace << "it is a folder";
}

/// One such location, with an older file in it if possible.
class SavePlace {
public:
    /// `suffix` with its dot.
    SavePlace(SaveFailure failure, const QString& suffix)
        : m_failure(failure)
    {
        switch (failure) {
        case SaveFailure::None:
        case SaveFailure::ReadOnlyFolder:
            m_path = m_folder.filePath("data" + suffix);
            writeOld();
            break;
        case SaveFailure::FullDevice:
            m_path = m_folder.filePath("data" + suffix);
            if (!QFile::link("/dev/full", m_path))
                qFatal("no link");
            break;
        case SaveFailure::FullDisk:
            m_disk = std::make_unique<FullDisk>();
            m_path = m_disk->path("old" + suffix);
            if (m_disk->isMounted() && !QFile::rename(m_disk->path("old"), m_path))
                qFatal("no old file");
            break;
        case SaveFailure::VanishedFolder:
            QDir(m_folder.path()).mkdir("gone");
            m_path = m_folder.filePath("gone/data" + suffix);
            break;
        case SaveFailure::SlashInName:
            m_path = m_folder.filePath("run 1/2" + suffix);
            break;
        case SaveFailure::FolderInPlace:
            m_path = m_folder.filePath("data" + suffix);
            break;
        }
    }
    ~SavePlace()
    {
        if (m_failure == SaveFailure::ReadOnlyFolder && m_isRoot && ::seteuid(0) != 0)
            qFatal("cannot get the privileges back");
    }
    SavePlace(const SavePlace&) = delete;
    SavePlace& operator=(const SavePlace&) = delete;

    /// False if the test has no permission to create the location.
    bool isThere() const { return !m_disk || m_disk->isMounted(); }
    const QString& path() const { return m_path; }

    /// Starts the failure: call it when the file has been chosen.
    void begin()
    {
        if (m_failure == SaveFailure::VanishedFolder)
            QDir(m_folder.filePath("gone")).removeRecursively();
        else if (m_failure == SaveFailure::FolderInPlace)
            QDir(m_folder.path()).mkdir(QFileInfo(m_path).fileName());
        else if (m_failure == SaveFailure::ReadOnlyFolder)
            takeRightsAway();
    }

    /// True if the previous files are unchanged and there are no others.
    bool isUntouched() const
    {
        const QFileInfo info(m_path);
        const QDir folder(info.path());
        const QStringList names =
            folder.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
        switch (m_failure) {
        case SaveFailure::None:
            return false;
        case SaveFailure::ReadOnlyFolder:
            return names.size() == 1 && content() == "old";
        case SaveFailure::FullDisk:
            return names.size() == 2 && content() == "old";
        case SaveFailure::FullDevice:
            return names.size() == 1 && info.isSymLink();
        case SaveFailure::VanishedFolder:
        case SaveFailure::SlashInName:
            return !folder.exists();
        case SaveFailure::FolderInPlace:
            return names.size() == 1 && info.isDir();
        }
        return false;
    }
    QByteArray content() const
    {
        QFile file(m_path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    void writeOld() const
    {
        QFile file(m_path);
        if (!file.open(QIODevice::WriteOnly) || file.write("old") != 3)
            qFatal("cannot write");
    }
    /// Root may write everywhere, so the process becomes another user, who may read the folder and its file.
    void takeRightsAway() const
    {
        const QByteArray folder = m_folder.path().toLocal8Bit();
        const QByteArray file = m_path.toLocal8Bit();
        if (::chmod(file.constData(), 0444) != 0 || ::chmod(folder.constData(), 0555) != 0
            || (m_isRoot && ::seteuid(65534) != 0))
            qFatal("cannot give up the privileges");
    }

    QTemporaryDir m_folder;
    std::unique_ptr<FullDisk> m_disk;
    SaveFailure m_failure;
    QString m_path;
    const bool m_isRoot = ::geteuid() == 0;
};

} // namespace tarnis::testing
