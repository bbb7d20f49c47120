// Lists of names and values, and the table dialog that shows and saves them.
#include "support/metamethods.h"
#include "support/modalwatchdog.h"
#include "support/support.h"

#include <tarnis/dialogs/namevalue.h>
#include <tarnis/dialogs/namevaluelistdialog.h>
#include <tarnis/foundation/helpers.h>

#include <QDialogButtonBox>
#include <QEvent>
#include <QFile>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <cmath>

using namespace tarnis::testing;

namespace {

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
}

QStringList columnTexts(const QTableWidget& table, int column)
{
    QStringList texts;
    for (int row = 0; row < table.rowCount(); ++row)
        texts.append(table.item(row, column) ? table.item(row, column)->text() : QStringLiteral("(none)"));
    return texts;
}

} // namespace

class TestNameValue : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

    void clearKeepsNamesAndOrder()
    {
        QList<NameValues> list { { "b", { "1", "2" } }, { "a", { "3" } } };
        nvClear(list);
        QCOMPARE(list.size(), 2);
        QCOMPARE(list.at(0).name, "b");
        QCOMPARE(list.at(1).name, "a");
        QVERIFY(list.at(0).values.isEmpty() && list.at(1).values.isEmpty());
    }

    void clearOfNothing()
    {
        QList<NameValues> list;
        nvClear(list);
        QVERIFY(list.isEmpty());
    }

    void updateReplacesOrAppends()
    {
        QList<NameValue> list;
        nvUpdate(list, { "rate", "1" });
        nvUpdate(list, { "Rate", "2" });
        nvUpdate(list, { "rate", "3" });
        QCOMPARE(list.size(), 2);
        QCOMPARE(list.at(0).value, "3");
        QCOMPARE(list.at(1).name, "Rate");
    }

    void updateAppendsTheFirstValueOnly()
    {
        QList<NameValues> list;
        nvUpdate(list, { "rate", { "1", "2" } });
        nvUpdate(list, { "rate", { "3", "4" } });
        QCOMPARE(list.size(), 1);
        QCOMPARE(list.at(0).values, QList<QString>({ "1", "2", "3" }));
    }

    void slotOrder()
    {
        QCOMPARE(ownMethods(NameValueListDialog::staticMetaObject),
            QStringList({ "slot onButtonClicked(QAbstractButton*)", "slot onSave()" }));
    }

    void formHasTheGivenSizeAndTitle()
    {
        NameValueListDialog dialog(QList<NameValue>(), nullptr, "Name");
        QVERIFY(dialog.isVisible());
        QCOMPARE(dialog.windowTitle(), "Dialog");
        QCOMPARE(dialog.size(), QSize(390, 378));
        QVERIFY(!(dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
        QVERIFY(!dialog.testAttribute(Qt::WA_DeleteOnClose));
        QCOMPARE(dialog.table()->editTriggers(), QAbstractItemView::NoEditTriggers);
        QCOMPARE(dialog.table()->horizontalHeader()->defaultSectionSize(), 120);
        QCOMPARE(dialog.table()->verticalHeader()->defaultSectionSize(), 18);
        QCOMPARE(dialog.table()->objectName(), "tableWidget");
        dialog.findChild<QDialogButtonBox*>("buttonBox")->button(QDialogButtonBox::Close)->click();
        QVERIFY(!dialog.isVisible());
    }

    void showsNamesBesideTheirValues()
    {
        NameValueListDialog dialog({ { "a", "1" }, { "b", "two" } }, nullptr, "Key");
        QTableWidget& table = *dialog.table();
        QCOMPARE(table.columnCount(), 2);
        QCOMPARE(table.horizontalHeaderItem(0)->text(), "Key");
        QCOMPARE(table.horizontalHeaderItem(1)->text(), "Value");
        QCOMPARE(columnTexts(table, 0), QStringList({ "a", "b" }));
        QCOMPARE(columnTexts(table, 1), QStringList({ "1", "two" }));
        QCOMPARE(table.item(0, 0)->textAlignment(), int(Qt::AlignLeft | Qt::AlignVCenter));
        QCOMPARE(table.item(0, 1)->textAlignment(), int(Qt::AlignRight | Qt::AlignVCenter));
        const double width = std::round(table.width() * 0.93);
        QCOMPARE(table.columnWidth(0), int(std::round(0.6 * width)));
        QCOMPARE(table.columnWidth(1), int(std::round(0.4 * width)));
    }

    void manyColumnsAndTheirWidth()
    {
        NameValueListDialog dialog({ { "a", { "1", "2" } }, { "b", { "3" } } }, { "Name", "x", "y" }, nullptr);
        QTableWidget& table = *dialog.table();
        QCOMPARE(table.columnCount(), 3);
        QCOMPARE(columnTexts(table, 1), QStringList({ "1", "3" }));
        QCOMPARE(columnTexts(table, 2), QStringList({ "2", "(none)" }));
        QCOMPARE(dialog.height(), 378);
        QCOMPARE(dialog.width(), 3 * 120 + 2 * (390 - (390 - (dialog.width() - table.width()))));
    }

    void updateWithoutHeadersKeepsColumnsAndOldCells()
    {
        NameValueListDialog dialog({ { "a", { "1", "2" } } }, { "Name", "x", "y" }, nullptr);
        dialog.updateList(QList<NameValues> { { "b", { "7" } } }, nullptr);
        QCOMPARE(dialog.table()->horizontalHeaderItem(2)->text(), "y");
        QCOMPARE(columnTexts(*dialog.table(), 0), QStringList("b"));
        QCOMPARE(columnTexts(*dialog.table(), 1), QStringList("7"));
        QCOMPARE(columnTexts(*dialog.table(), 2), QStringList("2"));
    }

    void valuesBeyondTheColumnsAreNotShown()
    {
        NameValueListDialog dialog({ { "x", { "1", "2", "3" } }, { "y", {} } }, { "Name", "a" }, nullptr);
        QCOMPARE(columnTexts(*dialog.table(), 1), QStringList({ "1", "(none)" }));
        dialog.updateList(QList<NameValues> { { "x", { "4", "5" } }, { "y", { "6" } } }, nullptr);
        QCOMPARE(columnTexts(*dialog.table(), 1), QStringList({ "4", "6" }));
    }

    void fewerThanTwoColumns()
    {
        const QList<QString> name { "Name" };
        NameValueListDialog dialog(QList<NameValues> { { "x", { "1" } }, { "y", { "2" } } }, name, nullptr);
        QCOMPARE(columnTexts(*dialog.table(), 0), QStringList({ "x", "y" }));
        dialog.updateList(QList<NameValue> { { "v", "1" }, { "w", "2" } });
        QCOMPARE(columnTexts(*dialog.table(), 0), QStringList({ "v", "w" }));
        const QList<QString> none;
        dialog.updateList(QList<NameValues> { { "x", { "1" } } }, &none);
        QCOMPARE(dialog.table()->columnCount(), 0);
        QCOMPARE(dialog.table()->rowCount(), 1);
    }

    void updateMayChangeTheColumns()
    {
        NameValueListDialog dialog({ { "a", { "1", "2" } } }, { "Name", "x", "y" }, nullptr);
        const QList<QString> headers { "Key", "p", "q", "r" };
        dialog.updateList(QList<NameValues> { { "a", { "7", "8", "9" } }, { "b", { "5" } } }, &headers);
        QTableWidget& table = *dialog.table();
        QCOMPARE(table.columnCount(), 4);
        QCOMPARE(table.horizontalHeaderItem(0)->text(), "Key");
        QCOMPARE(columnTexts(table, 3), QStringList({ "9", "(none)" }));
        const QList<QString> fewer { "Key", "p" };
        dialog.updateList(QList<NameValues> { { "c", { "3", "4" } } }, &fewer);
        QCOMPARE(table.columnCount(), 2);
        QCOMPARE(columnTexts(table, 1), QStringList("3"));
    }

    void savesManyColumns()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath("out.csv");
        NameValueListDialog dialog({ { "a", { "1", "2" } }, { "b", { "3" } } }, { "Name", "x,1", "y" }, nullptr);
        const ModalWatchdog answer({ acceptFile(path) });
        dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
        QVERIFY(answer.isContent());
        QCOMPARE(contentOf(path), QByteArray("Name,x,1,y\na,1,2\nb,3,\n"));
    }

    void hostMayAskForTheSave()
    {
        NameValueListDialog dialog(QList<NameValue>(), nullptr, "Name");
        const ModalWatchdog answer({ reject() });
        dialog.onSave();
        QVERIFY(answer.isContent());
        dialog.onButtonClicked(nullptr); // no button of the form
        QVERIFY(dialog.isVisible());
    }

    void updateShrinksTheTable()
    {
        NameValueListDialog dialog({ { "a", "1" }, { "b", "2" } }, nullptr, "Name");
        dialog.updateList(QList<NameValue> { { "c", "3" } });
        QCOMPARE(columnTexts(*dialog.table(), 0), QStringList("c"));
    }

    void languageChangePutsTheTitleBack()
    {
        NameValueListDialog dialog(QList<NameValue>(), nullptr, "Name");
        dialog.setWindowTitle("other");
        QEvent event(QEvent::LanguageChange);
        QApplication::sendEvent(&dialog, &event);
        QCOMPARE(dialog.windowTitle(), "Dialog");
    }

    void savesTheTableAsCsv_data()
    {
        QTest::addColumn<QList<QStringList>>("rows");
        QTest::addColumn<QByteArray>("file");
        QTest::newRow("empty table") << QList<QStringList>() << QByteArray("Name,Value\n");
        QTest::newRow("nothing is quoted") << QList<QStringList> { { "a,b", "1" }, { "\"c\"", " 2 " } }
                                           << QByteArray("Name,Value\na,b,1\n\"c\", 2 \n");
        QTest::newRow("beyond ASCII") << QList<QStringList> { { "Zählrate", "5 µs" } }
                                      << QByteArray("Name,Value\nZ\xc3\xa4hlrate,5 \xc2\xb5s\n");
    }

    void savesTheTableAsCsv()
    {
        QFETCH(QList<QStringList>, rows);
        QFETCH(QByteArray, file);
        QList<NameValue> list;
        for (const QStringList& row : rows)
            list.append({ row.at(0), row.at(1) });
        QTemporaryDir folder;
        const QString path = folder.filePath("out.csv");
        NameValueListDialog dialog(list, nullptr, "Name");
        const ModalWatchdog answer({ acceptFile(path) });
        dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
        QVERIFY(answer.isContent());
        QCOMPARE(contentOf(path), file);
        QCOMPARE(getSaveDir(), folder.path() + "/");
        QVERIFY(dialog.isVisible());
    }

    void saveCancelled()
    {
        NameValueListDialog dialog(QList<NameValue>(), nullptr, "Name");
        const QString before = getSaveDir();
        const ModalWatchdog answer({ reject() });
        dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
        QVERIFY(answer.isContent());
        QCOMPARE(getSaveDir(), before);
    }

    void failedOpenDoesNotMoveTheSaveDirectory()
    {
        QTemporaryDir folder;
        setSaveFilePath(folder.filePath("x"));
        // A directory cannot be opened for writing by any user.
        QVERIFY(QDir(folder.path()).mkpath("sub/out.csv"));
        NameValueListDialog dialog(QList<NameValue>(), nullptr, "Name");
        const ModalWatchdog answer({ [&](QWidget& window) {
            // done() instead of the button: the box would enter a folder.
            auto& box = dynamic_cast<QFileDialog&>(window);
            box.selectFile(folder.filePath("sub/out.csv"));
            box.QDialog::done(QDialog::Accepted);
        } });
        dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
        QVERIFY(answer.isContent());
        QCOMPARE(getSaveDir(), folder.path() + "/");
    }
};

QTEST_MAIN(TestNameValue)
#include "tst_namevalue.moc"
