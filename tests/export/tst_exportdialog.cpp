// The dialog that exports a plot: suggestions, saved files, and staying open after a failed save.
#include "support/wait.h"

#include <tarnis/export/exportdialog.h>
#include <tarnis/formats/formats.h>
#include <tarnis/foundation/files.h>
#include <tarnis/foundation/helpers.h>
#include <tarnis/foundation/message.h>
#include <tarnis/foundation/translation.h>
#include <tarnis/plots/vectorgraphwidget.h>

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QFormLayout>
#include <QImage>
#include <QLabel>
#include <QLocale>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>

using tarnis::ExportDialog;

class TestExportDialog : public QObject {
    Q_OBJECT
private:
    QTemporaryDir m_folder;
    VectorGraphWidget m_plot;

private Q_SLOTS:
    void init()
    {
        m_folder = QTemporaryDir();
        setSaveFilePath(m_folder.filePath("x"));
        m_plot.resize(400, 300);
        m_plot.init("Time [us]", "Counts", 4.0, 10.0, true, true);
        m_plot.setData({ 1.0, 5.0, 2.0, 3.0 });
        m_plot.setMaxValue(5.0);
    }

    void suggestsANameInTheFolderOfTheLastSave()
    {
        const ExportDialog dialog(m_plot, "total", "7");
        const QFileInfo file(dialog.path());
        QCOMPARE(file.path(), m_folder.path());
        QVERIFY(file.fileName().startsWith("total_run7_2"));
        QCOMPARE(file.suffix(), "png");
    }

    void formatAndNameFollowEachOther()
    {
        ExportDialog dialog(m_plot, "total");
        auto* const format = dialog.findChild<QComboBox*>();
        format->setCurrentIndex(format->findData("pdf"));
        QCOMPARE(QFileInfo(dialog.path()).suffix(), "pdf");
        dialog.setPath(m_folder.filePath("a.csv"));
        QCOMPARE(format->currentData().toString(), "csv");
    }

    void everyControlExplainsItselfOrWhyItIsOff()
    {
        ExportDialog dialog(m_plot, "total");
        const auto tips = [&](const char* suffix) {
            dialog.setPath(m_folder.filePath(QStringLiteral("a.") + suffix));
            QStringList texts;
            for (const QWidget* const control : dialog.findChildren<QWidget*>())
                if (control->focusPolicy() != Qt::NoFocus && control->window() == &dialog // no list of a combo box
                    && !qobject_cast<const QAbstractSpinBox*>(control->parent()))
                    texts.append(control->toolTip());
            return texts;
        };
        for (const char* const suffix : { "png", "svg", "csv" }) {
            QCOMPARE(tips(suffix).size(), 9);
            QVERIFY2(!tips(suffix).contains(QString()), qPrintable(tips(suffix).join(u'\n')));
        }
        QCOMPARE(tips("csv").count("This format contains numbers, not a picture"), 3);
        QCOMPARE(tips("svg").count("This format has no pixels: it is sharp at any resolution"), 1);
        QCOMPARE(tips("png").count("A picture shows the visible bins"), 1);
    }

    void savesAPictureOfTheChosenSize()
    {
        ExportDialog dialog(m_plot, "total");
        dialog.setPath(m_folder.filePath("a.png"));
        const QList<QSpinBox*> boxes = dialog.findChildren<QSpinBox*>();
        QCOMPARE(boxes.size(), 3);
        boxes.at(0)->setValue(500);
        boxes.at(1)->setValue(200);
        boxes.at(2)->setValue(192);
        const QSignalSpy saved(&dialog, &ExportDialog::saved);
        dialog.accept();
        QCOMPARE(saved.size(), 1);
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(QImage(m_folder.filePath("a.png")).size(), QSize(1000, 400));
    }

    void savesATableWithItsSource()
    {
        ExportDialog dialog(m_plot, "total", "7", "localhost:5000, run 7");
        dialog.setPath(m_folder.filePath("a.csv"));
        dialog.accept();
        const tarnis::Dataset data = tarnis::readDataset(m_folder.filePath("a.csv")).data;
        QCOMPARE(data.values, (std::vector<double> { 1.0, 5.0, 2.0, 3.0 }));
        QCOMPARE(data.title, "total");
        QCOMPARE(data.source, "localhost:5000, run 7");
    }

    void staysOpenWithTheCauseOfAFailure()
    {
        ExportDialog dialog(m_plot, "total");
        dialog.open();
        dialog.setPath(m_folder.filePath("none/a.png"));
        dialog.accept();
        QVERIFY(dialog.isVisible());
        bool shown = false;
        for (const QLabel* const label : dialog.findChildren<QLabel*>())
            shown = shown || (label->isVisible() && label->text().contains("does not exist"));
        QVERIFY(shown);
        dialog.setPath(m_folder.filePath("a.png"));
        dialog.accept();
        QVERIFY(!dialog.isVisible());
    }

