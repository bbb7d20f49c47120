// Runs the recipes of docs/client.md as written, and checks the options in the man page and the document.
#include "clientprogram.h"
#include "simserver/simprogram.h"

#include <tarnis/formats/formats.h>
#include <tarnis/foundation/files.h>

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <numeric>

using clienttest::Run;

class TestClientRecipes : public QObject {
    Q_OBJECT
private:
    static QString document() { return QString::fromUtf8(tarnis::readFile(QStringLiteral(CLIENT_DOCUMENT)).bytes); }
    static QStringList recipes()
    {
        QStringList found;
        static const QRegularExpression block("```recipe\n(.*?)```", QRegularExpression::DotMatchesEverythingOption);
        auto matches = block.globalMatch(document());
        while (matches.hasNext())
            found += matches.next().captured(1);
        return found;
    }
    static bool startsARun(const QString& recipe) { return recipe.contains(QStringLiteral(" start\n")); }
    static Run run(QString recipe, simtest::Program& server, const QString& folder)
    {
        recipe.replace(QStringLiteral("maxtime:10"), QStringLiteral("maxtime:1")); // the only change, to save time
        return clienttest::shell(
            QStringLiteral("set -e -o pipefail; export PATH=\"%1:$PATH\" TARNIS_SERVER=127.0.0.1:%2; cd '%3'\n")
                .arg(QFileInfo(QStringLiteral(CLIENT_PATH)).path())
                .arg(server.port())
                .arg(folder)
            + recipe);
    }

private Q_SLOTS:
    void everyRecipeWorks_data()
    {
        QTest::addColumn<QString>("recipe");
        QVERIFY(recipes().size() >= 3);
        for (const QString& recipe : recipes())
            QTest::addRow("%s", qUtf8Printable(recipe.section('\n', 0, 0))) << recipe;
    }
    void everyRecipeWorks()
    {
        QFETCH(QString, recipe);
        simtest::Program server(startsARun(recipe) ? QStringList() : QStringList { "--start" });
        const QTemporaryDir folder;
        const Run result = run(recipe, server, folder.path());
        QCOMPARE(result.errors, QByteArray());
        QCOMPARE(result.exitCode, 0);
        for (const QFileInfo& file : QDir(folder.path()).entryInfoList(QDir::Files))
            QVERIFY2(file.size() > 0, qPrintable(file.fileName()));
    }

    void savesARunWhenItHasEnded()
    {
        const QStringList all = recipes();
        const auto recipe = std::find_if(all.begin(), all.end(), startsARun);
        QVERIFY(recipe != all.end());
        simtest::Program server;
        const QTemporaryDir folder;
        QCOMPARE(run(*recipe, server, folder.path()).exitCode, 0);
        const Run state = run(QStringLiteral("tarnis watch --count 1 --json"), server, folder.path());
        QVERIFY2(state.output.contains("\"state\":\"STOPPED\""), state.output.constData());
        const tarnis::Dataset saved = tarnis::readDataset(folder.filePath(QStringLiteral("rows.npy"))).data;
        QVERIFY(std::accumulate(saved.values.begin(), saved.values.end(), 0.0) > 0.0);
    }

    void manPageAndDocumentNameEveryOption()
    {
        const QString manual = QString::fromUtf8(tarnis::readFile(QStringLiteral(CLIENT_MANUAL)).bytes).remove('\\');
        static const QRegularExpression option("^  (--?[a-z-]+)", QRegularExpression::MultilineOption);
        for (const char* const command :
            { "send", "hist", "plot", "watch", "put", "get", "stats", "fit", "peaks", "calibrate" }) {
            auto matches = option.globalMatch(QString::fromUtf8(clienttest::runTarnis({ command, "--help" }).output));
            while (matches.hasNext()) {
                const QString name = matches.next().captured(1);
                QVERIFY2(manual.contains(name), qPrintable(name));
                QVERIFY2(document().contains(name) || name == u"--json", qPrintable(name));
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestClientRecipes)
#include "tst_clientrecipes.moc"
