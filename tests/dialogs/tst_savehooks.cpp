// The library's own saves with hooks: each result is reported with its cause, and no partial file is left.
#include "support/modalwatchdog.h"
#include "support/savecases.h"

#include <tarnis/dialogs/namevalue.h>
#include <tarnis/dialogs/namevaluelistdialog.h>
#include <tarnis/foundation/helpers.h>
#include <tarnis/foundation/savehooks.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include <QFileDialog>
#include <QImage>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

using namespace tarnis::testing;

namespace {

/// A file dialog that is already answered.
class AnsweredDialog : public QFileDialog {
public:
    AnsweredDialog(QWidget* parent, const QString& path)
        : QFileDialog(parent)
    {
        setAcceptMode(QFileDialog::AcceptSave);
        setFileMode(QFileDialog::AnyFile);
        setOption(QFileDialog::DontUseNativeDialog);
        findChild<QLineEdit*>("fileNameEdit")->setText(path); // as typed
    }
    int exec() override { return QDialog::Accepted; }
};

struct Report {
    QWidget* source = nullptr;
    QString path;
    QString error;
};

/// Sets the hooks of a host while it exists.
class SaveHookRecorder {
public:
    explicit SaveHookRecorder(SavePlace& place)
    {
        tarnis::setSaveHooks({ .makeDialog =
                                   [this, &place](const tarnis::SaveRequest& request) {
                                       requests.append(request);
                                       auto* const dialog = new AnsweredDialog(request.source, place.path());
                                       place.begin();
                                       return dialog;
                                   },
            .report =
                [this](QWidget& source, const QString& path, const QString& error) {
                    reports.append({ &source, path, error });
                } });
    }
    ~SaveHookRecorder() { tarnis::setSaveHooks({}); }
    SaveHookRecorder(const SaveHookRecorder&) = delete;
    SaveHookRecorder& operator=(const SaveHookRecorder&) = delete;

    QList<tarnis::SaveRequest> requests;
    QList<Report> reports;
};

/// A plot with data that is painted after the printer's dialog has been answered.
template <typename Plot> class WatchedPlot : public Plot {
public:
    std::function<void()> watch;

    QPixmap* toPixmap() override
    {
        if (watch)
            watch();
        return Plot::toPixmap();
    }
};

} // namespace

class TestSaveHooks : public QObject {
    Q_OBJECT

    /// Everything that is common to the saves.
    template <typename Widget>
    void check(Widget& widget, const QString& suffix, const std::function<bool(const QByteArray&)>& isWhole)
    {
        QFETCH(SaveFailure, failure);
        QFETCH(QString, cause);
        SavePlace place(failure, suffix);
        if (!place.isThere())
            QSKIP("only root may mount the small disk of this case");
        setSaveFilePath("/before/");
        const SaveHookRecorder host(place);
        ModalWatchdog watchdog; // no message box of the library
        widget.save();
        QVERIFY(watchdog.isContent());
        QCOMPARE(host.requests.size(), 1);
        QCOMPARE(host.requests.first().source, static_cast<QWidget*>(&widget));
        QCOMPARE(host.reports.size(), 1);
        QCOMPARE(host.reports.first().source, static_cast<QWidget*>(&widget));
        QCOMPARE(host.reports.first().path, place.path());
        const QString error = host.reports.first().error;
        if (failure == SaveFailure::None) {
            QCOMPARE(error, QString());
            QVERIFY(isWhole(place.content()));
            QCOMPARE(getSaveDir(), QFileInfo(place.path()).path() + '/');
            return;
        }
        QVERIFY2(error.contains(cause), qPrintable(error));
        QVERIFY(place.isUntouched());
        QCOMPARE(getSaveDir(), QString("/before/"));
    }

private Q_SLOTS:
    void savesAPictureCompletelyOrReports_data() { addSaveFailures(); }
    void savesAPictureCompletelyOrReports()
    {
        struct Plot : VectorGraphWidget {
            void save() { onSave(); }
        } plot;
        plot.resize(300, 200);
        check(plot, ".png", [](const QByteArray& bytes) { return QImage::fromData(bytes).size() == QSize(300, 200); });
    }

    void savesASeriesCompletelyOrReports_data() { addSaveFailures(); }
    void savesASeriesCompletelyOrReports()
    {
        struct Plot : VectorGraphWidget {
            void save() { onSaveCsv(); }
        } plot;
        plot.setData(QList<double>(3000, 1.5));
        check(plot, ".csv", [](const QByteArray& bytes) { return bytes.count("1.5\n") == 3000; });
    }

    void savesCurvesCompletelyOrReports_data() { addSaveFailures(); }
    void savesCurvesCompletelyOrReports()
    {
        struct Plot : MultiVectorGraphWidget {
            void save() { onSaveCsv(); }
        } plot;
        plot.setData(0, QList<double>(3000, 1.5), 1.5);
        plot.setData(1, QList<double>(3000, 2.5), 2.5);
        check(plot, ".csv", [](const QByteArray& bytes) { return bytes.count("1.5") == 3000 && bytes.endsWith("\n"); });
    }

