// Complete files: after a write there is either the new or the previous file, and every failure has a cause.
#include <tarnis/foundation/files.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <csignal>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QByteArray bytesOf(const QString& path)
{
    return tarnis::readFile(path).bytes;
}

/// Limits files to `bytes` while the object exists, to simulate a full device for any user.
class SizeLimit {
public:
    explicit SizeLimit(rlim_t bytes)
    {
        ::getrlimit(RLIMIT_FSIZE, &m_previous);
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit { .rlim_cur = bytes, .rlim_max = m_previous.rlim_max };
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~SizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_previous);
        std::signal(SIGXFSZ, m_handler);
    }
    SizeLimit(const SizeLimit&) = delete;
    SizeLimit& operator=(const SizeLimit&) = delete;

private:
    rlimit m_previous {};
    void (*m_handler)(int) = nullptr;
};

/// Root may write everywhere, so while the object exists, the process runs as another user, who owns the folder and its
/// files.
class WithoutPrivileges {
public:
    explicit WithoutPrivileges(const QString& folder)
    {
        if (!m_isRoot)
            return;
        own(folder);
        for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files))
            own(file.filePath());
        if (::seteuid(nobody) != 0)
            qFatal("cannot give up the privileges");
    }
    ~WithoutPrivileges()
    {
        if (m_isRoot && ::seteuid(0) != 0)
            qFatal("cannot get the privileges back");
    }
    WithoutPrivileges(const WithoutPrivileges&) = delete;
    WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;

private:
    static constexpr uid_t nobody = 65534;
    static void own(const QString& path)
    {
        if (::chown(path.toLocal8Bit().constData(), nobody, nobody) != 0)
            qFatal("cannot give a file away");
    }
    const bool m_isRoot = ::geteuid() == 0;
};

} // namespace

