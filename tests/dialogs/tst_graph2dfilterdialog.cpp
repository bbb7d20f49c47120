// The kernel's form: what it shows, how text becomes numbers, what the process remembers.
#include "support/metamethods.h"

#include <tarnis/dialogs/graph2dfilterdialog.h>

#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

namespace {

QLineEdit* field(const Graph2DFilterDialog& dialog, int row, int column)
{
    return dialog.findChild<QLineEdit*>(QStringLiteral("matrix%1%2LineEdit").arg(row + 1).arg(column + 1));
}

QLineEdit* divisorField(const Graph2DFilterDialog& dialog)
{
    return dialog.findChild<QLineEdit*>(QStringLiteral("divisorLineEdit"));
}

void press(const Graph2DFilterDialog& dialog, QDialogButtonBox::StandardButton button)
{
    dialog.findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"))->button(button)->click();
}

/// Resets the stored kernel to the default, from which the tests below start.
void rememberDefault()
{
    Graph2DFilterDialog dialog(nullptr);
    for (int row = 0; row < 5; ++row) {
        for (int column = 0; column < 5; ++column)
            field(dialog, row, column)->setText(row == 2 && column == 2 ? "1" : "0");
    }
    divisorField(dialog)->setText("1");
    press(dialog, QDialogButtonBox::Ok);
}

/// The kernel emitted by the dialog after `edit` has changed its fields and Ok was pressed.
template <typename Edit> Graph2DFilter acceptedAfter(Edit edit)
{
    Graph2DFilterDialog dialog(nullptr);
    edit(dialog);
    Graph2DFilter result;
    QObject::connect(&dialog, qOverload<Graph2DFilter>(&Graph2DFilterDialog::accepted),
        [&](Graph2DFilter filter) { result = filter; });
    press(dialog, QDialogButtonBox::Ok);
    return result;
}

} // namespace

