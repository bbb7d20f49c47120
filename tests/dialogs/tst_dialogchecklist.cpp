#include "support/metamethods.h"

#include <tarnis/dialogs/dialogchecklist.h>

#include <QDialogButtonBox>
#include <QLabel>
#include <QLayout>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

class tst_DialogCheckList : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void formHasTheGivenSizeAndTexts()
    {
        const DialogCheckList dialog(QString(), nullptr);
        QCOMPARE(dialog.size(), QSize(319, 409));
        QCOMPARE(dialog.layout()->objectName(), QStringLiteral("verticalLayout"));
        QVERIFY(dialog.findChild<QLabel*>(QStringLiteral("labelDescription"))->wordWrap());
        const auto textOf = [&dialog](const char* name) {
            auto* button = dialog.findChild<QPushButton*>(QLatin1String(name));
            return button != nullptr ? button->text() : QString();
        };
        QCOMPARE(textOf("buttonCheckAll"), QStringLiteral("Check All"));
        QCOMPARE(textOf("buttonUncheckAll"), QStringLiteral("Uncheck All"));
        QCOMPARE(textOf("buttonInvert"), QStringLiteral("Invert"));
        const auto* box = dialog.findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"));
        QCOMPARE(box->standardButtons(), QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    }

    void metaObjectOrder()
    {
        QCOMPARE(tarnis::testing::ownMethods(DialogCheckList::staticMetaObject),
            (QStringList { "slot on_buttonCheckAll_clicked()", "slot on_buttonUncheckAll_clicked()",
                "slot on_buttonInvert_clicked()" }));
    }

    void titleIsDialogUnlessGiven()
    {
        QCOMPARE(DialogCheckList(QString(), nullptr).windowTitle(), QStringLiteral("Dialog"));
        QCOMPARE(DialogCheckList(QStringLiteral("Modules"), nullptr).windowTitle(), QStringLiteral("Modules"));
    }

    void descriptionIsHiddenWhileEmpty()
    {
        DialogCheckList dialog(QString(), nullptr);
        auto* label = dialog.findChild<QLabel*>(QStringLiteral("labelDescription"));
        QVERIFY(label->text().isEmpty());
        QVERIFY(label->isHidden());
        dialog.setDescription(QStringLiteral("Pick some"));
        QCOMPARE(label->text(), QStringLiteral("Pick some"));
        QVERIFY(!label->isHidden());
        dialog.setDescription(QString());
        QVERIFY(label->isHidden());
    }

    void itemsKeepTheirTextAndCheckState()
    {
        DialogCheckList dialog(QString(), nullptr);
        QCOMPARE(dialog.count(), 0);
        dialog.addItem(QStringLiteral("first"), false);
        dialog.addItem(QStringLiteral("second"), true);
        QCOMPARE(dialog.count(), 2);
        QString text;
        bool checked = false;
        dialog.getItem(1, text, checked);
        QCOMPARE(text, QStringLiteral("second"));
        QVERIFY(checked);
        dialog.setChecked(1, false);
        dialog.setChecked(0, true);
        QCOMPARE(readMarks(dialog), (QList<bool> { true, false }));

        auto* list = dialog.findChild<QListWidget*>(QStringLiteral("listWidget"));
        QVERIFY(list->item(0)->flags().testFlag(Qt::ItemIsUserCheckable));
        list->item(0)->setCheckState(Qt::PartiallyChecked);
        QCOMPARE(readMarks(dialog), (QList<bool> { false, false }));

        dialog.getItem(7, text, checked);
        QVERIFY(text.isEmpty());
        QVERIFY(!checked);
        dialog.setChecked(-1, true);
        dialog.setChecked(2, true);
        QCOMPARE(dialog.count(), 2);
    }

    void buttonsMarkEveryItem_data()
    {
        QTest::addColumn<QByteArray>("button");
        QTest::addColumn<QList<bool>>("expected");
        QTest::newRow("check all") << QByteArray("buttonCheckAll") << QList<bool> { true, true, true };
        QTest::newRow("uncheck all") << QByteArray("buttonUncheckAll") << QList<bool> { false, false, false };
        QTest::newRow("invert takes partial for unchecked")
            << QByteArray("buttonInvert") << QList<bool> { true, false, true };
    }
    void buttonsMarkEveryItem()
    {
        QFETCH(QByteArray, button);
        QFETCH(QList<bool>, expected);
        DialogCheckList dialog(QString(), nullptr);
        dialog.addItem(QStringLiteral("unchecked"), false);
        dialog.addItem(QStringLiteral("checked"), true);
        dialog.addItem(QStringLiteral("partial"), false);
        auto* list = dialog.findChild<QListWidget*>(QStringLiteral("listWidget"));
        list->item(2)->setCheckState(Qt::PartiallyChecked);
        click(dialog, button);
        QCOMPARE(readMarks(dialog), expected);
    }

    // A second connection beside the one by name would invert twice.
    void aClickCountsOnce()
    {
        DialogCheckList dialog(QString(), nullptr);
        dialog.addItem(QStringLiteral("only"), false);
        click(dialog, "buttonInvert");
        QCOMPARE(readMarks(dialog), (QList<bool> { true }));
    }

    void okAndCancel()
    {
        DialogCheckList dialog(QString(), nullptr);
        auto* box = dialog.findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"));
        dialog.show();
        QTest::mouseClick(box->button(QDialogButtonBox::Cancel), Qt::LeftButton);
        QCOMPARE(dialog.result(), static_cast<int>(QDialog::Rejected));
        QVERIFY(!dialog.isVisible());
        dialog.show();
        QTest::mouseClick(box->button(QDialogButtonBox::Ok), Qt::LeftButton);
        QCOMPARE(dialog.result(), static_cast<int>(QDialog::Accepted));
    }

private:
    static QList<bool> readMarks(const DialogCheckList& dialog)
    {
        QList<bool> marks;
        for (int i = 0; i < dialog.count(); ++i) {
            QString text;
            bool checked = false;
            dialog.getItem(i, text, checked);
            marks.append(checked);
        }
        return marks;
    }

    static void click(DialogCheckList& dialog, const QByteArray& button)
    {
        auto* found = dialog.findChild<QPushButton*>(QLatin1String(button));
        QVERIFY2(found != nullptr, button.constData());
        QTest::mouseClick(found, Qt::LeftButton);
    }
};

QTEST_MAIN(tst_DialogCheckList)
#include "tst_dialogchecklist.moc"
