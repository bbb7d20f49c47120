// The console's saves: each reports its result, leaves an older file unchanged on failure, and suggests a name.
#include "console/consolefixture.h"
#include "support/cases.h"
#include "support/modalwatchdog.h"
#include "support/savecases.h"
#include "support/wait.h"

#include <tarnis/dialogs/graph1ddialog.h>
#include <tarnis/dialogs/graph2ddialog.h>
#include <tarnis/dialogs/statdialog.h>
#include <tarnis/export/exportdialog.h>
#include <tarnis/formats/formats.h>
#include <tarnis/foundation/helpers.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include <QAction>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPushButton>
#include <QRegularExpression>
#include <QTableWidget>

using namespace console;
using namespace tarnis::testing;

namespace {

/// Replies that make files of more than a page.
class DataServer : public ScriptedServer {
public:
    DataServer()
    {
        QByteArray statistics;
        for (int i = 0; i < 500; ++i)
            statistics += "value " + QByteArray::number(i) + ": 1\n";
        answer("hist1d time 0 7 bins:1024", { Step::doubles(QList<double>(8 * 1024, 1.5), "OK:\n") });
        answer("hist2d image bins:256", { Step::doubles(QList<double>(4096, 1.5), "OK: exported 64 x 64 y\n") });
        answer("stat", { Step::text("OK:\nrate: 1.5\n" + statistics) });
    }
};

class SavingConsole : public ConsoleFixture {
public:
    SavingConsole()
    {
        use(server);
        if (!reaches(ServerState::Up))
            qFatal("no server");
    }
    /// The window with data in it.
    QWidget* filled(const char* id)
    {
        QWidget* const opened = find(id);
        const auto hasData = [opened] {
            if (const auto* const curves = qobject_cast<Graph1DDialog*>(opened))
                return curves->getGraphWidget()->hasData();
            if (const auto* const map = qobject_cast<Graph2DDialog*>(opened))
                return map->getGraphWidget()->getMaxValue() > 0.0;
            if (opened->findChild<VectorGraphWidget*>()) // the event rate, which states the last one
                return !opened->findChild<QLabel*>(QStringLiteral("infoLabel"))->text().isEmpty();
            const auto* const table = opened->findChild<QTableWidget*>();
            return !table || table->rowCount() > 0 || opened->findChild<QWidget*>(QStringLiteral("targetBox"));
        };
        if (!eventually(hasData))
            qFatal("%s stays empty", id);
        return opened;
    }
    /// Chooses the entry of the plot, or presses Save.
    static void save(QWidget& window, const QString& entry)
    {
        auto* const plot = window.findChild<XYGraphWidget*>();
        if (!plot) {
            window.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
            return;
        }
        for (QAction* const action : plot->actions()) {
            if (action->text() == entry)
                return action->trigger();
        }
        qFatal("no %s", qPrintable(entry));
    }
    /// The export dialog that the entry opens.
    static tarnis::ExportDialog& exportOf(QWidget& window, const QString& entry = QStringLiteral("Save PNG..."))
    {
        save(window, entry);
        auto* const dialog = window.findChild<tarnis::ExportDialog*>();
        if (!dialog || !dialog->isVisible())
            qFatal("no export dialog");
        return *dialog;
    }
    static QMessageBox* boxOn(const QWidget& window)
    {
        auto* const box = window.findChild<QMessageBox*>(QStringLiteral("saveBox"));
        return box && box->isVisible() ? box : nullptr;
    }

    DataServer server;
};

/// Enters the name in the chooser after the failure has begun in its folder, and presses Save.
ModalWatchdog::Answer saveTo(SavePlace& place)
{
    return [&place](QWidget& window) {
        place.begin();
        acceptFile(place.path())(window);
    };
}

const char* causeOf(SaveFailure failure)
{
    if (failure == SaveFailure::FullDevice || failure == SaveFailure::FullDisk)
        return "no space is left";
    return failure == SaveFailure::ReadOnlyFolder ? "permission denied" : "does not exist";
}

QString nameIn(const QWidget& dialog)
{
    return dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text();
}

struct FailureCase {
    SaveFailure failure;
    const char* cause;
};

// If the entered name is a folder, a chooser opens it instead of saving.
constexpr FailureCase chooserFailures[] = {
    { SaveFailure::FullDevice, "no space is left" },
    { SaveFailure::FullDisk, "no space is left" },
    { SaveFailure::ReadOnlyFolder, "permission denied" },
    { SaveFailure::VanishedFolder, "does not exist" },
    { SaveFailure::SlashInName, "does not exist" },
};
// The printer's dialog checks the others itself.
constexpr FailureCase printerFailures[] = {
    { SaveFailure::FullDevice, "no space is left" },
    { SaveFailure::FullDisk, "no space is left" },
};

} // namespace