    void savesAMapCompletelyOrReports_data() { addSaveFailures(); }
    void savesAMapCompletelyOrReports()
    {
        struct Plot : XY2DGraphWidget {
            void save() { onSaveCsv(); }
        } plot;
        for (int row = 0; row < 100; ++row)
            plot.setData(row, QList<double>(50, 1.5), 1.5, row == 99);
        check(plot, ".csv", [](const QByteArray& bytes) { return bytes.count("1.5") == 5000; });
    }

    void savesATableCompletelyOrReports_data() { addSaveFailures(); }
    void savesATableCompletelyOrReports()
    {
        struct Table : NameValueListDialog {
            using NameValueListDialog::NameValueListDialog;
            void save() { onSave(); }
        };
        QList<NameValue> values;
        for (int i = 0; i < 1000; ++i)
            values.append({ QString::number(i), QStringLiteral("value") });
        Table table(values, nullptr, "Name");
        check(table, ".csv", [](const QByteArray& bytes) { return bytes.count("value\n") == 1000; });
    }

    // The printer's dialog refuses a slash in the name.
    void printsAPageCompletelyOrReports_data() { addSaveFailures(SaveFailure::SlashInName); }
    void printsAPageCompletelyOrReports()
    {
        QFETCH(SaveFailure, failure);
        QFETCH(QString, cause);
        SavePlace place(failure, ".pdf");
        if (!place.isThere())
            QSKIP("only root may mount the small disk of this case");
        WatchedPlot<VectorGraphWidget> plot;
        plot.resize(300, 200);
        plot.setData(QList<double>(3000, 1.5));
        plot.watch = [&] { place.begin(); };
        const SaveHookRecorder host(place);
        QList<ModalWatchdog::Answer> answers { acceptPrint(place.path()) };
        if (QFileInfo::exists(place.path()))
            answers.append(agree()); // it exists: overwrite?
        ModalWatchdog watchdog(answers);
        plot.onPrint();
        QVERIFY(watchdog.isContent());
        QCOMPARE(host.reports.size(), 1);
        QCOMPARE(host.reports.first().path, place.path());
        const QString error = host.reports.first().error;
        if (failure == SaveFailure::None) {
            QCOMPARE(error, QString());
            QVERIFY(place.content().startsWith("%PDF-"));
            QVERIFY(place.content().trimmed().endsWith("%%EOF"));
            return;
        }
        QVERIFY2(error.contains(cause), qPrintable(error));
        QVERIFY(place.isUntouched());
    }

    void picturesNeedAKnownEnding()
    {
        SavePlace place(SaveFailure::None, ".12");
        const SaveHookRecorder host(place);
        VectorGraphWidget plot;
        plot.resize(300, 200);
        plot.onSave();
        QCOMPARE(host.reports.size(), 1);
        QVERIFY(host.reports.first().error.contains(".png"));
        QCOMPARE(place.content(), QByteArray("old"));
    }

    void theRequestDescribesTheSave()
    {
        SavePlace place(SaveFailure::None, ".png");
        const SaveHookRecorder host(place);
        setSaveFilePath("/here/");
        VectorGraphWidget plot;
        plot.resize(300, 200);
        plot.onSave();
        QCOMPARE(host.requests.first().kind, tarnis::SaveKind::Picture);
        QCOMPARE(host.requests.first().caption, QString("Save"));
        QCOMPARE(host.requests.first().directory, QString("/here/"));
        QCOMPARE(host.requests.first().filter, QString("Images (*.png *.jpg)"));
        plot.onSaveCsv();
        QCOMPARE(host.requests.last().kind, tarnis::SaveKind::Table);
        QCOMPARE(host.requests.last().filter, QString("CSV Files (*.csv *.txt)"));
    }

    void withoutAHostsDialogTheLibraryAsks()
    {
        SavePlace place(SaveFailure::None, ".csv");
        int reports = 0;
        tarnis::setSaveHooks(
            { .makeDialog = {}, .report = [&](QWidget&, const QString&, const QString&) { ++reports; } });
        VectorGraphWidget plot;
        plot.setData({ 1.0 });
        {
            ModalWatchdog cancelled({ reject() });
            plot.onSaveCsv();
            QVERIFY(cancelled.isContent());
        }
        QCOMPARE(reports, 0); // no attempt was made
        ModalWatchdog accepted({ acceptFile(place.path()), agree() });
        plot.onSaveCsv();
        QVERIFY(accepted.isContent());
        QCOMPARE(reports, 1);
        QCOMPARE(place.content(), QByteArray("1\n"));
        tarnis::setSaveHooks({});
    }

    /// A dialog that is closed, or whose plot is destroyed while it is open, saves nothing.
    void aDialogThatEndsOtherwiseSavesNothing()
    {
        int reports = 0;
        auto* const plot = new VectorGraphWidget;
        struct Deleting : QFileDialog {
            using QFileDialog::QFileDialog;
            int exec() override
            {
                delete parentWidget(); // and this object with it
                return QDialog::Accepted;
            }
        };
        tarnis::setSaveHooks(
            { .makeDialog = [](const tarnis::SaveRequest& request) { return new Deleting(request.source); },
                .report = [&](QWidget&, const QString&, const QString&) { ++reports; } });
        plot->onSaveCsv();
        QCOMPARE(reports, 0);
        tarnis::setSaveHooks({});
    }
};

QTEST_MAIN(TestSaveHooks)
#include "tst_savehooks.moc"
