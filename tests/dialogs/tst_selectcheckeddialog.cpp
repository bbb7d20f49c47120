#include "support/metamethods.h"

#include <tarnis/dialogs/selectcheckeddialog.h>

#include <QLayout>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>

class tst_SelectCheckedDialog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void formHasTheGivenSizeAndTexts()
    {
        SelectCheckedDialog dialog(nullptr);
        QCOMPARE(dialog.size(), QSize(412, 264));
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Dialog"));
        QCOMPARE(dialog.layout()->objectName(), QStringLiteral("gridLayout"));
        QCOMPARE(dialog.getTable()->objectName(), QStringLiteral("tableWidget"));
        QCOMPARE(dialog.getTable()->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
        QCOMPARE(dialog.getTable()->sizePolicy().verticalPolicy(), QSizePolicy::Preferred);
        const auto textOf = [&dialog](const char* name) {
            auto* button = dialog.findChild<QPushButton*>(QLatin1String(name));
            return button != nullptr ? button->text() : QString();
        };
        QCOMPARE(textOf("selectAllPushButton"), QStringLiteral("Check Selected"));
        QCOMPARE(textOf("unselectAllPushButton"), QStringLiteral("UnCheck Selected"));
        QCOMPARE(textOf("reversePushButton"), QStringLiteral("Reverse Selection"));
        QCOMPARE(textOf("applyPushButton"), QStringLiteral("Apply"));
    }

    void metaObjectOrder()
    {
        QCOMPARE(tarnis::testing::ownMethods(SelectCheckedDialog::staticMetaObject),
            (QStringList { "signal onApply()", "slot onSelectAll()", "slot onUnselectAll()", "slot onReverse()" }));
    }

    void buttonsActOnSelectedCells_data()
    {
        QTest::addColumn<QByteArray>("button");
        QTest::addColumn<QList<int>>("expected");
        QTest::newRow("check selected") << QByteArray("selectAllPushButton") << QList<int> { 2, 2, 2, 0, 1, 2 };
        QTest::newRow("uncheck selected") << QByteArray("unselectAllPushButton") << QList<int> { 0, 0, 0, 0, 1, 2 };
        QTest::newRow("reverse takes partial for checked")
            << QByteArray("reversePushButton") << QList<int> { 2, 0, 0, 0, 1, 2 };
    }
    void buttonsActOnSelectedCells()
    {
        QFETCH(QByteArray, button);
        QFETCH(QList<int>, expected);
        SelectCheckedDialog dialog(nullptr);
        fill(dialog, { 0, 1, 2, 0, 1, 2 });
        for (int column = 0; column < 3; ++column)
            dialog.getTable()->item(0, column)->setSelected(true);
        click(dialog, button);
        QCOMPARE(marks(dialog), expected);
    }

    void buttonsDoNothingWithoutASelection()
    {
        SelectCheckedDialog dialog(nullptr);
        fill(dialog, { 0, 1, 2 });
        for (const char* button : { "selectAllPushButton", "unselectAllPushButton", "reversePushButton" })
            click(dialog, button);
        QCOMPARE(marks(dialog), (QList<int> { 0, 1, 2 }));
    }

    void emptyCellsStayEmpty()
    {
        SelectCheckedDialog dialog(nullptr);
        fill(dialog, { 0, 0 });
        dialog.getTable()->setRowCount(2);
        dialog.getTable()->selectAll();
        click(dialog, "selectAllPushButton");
        QCOMPARE(marks(dialog), (QList<int> { 2, 2 }));
        QVERIFY(dialog.getTable()->item(1, 0) == nullptr);
        QVERIFY(dialog.getTable()->item(1, 1) == nullptr);
    }

    void applyKeepsTheDialogOpen()
    {
        SelectCheckedDialog dialog(nullptr);
        dialog.show();
        const QSignalSpy applied(&dialog, &SelectCheckedDialog::onApply);
        click(dialog, "applyPushButton");
        QCOMPARE(applied.count(), 1);
        QVERIFY(dialog.isVisible());
    }

    void languageChange()
    {
        SelectCheckedDialog dialog(nullptr);
        dialog.setWindowTitle(QStringLiteral("Select"));
        dialog.findChild<QPushButton*>(QStringLiteral("applyPushButton"))->setText(QStringLiteral("Anwenden"));
        QEvent event(QEvent::LanguageChange);
        QCoreApplication::sendEvent(&dialog, &event);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Dialog"));
        QCOMPARE(dialog.findChild<QPushButton*>(QStringLiteral("applyPushButton"))->text(), QStringLiteral("Apply"));
    }

private:
    static void fill(SelectCheckedDialog& dialog, const QList<int>& marks)
    {
        QTableWidget* table = dialog.getTable();
        table->setColumnCount(static_cast<int>(marks.size()));
        table->setRowCount(1);
        for (int column = 0; column < marks.size(); ++column) {
            auto* item = new QTableWidgetItem;
            item->setData(Qt::CheckStateRole, marks.at(column));
            table->setItem(0, column, item);
        }
    }

    static QList<int> marks(SelectCheckedDialog& dialog)
    {
        QList<int> result;
        for (int column = 0; column < dialog.getTable()->columnCount(); ++column)
            result.append(dialog.getTable()->item(0, column)->data(Qt::CheckStateRole).toInt());
        return result;
    }

    static void click(SelectCheckedDialog& dialog, const QByteArray& button)
    {
        auto* found = dialog.findChild<QPushButton*>(QLatin1String(button));
        QVERIFY2(found != nullptr, button.constData());
        QTest::mouseClick(found, Qt::LeftButton);
    }
};

QTEST_MAIN(tst_SelectCheckedDialog)
#include "tst_selectcheckeddialog.moc"
