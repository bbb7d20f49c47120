#include "support/cases.h"
#include "support/messageboxwatcher.h"
#include "support/metamethods.h"

#include <tarnis/peak/peaksearchdialog.h>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

using namespace tarnis::testing;

class tst_PeakSearchDialog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCoreApplication::setApplicationName(QStringLiteral("Console")); }

    void formHasTheGivenSizeAndTexts()
    {
        const PeakSearchDialog dialog(nullptr);
        QCOMPARE(dialog.size(), QSize(334, 235));
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Peak Search"));
        QVERIFY(!dialog.windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
        QCOMPARE(dialog.layout()->objectName(), QStringLiteral("verticalLayout"));
        QVERIFY(dialog.findChild<QLayout*>(QStringLiteral("gridLayout")) != nullptr);
        QCOMPARE(
            dialog.findChild<QLabel*>(QStringLiteral("labelThreshold"))->text(), QStringLiteral("Threshold ( % )"));
        QCOMPARE(dialog.findChild<QLabel*>(QStringLiteral("labelWidth"))->text(), QStringLiteral("Width"));
        QCOMPARE(dialog.findChild<QLineEdit*>(QStringLiteral("lineEditThreshold"))->text(), QStringLiteral("20"));
        QCOMPARE(dialog.findChild<QLineEdit*>(QStringLiteral("lineEditWidth"))->text(), QStringLiteral("15"));
        QCOMPARE(dialog.findChild<QPushButton*>(QStringLiteral("pushButtonSearch"))->text(), QStringLiteral("Search"));
        const auto* box = dialog.findChild<QCheckBox*>(QStringLiteral("displayPointsCheckBox"));
        QCOMPARE(box->text(), QStringLiteral("Display Points"));
        QVERIFY(!box->isChecked());
        QStringList headers;
        for (int column = 0; column < tableOf(dialog)->columnCount(); ++column)
            headers.append(tableOf(dialog)->horizontalHeaderItem(column)->text());
        QCOMPARE(
            headers, (QStringList { QStringLiteral("Position"), QStringLiteral("Amplitude"), QStringLiteral("FWHM") }));
        QCOMPARE(tableOf(dialog)->rowCount(), 0);
    }

    void metaObjectOrder()
    {
        QCOMPARE(ownMethods(PeakSearchDialog::staticMetaObject),
            (QStringList { "signal search(int,int,bool)", "signal selectedChange(int)",
                "signal toggledDisplayPoints(bool)", "slot onSearch()", "slot currentCellChanged(int,int,int,int)" }));
    }

    void acceptedNumbers_data()
    {
        addColumns<QString, QString, int, int>("threshold", "width", "emittedThreshold", "emittedWidth");
        addCase("defaults", "20", "15", 20, 15);
        addCase("lowest threshold", "0", "15", 0, 15);
        addCase("highest threshold", "100", "15", 100, 15);
        addCase("empty threshold is 0", "", "15", 0, 15);
        addCase("threshold that is no number is 0", "5.5", "15", 0, 15);
        addCase("threshold beyond 32 bits is 0", "4294967346", "15", 0, 15);
        addCase("least width", "20", "3", 20, 3);
        addCase("greatest width", "20", "2147483647", 20, 2147483647);
    }
    void acceptedNumbers()
    {
        QFETCH(QString, threshold);
        QFETCH(QString, width);
        PeakSearchDialog dialog(nullptr);
        dialog.show();
        const QSignalSpy searched(&dialog, &PeakSearchDialog::search);
        type(dialog, threshold, width);
        clickSearch(dialog);
        QCOMPARE(searched.count(), 1);
        QTEST(searched.at(0).at(0).toInt(), "emittedThreshold");
        QTEST(searched.at(0).at(1).toInt(), "emittedWidth");
        QCOMPARE(searched.at(0).at(2).toBool(), true);
    }

    void refusedNumbers_data()
    {
        addColumns<QString, QString, QString>("threshold", "width", "message");
        addCase("threshold above 100", "101", "15", "Invalid threshold.");
        addCase("negative threshold", "-1", "15", "Invalid threshold.");
        addCase("width 2", "20", "2", "Invalid width.");
        addCase("negative width", "20", "-15", "Invalid width.");
        addCase("empty width", "20", "", "Invalid width.");
        addCase("width that is no number", "20", "wide", "Invalid width.");
        addCase("only the first of two faults", "101", "2", "Invalid threshold.");
    }
    void refusedNumbers()
    {
        QFETCH(QString, threshold);
        QFETCH(QString, width);
        QFETCH(QString, message);
        PeakSearchDialog dialog(nullptr);
        dialog.show();
        dialog.appendResults({ peakAt(1.0) });
        const QSignalSpy searched(&dialog, &PeakSearchDialog::search);
        type(dialog, threshold, width);

        const MessageBoxWatcher boxes;
        clickSearch(dialog);
        QCOMPARE(boxes.texts, QStringList { message });
        QCOMPARE(boxes.titles, QStringList { QStringLiteral("Console") });
        QCOMPARE(boxes.icons.value(0), QMessageBox::Warning);
        QCOMPARE(boxes.buttons.value(0), QMessageBox::Ok);
        QCOMPARE(searched.count(), 0);
        QCOMPARE(dialog.findChild<QLineEdit*>(QStringLiteral("lineEditThreshold"))->text(), threshold);
        QCOMPARE(dialog.findChild<QLineEdit*>(QStringLiteral("lineEditWidth"))->text(), width);
        QCOMPARE(tableOf(dialog)->rowCount(), 1);
    }

    void mayBeDeletedWhileItWarns_data()
    {
        QTest::addColumn<QString>("threshold");
        QTest::newRow("threshold") << "101";
        QTest::newRow("width") << "20";
    }
    void mayBeDeletedWhileItWarns()
    {
        QFETCH(QString, threshold);
        QWidget plot;
        const QPointer<PeakSearchDialog> dialog = new PeakSearchDialog(&plot);
        dialog->show();
        type(*dialog, threshold, QStringLiteral("2"));
        MessageBoxWatcher boxes;
        boxes.whileOpen = [&] { delete dialog; };
        QMetaObject::invokeMethod(dialog, "onSearch");
        QVERIFY(dialog.isNull());
    }

    void enterSearches()
    {
        PeakSearchDialog dialog(nullptr);
        dialog.show();
        const QSignalSpy searched(&dialog, &PeakSearchDialog::search);
        QTest::keyClick(dialog.findChild<QLineEdit*>(QStringLiteral("lineEditWidth")), Qt::Key_Return);
        QCOMPARE(searched.count(), 1);
    }

    void resultsAreReplaced()
    {
        PeakSearchDialog dialog(nullptr);
        dialog.appendResults({ peakAt(12.34), peakAt(-5.0), peakAt(1e6) });
        QCOMPARE(tableOf(dialog)->rowCount(), 3);
        QCOMPARE(rowTexts(dialog, 0),
            (QStringList { QStringLiteral("12.3"), QStringLiteral("100.3"), QStringLiteral("4.7") }));
        QCOMPARE(rowTexts(dialog, 2).constFirst(), QStringLiteral("1000000.0"));
        for (int column = 0; column < 3; ++column)
            QCOMPARE(
                tableOf(dialog)->item(1, column)->textAlignment(), static_cast<int>(Qt::AlignRight | Qt::AlignVCenter));

        dialog.appendResults({ peakAt(7.0) });
        QCOMPARE(tableOf(dialog)->rowCount(), 1);
        QCOMPARE(rowTexts(dialog, 0).constFirst(), QStringLiteral("7.0"));
        dialog.appendResults({});
        QCOMPARE(tableOf(dialog)->rowCount(), 0);
        QCOMPARE(tableOf(dialog)->columnCount(), 3);
    }

    void currentRowIsPassedOn()
    {
        PeakSearchDialog dialog(nullptr);
        dialog.appendResults({ peakAt(1.0), peakAt(2.0) });
        const QSignalSpy selected(&dialog, &PeakSearchDialog::selectedChange);
        tableOf(dialog)->setCurrentCell(1, 0);
        tableOf(dialog)->setCurrentCell(1, 2); // within the row: emitted again
        QCOMPARE(selected.count(), 2);
        QCOMPARE(selected.at(0).at(0).toInt(), 1);
        QCOMPARE(selected.at(1).at(0).toInt(), 1);
        tableOf(dialog)->setCurrentItem(nullptr);
        QCOMPARE(selected.count(), 3);
        QCOMPARE(selected.at(2).at(0).toInt(), -1);
    }

    void reportsItsCheckBox()
    {
        PeakSearchDialog dialog(nullptr);
        dialog.show();
        const QSignalSpy toggled(&dialog, &PeakSearchDialog::toggledDisplayPoints);
        auto* box = dialog.findChild<QCheckBox*>(QStringLiteral("displayPointsCheckBox"));
        QTest::keyClick(box, Qt::Key_Space);
        QTest::keyClick(box, Qt::Key_Space);
        QCOMPARE(toggled.count(), 2);
        QCOMPARE(toggled.at(0).at(0).toBool(), true);
        QCOMPARE(toggled.at(1).at(0).toBool(), false);
    }

    void languageChange()
    {
        PeakSearchDialog dialog(nullptr);
        type(dialog, QStringLiteral("33"), QStringLiteral("4"));
        dialog.setWindowTitle(QStringLiteral("Peak Search [All]"));
        dialog.findChild<QPushButton*>(QStringLiteral("pushButtonSearch"))->setText(QStringLiteral("Suchen"));
        QEvent event(QEvent::LanguageChange);
        QCoreApplication::sendEvent(&dialog, &event);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Peak Search"));
        QCOMPARE(dialog.findChild<QPushButton*>(QStringLiteral("pushButtonSearch"))->text(), QStringLiteral("Search"));
        QCOMPARE(dialog.findChild<QLineEdit*>(QStringLiteral("lineEditThreshold"))->text(), QStringLiteral("33"));
        QCOMPARE(dialog.findChild<QLineEdit*>(QStringLiteral("lineEditWidth"))->text(), QStringLiteral("4"));
    }

private:
    static PeakSearch::Gaussian peakAt(double center)
    {
        PeakSearch::Gaussian peak;
        peak.N = 100.26;
        peak.center = center;
        peak.sigma = 2.0;
        peak.offset = 7.0;
        return peak;
    }

    static void type(PeakSearchDialog& dialog, const QString& threshold, const QString& width)
    {
        for (const auto& [name, text] : { std::pair { "lineEditThreshold", threshold }, { "lineEditWidth", width } }) {
            auto* edit = dialog.findChild<QLineEdit*>(QLatin1String(name));
            edit->clear();
            QTest::keyClicks(edit, text);
        }
    }

    static void clickSearch(PeakSearchDialog& dialog)
    {
        QTest::mouseClick(dialog.findChild<QPushButton*>(QStringLiteral("pushButtonSearch")), Qt::LeftButton);
    }

    static QTableWidget* tableOf(const PeakSearchDialog& dialog)
    {
        return dialog.findChild<QTableWidget*>(QStringLiteral("resultTableWidget"));
    }

    static QStringList rowTexts(const PeakSearchDialog& dialog, int row)
    {
        QStringList texts;
        for (int column = 0; column < 3; ++column)
            texts.append(tableOf(dialog)->item(row, column)->text());
        return texts;
    }
};

QTEST_MAIN(tst_PeakSearchDialog)
#include "tst_peaksearchdialog.moc"
