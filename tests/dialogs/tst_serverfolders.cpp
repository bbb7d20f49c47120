// The two choosers on the simulated server and real folders below its root.
#include "dialogs/chooser.h"
#include "simserver/simprogram.h"
#include "support/wait.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace tarnis::testing;

namespace {

QStringList sorted(QStringList names)
{
    std::sort(names.begin(), names.end(),
        [](const QString& a, const QString& b) { return QString::localeAwareCompare(a, b) < 0; });
    return names;
}

/// Folders and files below the root of a server that runs while this object exists.
class ServedFolder {
public:
    void folder(const QString& path) const { QVERIFY2(QDir(m_root.path()).mkpath('.' + path), qPrintable(path)); }
    void file(const QString& path) const
    {
        QFile file(real(path));
        QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(path));
    }
    QString real(const QString& path) const { return m_root.path() + path; }
    quint16 serve()
    {
        m_server = std::make_unique<simtest::Program>(QStringList { "--root", m_root.path() });
        return m_server->port();
    }

private:
    QTemporaryDir m_root;
    std::unique_ptr<simtest::Program> m_server;
};

} // namespace

class TestServerFolders : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void namesOfEveryKind_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::newRow("plain") << "run0001";
        QTest::newRow("blanks") << " two  blanks ";
        QTest::newRow("double quotes") << "say \"yes\"";
        QTest::newRow("quote at the end") << "size 5\"";
        QTest::newRow("single quotes") << "it's";
        QTest::newRow("umlauts") << "Zählraten für Öl, größer";
        QTest::newRow("signs of a shell") << "$HOME `ls` ; * ? | & <x> (y) #1 ~";
        QTest::newRow("place markers") << "%1 %2 %%";
        QTest::newRow("backslash") << "a\\b";
    }
    void namesOfEveryKind()
    {
        QFETCH(QString, folder);
        ServedFolder served;
        served.folder("/" + folder + "/inside");
        served.file("/" + folder + "/" + folder + ".txt");
        const quint16 port = served.serve();

        PathChooser path(port, "/");
        path.dialog->setExt({ "txt" }, true, false);
        QVERIFY(path.shows({ folder + "/" }));
        path.doubleClick(folder + "/");
        QVERIFY(path.shows(sorted({ "inside/", folder + ".txt" })));
        QCOMPARE(path.dialog->getDir(), "/" + folder);
        path.list().setCurrentItem(path.item(folder + ".txt"));
        path.ok().click();
        QCOMPARE(path.accepted.value(0).value(0).toString(), "/" + folder + "/" + folder + ".txt");

        DirectoryChooser directory(port, "/" + folder + "/inside");
        QVERIFY(eventually([&] { return directory.ancestors().size() == 3; }));
        directory.combo().setCurrentIndex(1);
        QVERIFY(directory.shows({ "inside/" }));
        directory.ok().click();
        QCOMPARE(directory.accepted.value(0).value(0).toString(), "/" + folder);
    }

    void namesBeyondLatin1AreListedOnly()
    {
        // Requests are sent in Latin-1, so the server receives another name and refuses it, and the chooser returns to
        // its root.
        ServedFolder served;
        served.folder("/Teilchen 😀");
        served.folder("/測定");
        served.folder("/plain");
        const quint16 port = served.serve();
        const QStringList names = sorted({ "Teilchen 😀/", "測定/", "plain/" });
        PathChooser path(port, "/plain");
        QVERIFY(path.shows({}));
        path.combo().setCurrentIndex(0);
        QVERIFY(path.shows(names));
        path.doubleClick("Teilchen 😀/");
        QVERIFY(path.settles());
        QVERIFY(eventually([&] { return path.dialog->getDir() == "/" && path.list().isEnabled(); }));
        QVERIFY(path.shows(names));
        DirectoryChooser directory(port, "/plain");
        QVERIFY(eventually([&] { return directory.ancestors().size() == 2; }));
        directory.combo().setCurrentIndex(0);
        QVERIFY(directory.shows(names));
        directory.doubleClick("測定/");
        QVERIFY(directory.settles());
        QVERIFY(directory.shows(names));
        QCOMPARE(directory.ancestors(), QStringList("/"));
    }

    void thousandsOfEntries()
    {
        ServedFolder served;
        served.folder("/many/last one");
        QStringList names { "last one/" };
        for (int i = 0; i < 3000; ++i) {
            const QString name = QStringLiteral("Lauf \"%1\" µ").arg(i * 7919 % 100003);
            served.file("/many/" + name + ".txt");
            names.append(name + ".txt");
        }
        PathChooser path(served.serve(), "/many");
        path.dialog->setExt({ "txt" }, false, false);
        QVERIFY(eventually([&] { return path.list().count() == names.size(); }));
        QCOMPARE(path.names(), sorted(names));
        path.doubleClick("last one/");
        QVERIFY(path.shows({}));
        QCOMPARE(path.dialog->getDir(), "/many/last one");
    }

    void folderThatVanishes()
    {
        ServedFolder served;
        served.folder("/run/old");
        served.folder("/run/new");
        const quint16 port = served.serve();
        PathChooser path(port, "/run");
        DirectoryChooser directory(port, "/run");
        QVERIFY(path.shows({ "new/", "old/" }));
        QVERIFY(directory.shows({ "new/", "old/" }));
        QVERIFY(QDir(served.real("/run")).rmdir("old"));
        path.doubleClick("old/");
        directory.doubleClick("old/");
        QVERIFY(path.shows({ "run/" })); // the server's own folder
        QCOMPARE(path.dialog->getDir(), "/");
        QVERIFY(directory.shows({ "run/" }));
        QCOMPARE(directory.ancestors(), QStringList("/"));
        // And further from there.
        path.doubleClick("run/");
        QVERIFY(path.shows({ "new/" }));
    }

    void folderThatMayNotBeRead()
    {
        ServedFolder served;
        served.folder("/open/locked/inside");
        const QString locked = served.real("/open/locked");
        QVERIFY(QFile::setPermissions(locked, {}));
        const quint16 port = served.serve();
        PathChooser path(port, "/open");
        DirectoryChooser directory(port, "/open");
        QVERIFY(path.shows({ "locked/" }));
        QVERIFY(directory.shows({ "locked/" }));
        path.doubleClick("locked/");
        directory.doubleClick("locked/");
        QVERIFY(path.shows({ "open/" }));
        QVERIFY(directory.shows({ "open/" }));
        QVERIFY(
            QFile::setPermissions(locked, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner));
        path.dialog->setDir("/open/locked");
        QVERIFY(path.shows({ "inside/" }));
    }

    void serverThatEnds()
    {
        auto served = std::make_unique<ServedFolder>();
        served->folder("/run");
        PathChooser path(served->serve(), "/");
        QVERIFY(path.shows({ "run/" }));
        served.reset();
        path.doubleClick("run/");
        // The server no longer answers: nothing is shown, and the dialog closes normally.
        QVERIFY(!path.list().isEnabled());
        path.dialog->close();
        QVERIFY(!path.dialog->isVisible());
    }
};

QTEST_MAIN(TestServerFolders)
#include "tst_serverfolders.moc"