class TestFiles : public QObject {
    Q_OBJECT
private:
    QTemporaryDir m_folder;
    QString path(const QString& name) const { return m_folder.filePath(name); }
    /// Everything in the folder, hidden files too.
    QStringList names() const
    {
        return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

private Q_SLOTS:
    void init() { m_folder = QTemporaryDir(); }

    void writesAndReadsAnyBytes()
    {
        QByteArray content(300000, '\0');
        for (qsizetype i = 0; i < content.size(); ++i)
            content[i] = static_cast<char>(i * 7);
        QCOMPARE(tarnis::writeFile(path("a"), content), QString());
        QCOMPARE(bytesOf(path("a")), content);
        QCOMPARE(names(), QStringList { "a" });
    }

    void writesAnEmptyFile()
    {
        QCOMPARE(tarnis::writeFile(path("a"), "text"), QString());
        QCOMPARE(tarnis::writeFile(path("a"), {}), QString());
        QVERIFY(QFile::exists(path("a")));
        QCOMPARE(bytesOf(path("a")), QByteArray());
    }

    void keepsThePermissionsOfTheReplacedFile()
    {
        QCOMPARE(tarnis::writeFile(path("a"), "1"), QString());
        QCOMPARE(::chmod(path("a").toLocal8Bit().constData(), 0640), 0);
        QCOMPARE(tarnis::writeFile(path("a"), "2"), QString());
        struct stat info { };
        QCOMPARE(::stat(path("a").toLocal8Bit().constData(), &info), 0);
        QCOMPARE(info.st_mode & 0777U, 0640U);
    }

    void followsASymbolicLink()
    {
        QVERIFY(QDir(m_folder.path()).mkdir("sub"));
        QVERIFY(QFile::link("sub/real", path("link")));
        QCOMPARE(tarnis::writeFile(path("link"), "new"), QString());
        QVERIFY(QFileInfo(path("link")).isSymLink());
        QCOMPARE(bytesOf(path("sub/real")), QByteArray("new"));
    }

    void reportsALoopOfLinks()
    {
        QVERIFY(QFile::link(path("two"), path("one")));
        QVERIFY(QFile::link(path("one"), path("two")));
        QCOMPARE(tarnis::writeFile(path("one"), "x"), QString("the symbolic link leads nowhere: choose another file"));
    }

    void namesTheMissingFolder()
    {
        QCOMPARE(tarnis::writeFile(path("no/such/file"), "x"),
            QString("the folder '%1' does not exist: create it or choose another one").arg(path("no/such")));
    }

    void refusesAFolderAndAnEmptyName()
    {
        QCOMPARE(tarnis::writeFile(m_folder.path(), "x"), QString("it is a folder: give the name of a file"));
        QCOMPARE(tarnis::writeFile({}, "x"), QString("there is no such file"));
        QCOMPARE(tarnis::writeFile(path("file").repeated(50), "x"),
            QString("the folder '%1' does not exist: create it or choose another one")
                .arg(QFileInfo(path("file").repeated(50)).path()));
        QCOMPARE(
            tarnis::writeFile(path(QString(300, 'n')), "x"), QString("the name is too long: choose a shorter one"));
    }

    void refusesAFileBelowAFile()
    {
        QCOMPARE(tarnis::writeFile(path("a"), "1"), QString());
        QCOMPARE(tarnis::writeFile(path("a/b"), "x"), QString("'%1' is not a folder").arg(path("a")));
    }

    void reportsAFullDevice()
    {
        QCOMPARE(tarnis::writeFile("/dev/full", "x"),
            QString("no space is left on the device: free some or choose another folder"));
        QVERIFY(QFile::exists("/dev/full"));
    }

    void keepsThePreviousFileWhenTheNewOneDoesNotFit()
    {
        QCOMPARE(tarnis::writeFile(path("a"), "previous"), QString());
        QString error;
        {
            const SizeLimit limit(4096);
            error = tarnis::writeFile(path("a"), QByteArray(10000, 'x'));
        }
        QCOMPARE(error, QString("the file would be larger than this file system allows"));
        QCOMPARE(bytesOf(path("a")), QByteArray("previous"));
        QCOMPARE(names(), QStringList { "a" });
    }

    void refusesAReadOnlyFile()
    {
        QCOMPARE(tarnis::writeFile(path("a"), "1"), QString());
        const WithoutPrivileges user(m_folder.path());
        QCOMPARE(::chmod(path("a").toLocal8Bit().constData(), 0444), 0);
        QCOMPARE(tarnis::writeFile(path("a"), "2"), QString("permission denied: choose another file or folder"));
        QCOMPARE(bytesOf(path("a")), QByteArray("1"));
    }

    void refusesAReadOnlyFolder()
    {
        const WithoutPrivileges user(m_folder.path());
        QCOMPARE(::chmod(m_folder.path().toLocal8Bit().constData(), 0555), 0);
        const QString error = tarnis::writeFile(path("a"), "1");
        QCOMPARE(::chmod(m_folder.path().toLocal8Bit().constData(), 0755), 0);
        QCOMPARE(error, QString("permission denied: choose another file or folder"));
        QCOMPARE(names(), QStringList());
    }

    void writesToAPipeAndReportsAClosedReader()
    {
        std::array<int, 2> ends {};
        QCOMPARE(::pipe(ends.data()), 0);
        QCOMPARE(tarnis::writeFile(QString("/dev/fd/%1").arg(ends[1]), "through"), QString());
        QCOMPARE(tarnis::writeDescriptor(ends[1], " it"), QString());
        std::array<char, 20> bytes {};
        QCOMPARE(::read(ends[0], bytes.data(), bytes.size()), ssize_t { 10 });
        QCOMPARE(QByteArray(bytes.data()), QByteArray("through it"));
        ::close(ends[0]);
        auto* const previous = std::signal(SIGPIPE, SIG_IGN);
        QCOMPARE(tarnis::writeDescriptor(ends[1], "x"), QString("the reader has closed the pipe"));
        std::signal(SIGPIPE, previous);
        ::close(ends[1]);
    }

    void readsAPipeToItsEnd()
    {
        std::array<int, 2> ends {};
        QCOMPARE(::pipe(ends.data()), 0);
        QCOMPARE(tarnis::writeDescriptor(ends[1], "some text"), QString());
        ::close(ends[1]);
        QCOMPARE(bytesOf(QString("/dev/fd/%1").arg(ends[0])), QByteArray("some text"));
        ::close(ends[0]);
    }

    void readsUpToTheLimit()
    {
        QCOMPARE(tarnis::writeFile(path("a"), QByteArray(100, 'x')), QString());
        QCOMPARE(tarnis::readFile(path("a"), 100).bytes.size(), 100);
        const tarnis::FileContent tooMuch = tarnis::readFile(path("a"), 99);
        QCOMPARE(tooMuch.error, QString("it is larger than 99 bytes"));
        QVERIFY(tooMuch.bytes.isEmpty());
        QCOMPARE(tarnis::readFile("/dev/zero", 1000000).error, QString("it is larger than 1000000 bytes"));
    }

    void reportsWhyAFileCannotBeRead()
    {
        QCOMPARE(tarnis::readFile(path("none")).error, QString("there is no such file"));
        QCOMPARE(tarnis::readFile(m_folder.path()).error, QString("it is a folder: give the name of a file"));
        QCOMPARE(tarnis::readFile(path("no/file")).error,
            QString("the folder '%1' does not exist: create it or choose another one").arg(path("no")));
    }
};

QTEST_GUILESS_MAIN(TestFiles)
#include "tst_files.moc"
