// The two floating boxes for a range: forms, numbers in and out.
#include "support/metamethods.h"
#include "support/wait.h"
#include "tarnis/plots/xrangeinputdialog.h"
#include "tarnis/plots/xyrangeinputdialog.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QTest>

#include <limits>

namespace {

template <typename Box> class RangeBoxProbe : public Box {
public:
    using Box::Box;
    using Box::m_format;
    using Box::m_precision;
    using Box::m_xMax;
    using Box::m_xMin;
    using Box::ui;
};

class XYRangeBoxProbe : public RangeBoxProbe<XYRangeInputDialog> {
public:
    using RangeBoxProbe::RangeBoxProbe;
    using XYRangeInputDialog::m_yMax;
    using XYRangeInputDialog::m_yMin;
};

QLineEdit* edit(const QWidget& box, const QString& end)
{
    return box.findChild<QLineEdit*>(end + QStringLiteral("Edit"));
}

void enter(QLineEdit* line, const QString& text)
{
    line->selectAll();
    QTest::keyClicks(line, text);
    QTest::keyClick(line, Qt::Key_Return);
}

/// Label texts and edits, row by row.
QStringList rows(const QWidget& box)
{
    const auto* grid = box.findChild<QGridLayout*>(QStringLiteral("gridLayout"));
    QStringList texts;
    for (int row = 0; row < grid->rowCount(); ++row) {
        const auto* label = qobject_cast<QLabel*>(grid->itemAtPosition(row, 0)->widget());
        texts << label->objectName() + ':' + label->text() + ':' + grid->itemAtPosition(row, 1)->widget()->objectName();
    }
    return texts;
}

void verifyLook(const QWidget& box)
{
    QCOMPARE(box.windowTitle(), QString("Dialog"));
    QVERIFY(box.windowFlags() & Qt::FramelessWindowHint);
    QVERIFY(box.isWindow());
    for (const auto group : { QPalette::Active, QPalette::Inactive, QPalette::Disabled })
        QCOMPARE(box.palette().brush(group, QPalette::Window).color(), QColor(Qt::lightGray));
    QVERIFY(box.autoFillBackground());
    QCOMPARE(box.findChild<QGridLayout*>("gridLayout")->spacing(), 6);
    for (const QLineEdit* line : box.findChildren<QLineEdit*>()) {
        QCOMPARE(line->alignment(), Qt::AlignRight | Qt::AlignVCenter);
        QVERIFY(line->text().isEmpty());
    }
}

} // namespace