    void needsAFileName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("nothing") << "";
        QTest::newRow("folder") << "/";
        QTest::newRow("suffix") << "/.png";
    }
    void needsAFileName()
    {
        QFETCH(const QString, name);
        ExportDialog dialog(m_plot, "total");
        const QString path = name.isEmpty() ? name : m_folder.path() + name;
        dialog.setPath(path);
        const QSignalSpy saved(&dialog, &ExportDialog::saved);
        dialog.accept();
        QCOMPARE(saved.count(), 0);
        QCOMPARE(dialog.path(), path);
        const auto* const problem = dialog.findChild<QLabel*>("exportProblemLabel");
        QVERIFY2(problem->text().contains("name of a file"), qPrintable(problem->text()));
        QVERIFY(QDir(m_folder.path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
    }

    void addsTheSuffixOfTheChosenFormat()
    {
        ExportDialog dialog(m_plot, "total");
        dialog.setFormat("csv");
        dialog.setPath(m_folder.filePath("run.12"));
        dialog.accept();
        QVERIFY(QFileInfo::exists(m_folder.filePath("run.12.csv")));
    }

    void asksBeforeItReplacesAFile()
    {
        const QString path = m_folder.filePath("a.csv");
        QVERIFY(tarnis::writeFile(path, "old").isEmpty());
        tarnis::MessageButton answer = tarnis::MessageButton::No;
        int asked = 0;
        tarnis::setMessageHandler([&](const tarnis::Message& message) {
            asked += message.kind == tarnis::MessageKind::Question && message.text.contains("a.csv") ? 1 : 0;
            return answer;
        });
        const auto restored = qScopeGuard([] { tarnis::setMessageHandler({}); });
        ExportDialog dialog(m_plot, "total");
        dialog.open();
        dialog.setPath(path);
        dialog.accept();
        QVERIFY(dialog.isVisible());
        QCOMPARE(tarnis::readFile(path).bytes, QByteArray("old"));
        answer = tarnis::MessageButton::Yes;
        dialog.accept();
        QVERIFY(!dialog.isVisible());
        QVERIFY(tarnis::readFile(path).bytes != "old");
        QCOMPARE(asked, 2);
    }

    void statesTheTimeOfTheData()
    {
        const QDateTime taken(QDate(2026, 3, 4), QTime(5, 6, 7));
        ExportDialog dialog(m_plot, "total");
        dialog.setDataTime([&] { return taken; });
        dialog.setPath(m_folder.filePath("a.csv"));
        dialog.accept();
        QCOMPARE(tarnis::readDataset(m_folder.filePath("a.csv")).data.time, taken);
    }

    void followsTheLanguage()
    {
        ExportDialog dialog(m_plot, "total");
        dialog.setPath(m_folder.filePath("missing/a.png"));
        dialog.accept(); // fails: the folder does not exist
        auto* const problem = dialog.findChild<QLabel*>("exportProblemLabel");
        QVERIFY(problem->text().startsWith("Cannot save the file"));
        const auto reset = qScopeGuard([] { tarnis::setLanguage(QLocale(QLocale::English)); });
        QVERIFY(tarnis::setLanguage(QLocale(QLocale::German)));
        TRY_COMPARE(dialog.windowTitle(), QStringLiteral("Exportieren"));
        auto* const format = dialog.findChild<QComboBox*>("exportFormatBox");
        QCOMPARE(format->currentData().toString(), "png");
        const auto* const form = dialog.findChild<QFormLayout*>();
        QCOMPARE(qobject_cast<QLabel*>(form->labelForField(format))->text(), QStringLiteral("&Format:"));
        const auto* const width = dialog.findChild<QSpinBox*>();
        QCOMPARE(qobject_cast<QLabel*>(form->labelForField(const_cast<QSpinBox*>(width)))->text(),
            QStringLiteral("&Breite:"));
        TRY_VERIFY(!problem->text().startsWith("Cannot save the file"));
        for (const QLabel* const label : dialog.findChildren<QLabel*>())
            QVERIFY2(!label->text().contains("pixels"), qPrintable(label->text()));
    }

    void everyMnemonicReachesAField()
    {
        const ExportDialog dialog(m_plot, "total");
        int mnemonics = 0;
        for (const QLabel* const label : dialog.findChildren<QLabel*>()) {
            if (!label->text().contains(u'&'))
                continue;
            ++mnemonics;
            QVERIFY2(label->buddy() != nullptr, qPrintable(label->text())); // it would be shown as '&'
        }
        QCOMPARE(mnemonics, 6);
    }

    void keepsTheHostsTitle()
    {
        ExportDialog dialog(m_plot, "total");
        dialog.setWindowTitle("Save: total");
        const auto reset = qScopeGuard([] { tarnis::setLanguage(QLocale(QLocale::English)); });
        QVERIFY(tarnis::setLanguage(QLocale(QLocale::German)));
        const auto* const format = dialog.findChild<QComboBox*>("exportFormatBox");
        TRY_COMPARE(format->currentText(), QStringLiteral("PNG-Bild"));
        QCOMPARE(dialog.windowTitle(), "Save: total");
    }

    void showsAPreview()
    {
        const ExportDialog dialog(m_plot, "total");
        bool shown = false;
        for (const QLabel* const label : dialog.findChildren<QLabel*>())
            shown = shown || !label->pixmap().isNull();
        QVERIFY(shown);
    }
};

QTEST_MAIN(TestExportDialog)
#include "tst_exportdialog.moc"