class TestConsoleSaving : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }

    void reportsTheResultOfEverySave_data()
    {
        addColumns<QByteArray, QString>("id", "entry");
        for (const char* const id : { "statistics", "stat-snapshot", "modules" })
            addCase(id, QByteArray(id), QString());
        for (const char* const id : { "curves", "map", "rate" })
            addCase(qPrintable(QStringLiteral("%1, print").arg(QLatin1String(id))), QByteArray(id),
                QStringLiteral("Print..."));
    }
    void reportsTheResultOfEverySave()
    {
        QFETCH(QByteArray, id);
        QFETCH(QString, entry);
        const bool isPrint = !entry.isEmpty();
        const QString suffix = isPrint ? ".pdf" : ".csv";
        SavingConsole fixture;
        QWidget* const window = fixture.filled(id.constData());
        const auto save = [&](SavePlace& place) {
            QList<ModalWatchdog::Answer> answers { isPrint ? acceptPrint(place.path()) : saveTo(place) };
            if (QFileInfo::exists(place.path()))
                answers.append(agree()); // it exists: overwrite?
            const ModalWatchdog watchdog(answers);
            SavingConsole::save(*window, entry);
            return eventually([&] { return watchdog.isContent() && !window->findChild<QPrintDialog*>(); });
        };
        {
            SavePlace place(SaveFailure::None, suffix);
            QVERIFY(save(place));
            QVERIFY(!SavingConsole::boxOn(*window));
            QVERIFY(fixture.record().contains(QStringLiteral("Saved as %1.").arg(place.path())));
            QVERIFY(place.content() != "old");
            QVERIFY(!place.content().isEmpty());
        }
        for (const auto& [failure, cause] : isPrint
                ? QList<FailureCase>(std::begin(printerFailures), std::end(printerFailures))
                : QList<FailureCase>(std::begin(chooserFailures), std::end(chooserFailures))) {
            SavePlace place(failure, suffix);
            if (!place.isThere())
                continue; // mounting is not permitted here
            QVERIFY(save(place));
            QMessageBox* const box = SavingConsole::boxOn(*window);
            QVERIFY2(box, cause);
            QVERIFY2(box->text().contains(QLatin1String(cause)), qPrintable(box->text()));
            QVERIFY(box->text().contains(place.path()));
            QVERIFY(fixture.record().contains(box->text()));
            QVERIFY2(place.isUntouched(), cause);
            delete box;
        }
    }

    void reportsTheResultOfEveryExport_data()
    {
        addColumns<QByteArray, QString>("id", "suffix");
        for (const char* const id : { "curves", "map", "rate" }) {
            for (const char* const suffix : { "png", "pdf", "svg", "csv" })
                addCase(qPrintable(QStringLiteral("%1, %2").arg(QLatin1String(id), QLatin1String(suffix))),
                    QByteArray(id), QString(QLatin1String(suffix)));
        }
    }
    void reportsTheResultOfEveryExport()
    {
        QFETCH(QByteArray, id);
        QFETCH(QString, suffix);
        SavingConsole fixture;
        QWidget* const window = fixture.filled(id.constData());
        for (const SaveFailure failure : { SaveFailure::None, SaveFailure::FullDevice, SaveFailure::FullDisk,
                 SaveFailure::ReadOnlyFolder, SaveFailure::VanishedFolder, SaveFailure::SlashInName }) {
            SavePlace place(failure, u'.' + suffix);
            if (!place.isThere())
                continue; // mounting is not permitted here
            tarnis::ExportDialog& dialog = SavingConsole::exportOf(*window);
            dialog.setPath(place.path());
            place.begin();
            const bool isOld = QFileInfo(place.path()).isFile();
            const ModalWatchdog watchdog(
                isOld ? QList<ModalWatchdog::Answer> { agree() } : QList<ModalWatchdog::Answer>());
            dialog.accept();
            QVERIFY(watchdog.isContent());
            if (failure == SaveFailure::None) {
                QVERIFY(!dialog.isVisible());
                QVERIFY(fixture.record().contains(QStringLiteral("Saved as %1.").arg(place.path())));
                QVERIFY(!place.content().isEmpty() && place.content() != "old");
            } else {
                const auto* const problem = dialog.findChild<QLabel*>(QStringLiteral("exportProblemLabel"));
                const char* const cause = causeOf(failure);
                QVERIFY2(problem->isVisible() && problem->text().contains(QLatin1String(cause)), cause);
                QVERIFY2(place.isUntouched(), cause);
                dialog.reject();
            }
            TRY_VERIFY(!window->findChild<tarnis::ExportDialog*>());
        }
    }

    void anExportStatesWhereItsValuesComeFrom()
    {
        const QTemporaryDir folder;
        SavingConsole fixture;
        QWidget* const window = fixture.filled("curves");
        const QDateTime before = window->property("dataTime").toDateTime();
        QVERIFY(before.isValid());
        tarnis::ExportDialog& dialog = SavingConsole::exportOf(*window, QStringLiteral("Save CSV..."));
        dialog.setPath(folder.filePath("a.csv"));
        dialog.accept();
        const tarnis::Dataset data = tarnis::readDataset(folder.filePath("a.csv")).data;
        QCOMPARE(data.title, QStringLiteral("time"));
        QVERIFY2(data.source.contains(QString::number(fixture.server.port())), qPrintable(data.source));
        QVERIFY(data.time >= before.addMSecs(-1));
        QVERIFY(data.time <= QDateTime::currentDateTime());
    }

    void storesTheFolderOfTheLastSave()
    {
        const QTemporaryDir folder;
        const QString elsewhere = QDir::tempPath() + "/elsewhere";
        SavingConsole fixture;
        tarnis::ExportDialog& dialog = SavingConsole::exportOf(*fixture.filled("curves"));
        dialog.setPath(folder.filePath("a.png"));
        dialog.accept();
        setSaveFilePath(elsewhere); // another program's
        fixture.window = nullptr;
        fixture.window = std::make_unique<MainWindow>(fixture.store);
        QCOMPARE(QDir(getSaveDir()).path(), folder.path());
    }

    void reportsTheResultOfSavingTheRecord_data()
    {
        addSaveFailures(SaveFailure::FolderInPlace);
    } // the chooser enters it
    void reportsTheResultOfSavingTheRecord()
    {
        QFETCH(SaveFailure, failure);
        QFETCH(QString, cause);
        SavingConsole fixture;
        fixture.window->commandPanel().addMessage(QString(9000, u'x')); // more than fits on the disk
        SavePlace place(failure, ".txt");
        if (!place.isThere())
            QSKIP("only root may mount the small disk of this case");
        QList<ModalWatchdog::Answer> answers { saveTo(place) };
        if (QFileInfo::exists(place.path()))
            answers.append(agree());
        const ModalWatchdog watchdog(answers);
        fixture.choose("saveRecordAction");
        const bool isGood = failure == SaveFailure::None;
        const QString said = isGood ? QStringLiteral("Saved as") : QStringLiteral("was not saved");
        QVERIFY(fixture.shows(said));
        QVERIFY(watchdog.isContent());
        QCOMPARE(fixture.widget<AlertBar>("alertBar").isVisible(), true);
        if (isGood) {
            QVERIFY(place.content().contains(QByteArray(9000, 'x')));
            return;
        }
        QVERIFY2(fixture.record().contains(cause), qPrintable(fixture.record()));
        QVERIFY(place.isUntouched());
    }

    void aNameIsSuggested_data()
    {
        addColumns<QByteArray, QString, QString, QString>("id", "entry", "start", "suffix");
        addCase("picture of curves", QByteArray("curves"), "Save PNG...", "time", "png");
        addCase("values of curves", QByteArray("curves"), "Save CSV...", "time", "csv");
        addCase("picture of a map", QByteArray("map"), "Save PNG...", "image", "png");
        addCase("event rate", QByteArray("rate"), "Save CSV...", "Event-Rate", "csv");
        addCase("statistics", QByteArray("statistics"), "", "Statistics", "csv");
    }
    void aNameIsSuggested()
    {
        QFETCH(QByteArray, id);
        QFETCH(QString, entry);
        QFETCH(QString, start);
        QFETCH(QString, suffix);
        SavingConsole fixture;
        QWidget* const window = fixture.filled(id.constData());
        QString name;
        if (entry.isEmpty()) {
            const ModalWatchdog watchdog({ [&](QWidget& chooser) {
                name = nameIn(chooser);
                const QStringList filters = dynamic_cast<QFileDialog&>(chooser).nameFilters();
                QVERIFY(filters.first().contains(QStringLiteral("(*.%1)").arg(suffix)));
                reject()(chooser);
            } });
            SavingConsole::save(*window, entry);
            QVERIFY(watchdog.isContent());
        } else {
            tarnis::ExportDialog& dialog = SavingConsole::exportOf(*window, entry);
            QCOMPARE(QFileInfo(dialog.path()).path(), QDir(getSaveDir()).path());
            name = QFileInfo(dialog.path()).fileName();
            dialog.reject();
        }
        const QRegularExpression expected(QStringLiteral("^%1_\\d{8}-\\d{6}\\.%2$").arg(start, suffix));
        QVERIFY2(expected.match(name).hasMatch(), qPrintable(name));
        QVERIFY(!fixture.record().contains(QStringLiteral("aved")));
    }

    void theSuffixIsAdded_data()
    {
        addColumns<QString, QString>("typed", "written");
        addCase("no suffix", "plot", "plot.png");
        addCase("a dot in the name", "run.12", "run.12.png");
        addCase("another format", "plot.svg", "plot.svg");
        addCase("capitals", "PLOT.PNG", "PLOT.PNG");
    }
    void theSuffixIsAdded()
    {
        QFETCH(QString, typed);
        QFETCH(QString, written);
        const QTemporaryDir folder;
        SavingConsole fixture;
        tarnis::ExportDialog& dialog = SavingConsole::exportOf(*fixture.filled("curves"));
        dialog.findChild<QLineEdit*>(QStringLiteral("exportPathEdit"))->setText(folder.filePath(typed));
        dialog.accept();
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList { written });
        QVERIFY(QFileInfo(folder.filePath(written)).size() > 0);
        QVERIFY(fixture.record().contains(QStringLiteral("Saved as %1.").arg(folder.filePath(written))));
    }

    void asksBeforeReplacingAFileWithTheAddedSuffix()
    {
        SavePlace place(SaveFailure::None, ".12.png");
        SavingConsole fixture;
        tarnis::ExportDialog& dialog = SavingConsole::exportOf(*fixture.filled("curves"));
        dialog.setPath(place.path().chopped(4));
        bool isAsked = false;
        const ModalWatchdog watchdog({ [&](QWidget& window) {
            auto& box = dynamic_cast<QMessageBox&>(window);
            isAsked = box.text().contains(QFileInfo(place.path()).fileName());
            box.button(QMessageBox::No)->click();
        } });
        dialog.accept();
        QVERIFY(isAsked);
        QVERIFY(dialog.isVisible());
        QCOMPARE(place.content(), QByteArray("old"));
    }

    void anotherFilterChangesTheSuffixOfTheName()
    {
        SavingConsole fixture;
        QString csv;
        QString txt;
        const ModalWatchdog watchdog({ [&](QWidget& window) {
            auto& dialog = dynamic_cast<QFileDialog&>(window);
            csv = nameIn(dialog);
            dialog.selectNameFilter(dialog.nameFilters().last());
            Q_EMIT dialog.filterSelected(dialog.nameFilters().last()); // as the list of the dialog does
            txt = nameIn(dialog);
            dialog.reject();
        } });
        SavingConsole::save(*fixture.filled("statistics"), QString());
        QVERIFY(watchdog.isContent());
        QVERIFY(csv.endsWith(QStringLiteral(".csv")));
        QCOMPARE(txt, csv.chopped(3) + QStringLiteral("txt"));
    }
};

QTEST_MAIN(TestConsoleSaving)
#include "tst_consolesaving.moc"
