// The list of regions: its form, its one place of change, the boxes, the signals.
#include "support/metamethods.h"
#include "support/modalwatchdog.h"

#include <tarnis/plots/viewselectedroi.h>

#include <QApplication>
#include <QDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>

using tarnis::testing::ModalWatchdog;

namespace {

QRect corners(int x1, int y1, int x2, int y2)
{
    return { QPoint(x1, y1), QPoint(x2, y2) };
}

/// A view of regions within 0 to 100 with access to its parts.
class View : public ViewSelectedROI {
public:
    explicit View(int maxCount = 0, QRect range = corners(0, 0, 100, 100))
        : ViewSelectedROI(maxCount, range, nullptr)
        , list(*findChild<QListWidget*>("roiListWidget"))
        , x1(*findChild<QSpinBox*>("x1SpinBox"))
        , y1(*findChild<QSpinBox*>("y1SpinBox"))
        , x2(*findChild<QSpinBox*>("x2SpinBox"))
        , y2(*findChild<QSpinBox*>("y2SpinBox"))
        , deleteButton(*findChild<QPushButton*>("deleteButton"))
        , clearButton(*findChild<QPushButton*>("clearButton"))
        , changed(this, &ViewSelectedROI::RoiChanged)
    {
    }
    QStringList items() const
    {
        QStringList texts;
        for (int i = 0; i < list.count(); ++i)
            texts << list.item(i)->text();
        return texts;
    }
    QList<QSpinBox*> spinBoxes() const { return { &x1, &y1, &x2, &y2 }; }
    QList<int> edges() const { return { x1.value(), y1.value(), x2.value(), y2.value() }; }
    bool areEdgesEnabled() const
    {
        return x1.isEnabled() && y1.isEnabled() && x2.isEnabled() && y2.isEnabled() && deleteButton.isEnabled();
    }
    /// Fills the view with three regions and clears the recorded signals.
    void fill(int selected = 2)
    {
        setRoiList({ corners(1, 2, 3, 4), corners(5, 6, 7, 8), corners(9, 10, 11, 12) }, selected);
        changed.clear();
    }

    using ViewSelectedROI::m_editable;
    using ViewSelectedROI::m_maxCount;
    using ViewSelectedROI::m_range;
    using ViewSelectedROI::m_roiList;
    using ViewSelectedROI::ui;

    QListWidget& list;
    QSpinBox& x1;
    QSpinBox& y1;
    QSpinBox& x2;
    QSpinBox& y2;
    QPushButton& deleteButton;
    QPushButton& clearButton;
    QSignalSpy changed;
};

/// Presses a button of a message box after a look at its text.
ModalWatchdog::Answer press(QMessageBox::StandardButton button, const QString& text)
{
    return [=](QWidget& window) {
        auto* box = qobject_cast<QMessageBox*>(&window);
        QVERIFY(box);
        QCOMPARE(box->text(), text);
        QVERIFY(box->parentWidget() == nullptr);
        QCOMPARE(box->standardButtons(), QMessageBox::Ok | QMessageBox::Cancel);
        QCOMPARE(box->defaultButton(), qobject_cast<QPushButton*>(box->button(QMessageBox::Cancel)));
        box->button(button)->click();
    };
}

const QString askDelete = QStringLiteral("Are you sure to delete selected item?");
const QString askClear = QStringLiteral("Are you sure to clear all items?");

} // namespace

#define COMPARE_SIGNAL(spy, number, list, index, data)                                                                 \
    do {                                                                                                               \
        QCOMPARE((spy).at(number).at(0).value<QList<QRect>>(), list);                                                  \
        QCOMPARE((spy).at(number).at(1).toInt(), index);                                                               \
        QCOMPARE((spy).at(number).at(2).toBool(), data);                                                               \
    } while (false)