class TestGraph2DFilterDialog : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void firstOpeningShowsTheIdentity()
    {
        const Graph2DFilterDialog dialog(nullptr);
        for (int row = 0; row < 5; ++row) {
            for (int column = 0; column < 5; ++column)
                QCOMPARE(field(dialog, row, column)->text(), row == 2 && column == 2 ? "1" : "0");
        }
        QCOMPARE(divisorField(dialog)->text(), "1");
    }

    void methodOrder()
    {
        const QMetaObject& meta = Graph2DFilterDialog::staticMetaObject;
        QCOMPARE(
            tarnis::testing::ownMethods(meta), QStringList({ "signal accepted(Graph2DFilter)", "slot onAccepted()" }));
        QCOMPARE(meta.method(meta.methodOffset()).parameterNames(), QList<QByteArray>({ "filter" }));
        QVERIFY(QMetaType::fromName("Graph2DFilter").isValid());
    }

    void formHasTheGivenSizeAndTexts()
    {
        const Graph2DFilterDialog dialog(nullptr);
        QCOMPARE(dialog.windowTitle(), "Filter");
        QCOMPARE(dialog.size(), QSize(307, 256));
        const auto* const group = dialog.findChild<QGroupBox*>("groupBox");
        QCOMPARE(group->title(), "Matrix");
        QCOMPARE(group->geometry(), QRect(QPoint(10, 10), QPoint(290, 180)));
        QCOMPARE(
            dialog.findChild<QDialogButtonBox*>("buttonBox")->geometry(), QRect(QPoint(10, 220), QPoint(290, 251)));
        QCOMPARE(dialog.findChild<QLabel*>("label")->text(), "Divisor");
        // The grid on the screen is the grid of the names.
        for (int row = 0; row < 5; ++row) {
            for (int column = 0; column < 4; ++column) {
                QVERIFY(field(dialog, row, column)->geometry().right() < field(dialog, row, column + 1)->x());
                QVERIFY(field(dialog, column, row)->geometry().bottom() < field(dialog, column + 1, row)->y());
            }
        }
    }

    void defaultRecordIsTheIdentity()
    {
        const Graph2DFilter filter;
        int sum = 0;
        for (const auto& row : filter.matrix) {
            for (const int weight : row)
                sum += weight;
        }
        QCOMPARE(sum, 1);
        QCOMPARE(filter.matrix[2][2], 1);
        QCOMPARE(filter.divisor, 1);
    }

    void everyFieldHasItsPlace()
    {
        const Graph2DFilter filter = acceptedAfter([](Graph2DFilterDialog& dialog) {
            for (int row = 0; row < 5; ++row) {
                for (int column = 0; column < 5; ++column)
                    field(dialog, row, column)->setText(QString::number(10 * row + column));
            }
            divisorField(dialog)->setText("-3");
        });
        for (int row = 0; row < 5; ++row) {
            for (int column = 0; column < 5; ++column)
                QCOMPARE(filter.matrix[row][column], 10 * row + column);
        }
        QCOMPARE(filter.divisor, -3);
        rememberDefault();
    }

    void textBecomesNumber_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("value");
        QTest::newRow("negative") << "-1" << -1;
        QTest::newRow("empty") << "" << 0;
        QTest::newRow("fraction") << "1.5" << 0;
        QTest::newRow("word") << "one" << 0;
        QTest::newRow("hexadecimal") << "0x10" << 0;
        QTest::newRow("largest") << "2147483647" << 2147483647;
        QTest::newRow("one beyond") << "2147483648" << 0;
        QTest::newRow("least") << "-2147483648" << int(-2147483647 - 1);
        QTest::newRow("one below") << "-2147483649" << 0;
    }

    void textBecomesNumber()
    {
        QFETCH(QString, text);
        QFETCH(int, value);
        const Graph2DFilter filter = acceptedAfter([&](Graph2DFilterDialog& dialog) {
            field(dialog, 2, 2)->setText(text);
            divisorField(dialog)->setText(text);
        });
        QCOMPARE(filter.matrix[2][2], value);
        QCOMPARE(filter.divisor, value);
        rememberDefault();
    }

    void okEmitsOnceBeforeItCloses()
    {
        Graph2DFilterDialog dialog(nullptr);
        dialog.show();
        int emitted = 0;
        bool visible = false;
        QString shownByTheNext;
        connect(&dialog, qOverload<Graph2DFilter>(&Graph2DFilterDialog::accepted), this, [&] {
            ++emitted;
            visible = dialog.isVisible();
            shownByTheNext = field(Graph2DFilterDialog(nullptr), 0, 0)->text();
        });
        field(dialog, 0, 0)->setText("8");
        press(dialog, QDialogButtonBox::Ok);
        QCOMPARE(emitted, 1);
        QVERIFY(visible);
        QVERIFY(!dialog.isVisible());
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(shownByTheNext, "8"); // stored before the signal
        rememberDefault();
    }

    void cancelStoresNothing()
    {
        {
            Graph2DFilterDialog dialog(nullptr);
            QSignalSpy spy(&dialog, SIGNAL(accepted(Graph2DFilter)));
            field(dialog, 0, 0)->setText("9");
            press(dialog, QDialogButtonBox::Cancel);
            QCOMPARE(spy.count(), 0);
            QCOMPARE(dialog.result(), int(QDialog::Rejected));
        }
        QCOMPARE(field(Graph2DFilterDialog(nullptr), 0, 0)->text(), "0");
    }

    void receiverMayDeleteTheDialog()
    {
        const QPointer dialog = new Graph2DFilterDialog(nullptr);
        connect(dialog, qOverload<Graph2DFilter>(&Graph2DFilterDialog::accepted), this, [&] { delete dialog; });
        press(*dialog, QDialogButtonBox::Ok);
        QVERIFY(dialog.isNull());
    }
};

QTEST_MAIN(TestGraph2DFilterDialog)
#include "tst_graph2dfilterdialog.moc"