class TestRangeBoxes : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void xBoxHasItsForm()
    {
        const RangeBoxProbe<XRangeInputDialog> box("TOF", 'g', 9, nullptr);
        verifyLook(box);
        QCOMPARE(rows(box), (QStringList { "xMinLabel:TOF-min:xMinEdit", "xMaxLabel:TOF-max:xMaxEdit" }));
        QCOMPARE(box.size(), QSize(160, 64));
        QCOMPARE(box.m_format, 'g');
        QCOMPARE(box.m_precision, 9);
        QCOMPARE(box.m_xMin, 0.0);
        QCOMPARE(box.m_xMax, 0.0);
        QVERIFY(reinterpret_cast<const char*>(&box.ui) < &box.m_format);
        QVERIFY(static_cast<const void*>(&box.m_format) < static_cast<const void*>(&box.m_precision));
        QVERIFY(static_cast<const void*>(&box.m_precision) < static_cast<const void*>(&box.m_xMin));
        QVERIFY(&box.m_xMin < &box.m_xMax);
    }

    void xyBoxHasItsForm()
    {
        const XYRangeBoxProbe box(nullptr, 'g', 6);
        verifyLook(box);
        QCOMPARE(rows(box),
            (QStringList { "xMinLabel:X-min:xMinEdit", "xMaxLabel:X-max:xMaxEdit", "yMinLabel:Y-min:yMinEdit",
                "yMaxLabel:Y-max:yMaxEdit" }));
        QCOMPARE(box.size(), QSize(115, 116));
        QCOMPARE(box.m_format, 'g');
        QCOMPARE(box.m_precision, 6);
        for (const double end : { box.m_xMin, box.m_xMax, box.m_yMin, box.m_yMax })
            QCOMPARE(end, 0.0);
        QVERIFY(static_cast<const void*>(&box.ui) < static_cast<const void*>(&box.m_format));
        QVERIFY(static_cast<const void*>(&box.m_format) < static_cast<const void*>(&box.m_precision));
        QVERIFY(static_cast<const void*>(&box.m_precision) < static_cast<const void*>(&box.m_xMin));
        QVERIFY(&box.m_xMin < &box.m_xMax && &box.m_xMax < &box.m_yMin && &box.m_yMin < &box.m_yMax);
    }

    void declareTheirMethodsInOrder()
    {
        QCOMPARE(tarnis::testing::ownMethods(XRangeInputDialog::staticMetaObject),
            (QStringList { "signal edited(double,double)", "slot on_xMinEdit_returnPressed()",
                "slot on_xMaxEdit_returnPressed()", "slot on_xMinEdit_editingFinished()",
                "slot on_xMaxEdit_editingFinished()" }));
        QCOMPARE(tarnis::testing::ownMethods(XYRangeInputDialog::staticMetaObject),
            (QStringList { "signal edited(double,double,double,double)", "slot on_xMinEdit_returnPressed()",
                "slot on_xMaxEdit_returnPressed()", "slot on_yMinEdit_returnPressed()",
                "slot on_yMaxEdit_returnPressed()", "slot on_xMinEdit_editingFinished()",
                "slot on_xMaxEdit_editingFinished()", "slot on_yMinEdit_editingFinished()",
                "slot on_yMaxEdit_editingFinished()" }));
        const auto names = [](const QMetaObject& meta) { return meta.method(meta.methodOffset()).parameterNames(); };
        QCOMPARE(names(XRangeInputDialog::staticMetaObject), (QList<QByteArray> { "x_min", "x_max" }));
        QCOMPARE(
            names(XYRangeInputDialog::staticMetaObject), (QList<QByteArray> { "x_min", "x_max", "y_min", "y_max" }));
    }

    void xSettersShowWithoutASignal()
    {
        XRangeInputDialog box("X", 'g', 6, nullptr);
        QSignalSpy edited(&box, &XRangeInputDialog::edited);
        box.setXMin(1.25);
        box.setXMax(-3.0);
        QCOMPARE(edit(box, "xMin")->text(), QString("1.25"));
        QCOMPARE(edit(box, "xMax")->text(), QString("-3"));
        QCOMPARE(edited.count(), 0);
    }

    void xySettersShowWithoutASignal()
    {
        XYRangeInputDialog box(nullptr, 'g', 6);
        QSignalSpy edited(&box, &XYRangeInputDialog::edited);
        box.setXMin(1.0);
        box.setXMax(2.0);
        box.setYMin(3.0);
        box.setYMax(4.0);
        QCOMPARE(edit(box, "xMin")->text(), QString("1"));
        QCOMPARE(edit(box, "xMax")->text(), QString("2"));
        QCOMPARE(edit(box, "yMin")->text(), QString("3"));
        QCOMPARE(edit(box, "yMax")->text(), QString("4"));
        QCOMPARE(edited.count(), 0);
    }

    void numbersAreShownInTheGivenFormat()
    {
        XRangeInputDialog nine("X", 'g', 9, nullptr);
        nine.setXMin(123456789.25);
        QCOMPARE(edit(nine, "xMin")->text(), QString("123456789"));
        XRangeInputDialog fixed("X", 'f', 2, nullptr);
        fixed.setXMin(0.005);
        fixed.setXMax(std::numeric_limits<double>::infinity());
        QCOMPARE(edit(fixed, "xMin")->text(), QString::number(0.005, 'f', 2));
        QCOMPARE(edit(fixed, "xMax")->text(), QString("inf"));
    }

    void longNumbersHaveRoom()
    {
        XRangeInputDialog box("Time", 'g', 9, nullptr);
        box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&box));
        for (const double value : { 11212.7237, -1.23456789e-105 }) {
            box.setXMin(value);
            const QLineEdit* const line = edit(box, "xMin");
            const QString text = QString::number(value, 'g', 9);
            QCOMPARE(line->text(), text);
            // If the complete text fits, nothing is scrolled: the frame, the margins and the cursor fit too.
            TRY_VERIFY(line->width() >= line->fontMetrics().horizontalAdvance(text) + 8);
            TRY_VERIFY(box.rect().contains(line->geometry()));
        }
        const int wide = box.width();
        box.setXMin(1.0);
        QCOMPARE(box.width(), wide); // stays
    }

    void typedNumbers_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QVariantList>("expected");
        QTest::addColumn<QString>("shown");
        QTest::newRow("whole") << "12" << QVariantList { 12.0, 9.0 } << "12";
        QTest::newRow("exponent") << "1.5e3" << QVariantList { 1500.0, 9.0 } << "1500";
        QTest::newRow("blanks around") << " 4 " << QVariantList { 4.0, 9.0 } << "4";
        QTest::newRow("too many digits") << "0.1234567" << QVariantList { 0.1234567, 9.0 } << "0.123457";
        QTest::newRow("above the maximum") << "99" << QVariantList { 99.0, 9.0 } << "99";
        QTest::newRow("letters") << "abc" << QVariantList() << "1";
        QTest::newRow("decimal comma") << "1,5" << QVariantList() << "1";
        QTest::newRow("nothing") << "" << QVariantList() << "1";
        QTest::newRow("too large") << "1e999" << QVariantList() << "1";
    }
    void typedNumbers()
    {
        QFETCH(QString, text);
        QFETCH(QVariantList, expected);
        XRangeInputDialog box("X", 'g', 6, nullptr);
        box.setXMin(1.0);
        box.setXMax(9.0);
        QSignalSpy edited(&box, &XRangeInputDialog::edited);
        if (text.isEmpty())
            edit(box, "xMin")->clear();
        enter(edit(box, "xMin"), text);
        QCOMPARE(edited.count(), expected.isEmpty() ? 0 : 1);
        if (!expected.isEmpty())
            QCOMPARE(edited.first(), expected);
        QTEST(edit(box, "xMin")->text(), "shown");
    }

    void returnEmitsOnceAndRewritesTheText()
    {
        XRangeInputDialog box("X", 'g', 6, nullptr);
        QSignalSpy edited(&box, &XRangeInputDialog::edited);
        enter(edit(box, "xMax"), "7.000000001");
        QCOMPARE(edited.count(), 1);
        QCOMPARE(edited.first(), (QVariantList { 0.0, 7.000000001 }));
        QCOMPARE(edit(box, "xMax")->text(), QString("7"));
        QTest::keyClick(edit(box, "xMax"), Qt::Key_Return); // the rewritten text is a new entry
        QCOMPARE(edited.last(), (QVariantList { 0.0, 7.0 }));
    }

    void invalidTextIsReplacedWhenTheFocusIsLost()
    {
        XRangeInputDialog box("X", 'g', 6, nullptr);
        box.setXMin(3.0);
        box.setXMax(4.0);
        QSignalSpy edited(&box, &XRangeInputDialog::edited);
        box.show();
        box.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&box));
        edit(box, "xMin")->setFocus();
        edit(box, "xMin")->selectAll();
        QTest::keyClicks(edit(box, "xMin"), "oops");
        QTest::keyClick(edit(box, "xMin"), Qt::Key_Tab);
        QVERIFY(edit(box, "xMax")->hasFocus());
        QCOMPARE(edit(box, "xMin")->text(), QString("3"));
        edit(box, "xMax")->selectAll();
        QTest::keyClicks(edit(box, "xMax"), "55"); // a number, but without Return: not accepted either
        edit(box, "xMin")->setFocus();
        QCOMPARE(edit(box, "xMax")->text(), QString("4"));
        QCOMPARE(edited.count(), 0);
    }

    void untouchedEditsShowZeroWhenLeft()
    {
        XYRangeInputDialog box(nullptr, 'g', 6);
        for (const char* end : { "xMin", "xMax", "yMin", "yMax" }) {
            QLineEdit* line = edit(box, QString::fromLatin1(end));
            QTest::keyClick(line, Qt::Key_Return);
            QCOMPARE(line->text(), QString("0"));
        }
    }

    void xyReturnEmitsAllFour()
    {
        XYRangeInputDialog box(nullptr, 'g', 6);
        QSignalSpy edited(&box, &XYRangeInputDialog::edited);
        enter(edit(box, "xMin"), "1");
        enter(edit(box, "xMax"), "2");
        enter(edit(box, "yMin"), "3");
        enter(edit(box, "yMax"), "4");
        enter(edit(box, "yMax"), "four");
        QCOMPARE(edited,
            (QList<QVariantList> {
                { 1.0, 0.0, 0.0, 0.0 }, { 1.0, 2.0, 0.0, 0.0 }, { 1.0, 2.0, 3.0, 0.0 }, { 1.0, 2.0, 3.0, 4.0 } }));
        QCOMPARE(edit(box, "yMax")->text(), QString("4"));
    }
};

QTEST_MAIN(TestRangeBoxes)
#include "tst_rangeboxes.moc"