class TestViewSelectedROI : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void formHasTheGivenSizeAndTexts()
    {
        View view;
        QCOMPARE(view.windowTitle(), QString("Form"));
        QCOMPARE(view.size(), QSize(200, 310));
        QCOMPARE(view.minimumWidth(), 200);
        QCOMPARE(view.maximumWidth(), 200);
        for (QSpinBox* box : view.spinBoxes()) {
            QVERIFY(!box->isEnabled());
            QCOMPARE(box->maximum(), 1280);
            QCOMPARE(box->minimum(), 0);
            QVERIFY(box->alignment().testFlags(Qt::AlignRight | Qt::AlignVCenter));
        }
        const auto text = [&](const char* name) { return view.findChild<QLabel*>(name)->text(); };
        QCOMPARE((QStringList { text("label"), text("label_2"), text("label_3"), text("label_4") }),
            (QStringList { "x1", "y1", "x2", "y2" }));
        QCOMPARE(view.deleteButton.text(), QString("Delete"));
        QCOMPARE(view.clearButton.text(), QString("Clear"));
        auto* outer = view.findChild<QGridLayout*>("gridLayout");
        auto* inner = view.findChild<QGridLayout*>("gridLayout_2");
        QVERIFY(outer && inner);
        QCOMPARE(outer->itemAtPosition(0, 0), outer->itemAtPosition(0, 1)); // the list, across both columns
        QCOMPARE(outer->itemAtPosition(1, 0)->layout(), inner);
        QCOMPARE(outer->itemAtPosition(2, 0)->widget(), &view.deleteButton);
        QCOMPARE(outer->itemAtPosition(2, 1)->widget(), &view.clearButton);
        QCOMPARE(inner->itemAtPosition(0, 1)->widget(), &view.x1);
        QCOMPARE(inner->itemAtPosition(0, 3)->widget(), &view.y1);
        QCOMPARE(inner->itemAtPosition(1, 1)->widget(), &view.x2);
        QCOMPARE(inner->itemAtPosition(1, 3)->widget(), &view.y2);
    }

    void startsWithItsDefaults()
    {
        View view(5);
        QCOMPARE(view.m_maxCount, 5);
        QCOMPARE(view.m_range, corners(0, 0, 100, 100));
        QVERIFY(view.m_editable && view.isEditable());
        QVERIFY(view.getRoiList().isEmpty());
        QCOMPARE(view.currentIndex(), -1);
    }

    void declaresItsOrders()
    {
        View v;
        const QList<const void*> places { &v.ui, &v.m_maxCount, &v.m_range, &v.m_editable, &v.m_roiList };
        for (qsizetype i = 1; i < places.size(); ++i)
            QVERIFY(std::less<>()(places.at(i - 1), places.at(i)));
        const QMetaObject& meta = ViewSelectedROI::staticMetaObject;
        QCOMPARE(tarnis::testing::ownMethods(meta),
            (QStringList { "signal RoiChanged(QList<QRect>,int,bool)", "slot on_roiListWidget_currentRowChanged(int)",
                "slot on_x1SpinBox_valueChanged(int)", "slot on_y1SpinBox_valueChanged(int)",
                "slot on_x2SpinBox_valueChanged(int)", "slot on_y2SpinBox_valueChanged(int)",
                "slot on_deleteButton_clicked()", "slot on_clearButton_clicked()" }));
        QCOMPARE(meta.method(meta.methodOffset()).parameterNames(),
            (QList<QByteArray> { "roiList", "selectedIndex", "dataChanged" }));
    }

    void limitsAndRanges()
    {
        QCOMPARE(View(-3).m_maxCount, 0);
        QCOMPARE(View(0, corners(50, 60, 10, 20)).m_range, corners(50, 60, 10, 20).normalized());
    }

    void addingSelects()
    {
        View view;
        view.addRoi(corners(1, 2, 3, 4));
        view.addRoi(corners(5, 6, 7, 8));
        QCOMPARE(view.items(), (QStringList { "ROI (1,2)-(3,4)", "ROI (5,6)-(7,8)" }));
        QCOMPARE(view.currentIndex(), 1);
        QCOMPARE(view.edges(), (QList<int> { 5, 6, 7, 8 }));
        QVERIFY(view.areEdgesEnabled() && view.clearButton.isEnabled());
        QCOMPARE(view.changed.size(), 2);
        COMPARE_SIGNAL(view.changed, 1, (QList<QRect> { corners(1, 2, 3, 4), corners(5, 6, 7, 8) }), 1, true);
    }

    void oldestIsRemovedFirst()
    {
        View view(8);
        for (int i = 1; i <= 9; ++i)
            view.addRoi(corners(i, i, i + 1, i + 1));
        QCOMPARE(view.getRoiList().size(), 8);
        QCOMPARE(view.getRoiList().constFirst().left(), 2);
        QCOMPARE(view.currentIndex(), 7);
        View endless;
        for (int i = 1; i <= 20; ++i)
            endless.addRoi(corners(i, i, i + 1, i + 1));
        QCOMPARE(endless.getRoiList().size(), 20);
    }

    void regionsAreClipped()
    {
        View view;
        view.addRoi(corners(-5, 50, 20, 500));
        QCOMPARE(view.getRoiList(), QList<QRect> { corners(0, 50, 20, 100) });
        QCOMPARE(view.items(), QStringList { "ROI (0,50)-(20,100)" });
        COMPARE_SIGNAL(view.changed, 0, (QList<QRect> { corners(0, 50, 20, 100) }), 0, true);
    }

    void regionOutsideIsTheNullRectangle()
    {
        View view;
        view.addRoi(corners(200, 200, 300, 300));
        QCOMPARE(view.getRoiList(), QList<QRect> { QRect() });
        QCOMPARE(view.items(), QStringList { "ROI (0,0)-(-1,-1)" });
    }

    void sameListSameIndexIsSilent()
    {
        View view;
        view.fill();
        view.setRoiList(view.getRoiList(), 2);
        view.setRoiList(view.getRoiList(), 99); // the last one again
        QVERIFY(view.changed.isEmpty());
    }

    void sameListOtherIndexIsNoChangeOfData()
    {
        View view;
        view.fill();
        view.setRoiList(view.getRoiList(), 0);
        QCOMPARE(view.changed.size(), 1);
        COMPARE_SIGNAL(view.changed, 0, view.getRoiList(), 0, false);
        QCOMPARE(view.edges(), (QList<int> { 1, 2, 3, 4 }));
    }

    void indexBeyondTheEndIsTheLast()
    {
        View view;
        view.fill(99);
        QCOMPARE(view.currentIndex(), 2);
        view.setRoiList({ corners(1, 1, 2, 2) }, 7);
        QCOMPARE(view.currentIndex(), 0);
    }

    void exactlyOneSignalForEachChange()
    {
        View view;
        view.fill(0);
        view.list.setCurrentRow(1);
        QCOMPARE(view.changed.size(), 1);
        COMPARE_SIGNAL(view.changed, 0, view.getRoiList(), 1, false);
        view.x1.setValue(4);
        QCOMPARE(view.changed.size(), 2);
        view.clear();
        QCOMPARE(view.changed.size(), 3);
        COMPARE_SIGNAL(view.changed, 2, QList<QRect>(), -1, true);
        view.clear();
        QCOMPARE(view.changed.size(), 3);
    }

    void foundBlocksArePutBack()
    {
        View view;
        view.blockSignals(true);
        view.list.blockSignals(true);
        view.x1.blockSignals(true);
        view.fill(1);
        QVERIFY(view.signalsBlocked() && view.list.signalsBlocked() && view.x1.signalsBlocked());
        view.blockSignals(false);
        view.list.blockSignals(false);
        view.x1.blockSignals(false);
        view.fill(0);
        QVERIFY(!view.signalsBlocked() && !view.list.signalsBlocked() && !view.x1.signalsBlocked());
    }

    void selectingShowsTheEdges()
    {
        View view;
        view.fill(2);
        view.list.setCurrentRow(0);
        QCOMPARE(view.edges(), (QList<int> { 1, 2, 3, 4 }));
        QVERIFY(view.areEdgesEnabled());
    }

    void disablesItsBoxesWithoutASelection()
    {
        View view;
        view.fill();
        view.list.setCurrentRow(-1);
        QCOMPARE(view.edges(), (QList<int> { 0, 0, 0, 0 }));
        for (const QSpinBox* box : view.spinBoxes())
            QVERIFY(!box->isEnabled());
        QVERIFY(!view.deleteButton.isEnabled() && view.clearButton.isEnabled());
        COMPARE_SIGNAL(view.changed, 0, view.getRoiList(), -1, false);
    }

    void spinBoxesMoveEdges_data()
    {
        QTest::addColumn<int>("box");
        QTest::addColumn<QRect>("region");
        QTest::newRow("x1") << 0 << corners(8, 6, 7, 8);
        QTest::newRow("y1") << 1 << corners(5, 8, 7, 8);
        QTest::newRow("x2") << 2 << corners(5, 6, 8, 8);
        QTest::newRow("y2") << 3 << corners(5, 6, 7, 8);
    }
    void spinBoxesMoveEdges()
    {
        QFETCH(int, box);
        QFETCH(QRect, region);
        View view;
        view.fill(1);
        view.spinBoxes().at(box)->setValue(box == 3 ? 9 : 8);
        if (box == 3)
            region.setBottom(9);
        // Qt's intersection puts the edges of an inside-out rectangle in order.
        QCOMPARE(view.getRoiList().at(1), region & view.m_range);
        QCOMPARE(view.currentIndex(), 1);
        QCOMPARE(view.changed.size(), 1);
        COMPARE_SIGNAL(view.changed, 0, view.getRoiList(), 1, true);
    }

    void spinBoxSnapsBack()
    {
        View view;
        view.fill(1);
        view.x2.setValue(500);
        QCOMPARE(view.getRoiList().at(1), corners(5, 6, 100, 8));
        QCOMPARE(view.x2.value(), 100);
        view.changed.clear();
        view.x2.setValue(500); // compared before it is clipped, and so snaps back again
        QCOMPARE(view.x2.value(), 100);
        COMPARE_SIGNAL(view.changed, 0, view.getRoiList(), 1, true);
    }

    void spinBoxWithoutASelection()
    {
        View view;
        view.fill();
        view.list.setCurrentRow(-1);
        view.changed.clear();
        view.y2.setValue(77);
        QVERIFY(view.changed.isEmpty());
        QCOMPARE(view.getRoiList().at(2), corners(9, 10, 11, 12));
    }

    void returnInASpinBoxPressesNoButton()
    {
        QDialog window;
        View view;
        view.setParent(&window);
        view.show();
        view.fill();
        window.show();
        const QSignalSpy deletes(&view.deleteButton, &QPushButton::clicked);
        const QSignalSpy clears(&view.clearButton, &QPushButton::clicked);
        view.deleteButton.disconnect(&view);
        view.clearButton.disconnect(&view);
        for (QSpinBox* const spinBox : view.spinBoxes())
            QTest::keyClick(spinBox->findChild<QLineEdit*>(), Qt::Key_Return);
        QCOMPARE(deletes.count(), 0);
        QCOMPARE(clears.count(), 0);
        view.setParent(nullptr);
    }

    void deletesTheCurrentRegionAfterAQuestion()
    {
        View view;
        view.fill(1);
        ModalWatchdog watchdog({ press(QMessageBox::Ok, askDelete) });
        view.deleteButton.click();
        QVERIFY(watchdog.isContent());
        QCOMPARE(view.getRoiList(), (QList<QRect> { corners(1, 2, 3, 4), corners(9, 10, 11, 12) }));
        QCOMPARE(view.currentIndex(), 1); // the one below becomes the current one
        QCOMPARE(view.edges(), (QList<int> { 9, 10, 11, 12 }));
        QCOMPARE(view.changed.size(), 1);
        COMPARE_SIGNAL(view.changed, 0, view.getRoiList(), 1, true);
    }

    void deletingTheOnlyOne()
    {
        View view;
        view.addRoi(corners(1, 2, 3, 4));
        view.changed.clear();
        ModalWatchdog watchdog({ press(QMessageBox::Ok, askDelete) });
        view.deleteButton.click();
        QVERIFY(view.getRoiList().isEmpty());
        // They stay as they were until the next selection.
        QCOMPARE(view.edges(), (QList<int> { 1, 2, 3, 4 }));
        QVERIFY(view.areEdgesEnabled() && !view.clearButton.isEnabled());
        COMPARE_SIGNAL(view.changed, 0, QList<QRect>(), -1, true);
        view.x1.setValue(2); // does nothing without a row
        QCOMPARE(view.changed.size(), 1);
        view.deleteButton.click(); // does not ask, and is disabled
        QVERIFY(!view.deleteButton.isEnabled());
        QVERIFY(watchdog.isContent());
    }

    void deletingCancelled()
    {
        View view;
        view.fill(1);
        ModalWatchdog watchdog({ press(QMessageBox::Cancel, askDelete) });
        view.deleteButton.click();
        QVERIFY(watchdog.isContent());
        QCOMPARE(view.getRoiList().size(), 3);
        QCOMPARE(view.changed.size(), 1);
        COMPARE_SIGNAL(view.changed, 0, view.getRoiList(), 1, true);
    }

    void deletingWithoutASelection()
    {
        View view;
        view.fill();
        view.list.setCurrentRow(-1);
        view.changed.clear();
        view.deleteButton.setEnabled(true);
        ModalWatchdog watchdog;
        view.deleteButton.click();
        QVERIFY(watchdog.isContent() && view.changed.isEmpty());
        QVERIFY(!view.deleteButton.isEnabled());
    }

    void clearsAllRegionsAfterAQuestion()
    {
        View view;
        view.fill();
        ModalWatchdog watchdog({ press(QMessageBox::Ok, askClear) });
        view.clearButton.click();
        QVERIFY(watchdog.isContent());
        QVERIFY(view.getRoiList().isEmpty() && !view.clearButton.isEnabled());
        QCOMPARE(view.changed.size(), 1);
        COMPARE_SIGNAL(view.changed, 0, QList<QRect>(), -1, true);
    }

    void clearingCancelled()
    {
        View view;
        view.fill();
        ModalWatchdog watchdog({ press(QMessageBox::Cancel, askClear) });
        view.clearButton.click();
        QVERIFY(watchdog.isContent() && view.changed.isEmpty());
        QCOMPARE(view.getRoiList().size(), 3);
    }

    void clearingNothing()
    {
        View view;
        ModalWatchdog watchdog;
        view.clearButton.setEnabled(true);
        view.clearButton.click();
        QVERIFY(watchdog.isContent() && view.changed.isEmpty());
        QVERIFY(!view.clearButton.isEnabled());
    }

    void mayGoWhileItsBoxIsOpen()
    {
        for (const bool clear : { false, true }) {
            QPointer<View> view = new View;
            view->fill();
            ModalWatchdog watchdog({ [&](QWidget& box) {
                delete view;
                qobject_cast<QMessageBox*>(&box)->button(QMessageBox::Ok)->click();
            } });
            if (clear)
                view->on_clearButton_clicked();
            else
                view->on_deleteButton_clicked();
            QVERIFY(view.isNull() && watchdog.isContent());
        }
    }

    void notEditable()
    {
        QCoreApplication::setApplicationName("regions");
        View view;
        view.fill(1);
        view.setEditable(false);
        QVERIFY(
            !view.isEditable() && !view.list.isEnabled() && !view.areEdgesEnabled() && !view.clearButton.isEnabled());
        const auto warned = [](QWidget& window) {
            auto* box = qobject_cast<QMessageBox*>(&window);
            QVERIFY(box);
            QCOMPARE(box->windowTitle(), QString("regions"));
            QCOMPARE(box->text(), QString("Can not edit ROI."));
            QCOMPARE(box->icon(), QMessageBox::Warning);
            box->accept();
        };
        ModalWatchdog watchdog({ warned, warned, warned });
        view.clear();
        view.addRoi(corners(1, 1, 2, 2));
        view.setRoiList(view.getRoiList(), 0);
        QVERIFY(watchdog.isContent());
        QCOMPARE(view.getRoiList().size(), 3);
        QVERIFY(view.changed.isEmpty());
        view.setEditable(true);
        QVERIFY(view.list.isEnabled() && view.areEdgesEnabled());
    }
};

QTEST_MAIN(TestViewSelectedROI)
#include "tst_viewselectedroi.moc"
