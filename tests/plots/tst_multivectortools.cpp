// The tools of the plot of many series, used as a user does: CSV file and visible items.
#include "plots/modulesplot.h"
#include "support/cases.h"
#include "support/modalwatchdog.h"
#include "support/pictures.h"
#include "support/plotmouse.h"
#include "support/wait.h"

#include <tarnis/dialogs/selectcheckeddialog.h>
#include <tarnis/foundation/helpers.h>
#include <tarnis/tools/plotstyle.h>

#include <QFile>
#include <QFileDialog>
#include <QHeaderView>
#include <QRegularExpression>
#include <QTableWidget>
#include <QTemporaryDir>

#include <memory>

using namespace tarnis::testing;

namespace {

QStringList headers(const QTableWidget& table, Qt::Orientation orientation)
{
    const QAbstractItemModel& model = *table.model();
    QStringList texts;
    for (int i = 0; i < (orientation == Qt::Horizontal ? table.columnCount() : table.rowCount()); ++i)
        texts << model.headerData(i, orientation).toString();
    return texts;
}

/// A row as "xo." for checked, unchecked and empty cells; "#" for a swatch.
QString marks(const QTableWidget& table, int row)
{
    QString text;
    for (int column = 0; column < table.columnCount(); ++column) {
        const QTableWidgetItem* item = table.item(row, column);
        if (item == nullptr)
            text += u'.';
        else if (item->flags() == Qt::NoItemFlags)
            text += u'#';
        else
            text += item->checkState() == Qt::Checked ? u'x' : u'o';
    }
    return text;
}

/// Clicks the mark of a cell.
void toggle(QTableWidget& table, int row, int column)
{
    QTableWidgetItem* item = table.item(row, column);
    item->setCheckState(item->checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked);
}

} // namespace

class TestMultiVectorTools : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QVERIFY(folder.isValid());
        setSaveFilePath(folder.path() + u'/');
    }

    void csvOfAList()
    {
        Plot plot;
        const QList<MultiVectorGraphWidget::Data> list { { { 1.0, 2.0, 3.0 }, Qt::white, true },
            { { 7.0, 7.0, 7.0, 7.0, 7.0, 7.0 }, Qt::white, false }, { { 4.0, 5.0, 6.0, 7.5, 8.0 }, Qt::white, true } };
        QCOMPARE(plot.vector2Csv(list), QStringLiteral("1,4\n2,5\n3,6\n,7.5\n,8\n"));
        plot.setManualIndex({ 10.0, 20.0 });
        QCOMPARE(plot.vector2Csv(list), QStringLiteral("10,1,4\n20,2,5\n3,6\n,7.5\n,8\n"));
        QVERIFY(plot.vector2Csv({}).isEmpty());
        QVERIFY(plot.vector2Csv({ list.at(1) }).isEmpty());
    }

    void saveCsv_data()
    {
        addColumns<int, int, QString>("type", "groupSize", "text");
        QTest::newRow("every series") << 0 << 2 << "Module 3 - ch 0,Module 4 - ch 0\n1,3\n1,3\n";
        QTest::newRow("groups") << 1 << 2 << "Module 3,Module 4\n3,3\n3,3\n";
        QTest::newRow("one group has no heading") << 1 << 8 << "6\n6\n";
        QTest::newRow("positions") << 2 << 2 << "ch 0\n4\n4\n";
        QTest::newRow("all, hidden ones too") << 3 << 2 << "All\n6\n6\n";
    }
    void saveCsv()
    {
        QFETCH(int, type);
        QFETCH(int, groupSize);
        Plot plot;
        plot.m_groupSize = groupSize;
        plot.m_firstNumber = 3;
        plot.fill(3);
        plot.setEnable(1, false);
        plot.setAddType(static_cast<MultiVectorGraphWidget::AddType>(type));
        QTEST(savedFile(plot), "text");
    }

    void saveCsvAsksInTheSaveDirectory()
    {
        Plot plot;
        QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("deep")));
        ModalWatchdog watchdog(
            { [](QWidget& window) {
                 auto* dialog = qobject_cast<QFileDialog*>(&window);
                 QVERIFY(dialog != nullptr);
                 QCOMPARE(dialog->windowTitle(), QStringLiteral("Save CSV"));
                 QCOMPARE(dialog->nameFilters(), QStringList { QStringLiteral("CSV Files (*.csv *.txt)") });
                 dialog->reject();
             },
                acceptFile(folder.filePath(QStringLiteral("deep/a.csv"))) });
        QVERIFY(PlotMouse(plot).pick(QStringLiteral("Save CSV...")));
        QCOMPARE(getSaveDir(), folder.path() + u'/');
        QVERIFY(PlotMouse(plot).pick(QStringLiteral("Save CSV...")));
        QVERIFY(watchdog.isContent());
        QCOMPARE(getSaveDir(), folder.filePath(QStringLiteral("deep/")));
    }

    void saveCsvIsSilentOnFailure()
    {
        Plot plot;
        ModalWatchdog watchdog({ acceptFile(QStringLiteral("/proc/nowhere.csv")) });
        plot.onSaveCsv();
        QVERIFY(watchdog.isContent());
        QCOMPARE(getSaveDir(), folder.path() + u'/');
    }

    void visiblesOfEverySeries()
    {
        Plot plot;
        plot.m_firstNumber = 2;
        plot.fill(10);
        plot.setEnable(3, false);
        for (const auto type : { MultiVectorGraphWidget::AddNone, MultiVectorGraphWidget::AddAll }) {
            plot.setAddType(type);
            plot.onSelectVisibles();
            const QTableWidget& table = *plot.visibles()->getTable();
            QCOMPARE(plot.visibles()->windowTitle(), QStringLiteral("Select Visible Items"));
            QVERIFY(plot.visibles()->isVisible() && plot.visibles()->testAttribute(Qt::WA_DeleteOnClose));
            QVERIFY(table.horizontalHeader()->isVisible() && table.verticalHeader()->isVisible());
            QCOMPARE(table.verticalHeader()->defaultSectionSize(), 18);
            QCOMPARE(headers(table, Qt::Horizontal),
                (QStringList { "ch 0", "ch 1", "ch 2", "ch 3", "ch 4", "ch 5", "ch 6", "ch 7" }));
            QCOMPARE(headers(table, Qt::Vertical), (QStringList { "Module 2", "Module 3" }));
            QCOMPARE(marks(table, 0), QStringLiteral("xxxoxxxx"));
            QCOMPARE(marks(table, 1), QStringLiteral("xx......"));
            QVERIFY(table.item(0, 0)->text().isEmpty());
            delete plot.visibles();
        }
    }

    void visiblesOfGroupsOfOne()
    {
        Plot plot;
        plot.m_groupSize = 1;
        plot.fill(3);
        plot.onSelectVisibles();
        const QTableWidget& table = *plot.visibles()->getTable();
        QCOMPARE(headers(table, Qt::Horizontal), QStringList { "ch *" });
        QCOMPARE(headers(table, Qt::Vertical), (QStringList { "Module 0", "Module 1", "Module 2" }));
        QCOMPARE(marks(table, 2), QStringLiteral("x"));
    }

    void visiblesOfGroups()
    {
        Plot plot;
        plot.m_groupSize = 2;
        plot.fill(6);
        plot.resizeData(9); // the last ones have no samples
        plot.setEnable(2, false);
        plot.setAddType(MultiVectorGraphWidget::AddEachGroup);
        plot.onSelectVisibles();
        const QTableWidget& table = *plot.visibles()->getTable();
        QCOMPARE(headers(table, Qt::Horizontal), (QStringList { "ch *", "  " }));
        QCOMPARE(headers(table, Qt::Vertical), (QStringList { "Module 0", "Module 1", "Module 2" }));
        QCOMPARE(marks(table, 0), QStringLiteral("x#"));
        QCOMPARE(marks(table, 1), QStringLiteral("o#"));
        QCOMPARE(table.item(0, 1)->background().color(), QColor(255, 51, 0));
        QCOMPARE(table.item(2, 1)->background().color(), QColor(51, 153, 102));
    }

    void visiblesFollowTheStyle()
    {
        Plot plot;
        plot.m_groupSize = 2;
        plot.fill(6);
        plot.setAddType(MultiVectorGraphWidget::AddEachGroup);
        plot.show();
        plot.onSelectVisibles();
        const QTableWidget& table = *plot.visibles()->getTable();
        const auto colourOf = [&](int row) { return table.item(row, 1)->background().color(); };
        const QColor classic = colourOf(0);
        auto style = std::make_unique<tarnis::PlotStyle>(&plot, tarnis::PlotStyle::Theme::Dark);
        TRY_VERIFY(colourOf(0) != classic);
        const QColor dark = colourOf(0);
        style->setTheme(tarnis::PlotStyle::Theme::HighContrast);
        TRY_VERIFY(colourOf(0) != dark);
        style.reset();
        TRY_COMPARE(colourOf(0), classic);
        QCOMPARE(marks(table, 0), QStringLiteral("x#"));
    }

    void visiblesOfPositions()
    {
        Plot plot;
        plot.m_groupSize = 3;
        plot.fill(5);
        plot.setEnable(1, false);
        plot.setAddType(MultiVectorGraphWidget::AddEachPosition);
        plot.onSelectVisibles();
        const QTableWidget& table = *plot.visibles()->getTable();
        QCOMPARE(headers(table, Qt::Horizontal), (QStringList { "ch 0", "ch 1", "ch 2" }));
        QCOMPARE(headers(table, Qt::Vertical), QStringList { "Module *" });
        QCOMPARE(marks(table, 0), QStringLiteral("xox"));
    }

    void visiblesDialogIsOne()
    {
        Plot plot;
        plot.fill(3);
        plot.onSelectVisibles();
        QPointer<SelectCheckedDialog> dialog = plot.visibles();
        dialog->hide();
        plot.onSelectVisibles();
        QCOMPARE(plot.visibles(), dialog.data());
        QVERIFY(dialog->isVisible());
        QCOMPARE(plot.findChildren<SelectCheckedDialog*>().size(), 1);
        dialog->close();
        TRY_VERIFY(dialog.isNull());
        QVERIFY(plot.m_visibleDialogs.map.isEmpty());
    }

    void visiblesAreApplied()
    {
        Plot plot;
        plot.fill(10);
        plot.onSelectVisibles();
        QTableWidget& table = *plot.visibles()->getTable();
        toggle(table, 0, 2);
        toggle(table, 1, 1);
        QVERIFY(plot.m_data.at(2).enable); // not before Apply
        plot.wasRefreshed();
        click(*plot.visibles(), "applyPushButton");
        QVERIFY(!plot.m_data.at(2).enable && !plot.m_data.at(9).enable && plot.m_data.at(8).enable);
        QVERIFY(plot.wasRefreshed());
        QVERIFY(plot.visibles()->isVisible());
        table.selectAll();
        click(*plot.visibles(), "unselectAllPushButton");
        click(*plot.visibles(), "applyPushButton");
        for (const auto& series : std::as_const(plot.m_data))
            QVERIFY(!series.enable);
    }

    void visiblesOfGroupsAreApplied()
    {
        Plot plot;
        plot.m_groupSize = 2;
        plot.fill(6);
        plot.setAddType(MultiVectorGraphWidget::AddEachGroup);
        plot.onSelectVisibles();
        toggle(*plot.visibles()->getTable(), 1, 0);
        plot.visibles()->getTable()->selectAll(); // the swatches are not to be selected
        click(*plot.visibles(), "applyPushButton");
        QList<bool> enabled;
        for (const auto& series : std::as_const(plot.m_data))
            enabled << series.enable;
        QCOMPARE(enabled, (QList<bool> { true, true, false, true, true, true }));
    }

    void visiblesAfterTheSeriesWentAway()
    {
        Plot plot;
        plot.fill(10);
        plot.onSelectVisibles();
        plot.resizeData(3);
        toggle(*plot.visibles()->getTable(), 0, 1);
        click(*plot.visibles(), "applyPushButton");
        QCOMPARE(plot.m_data.size(), 3);
        QVERIFY(!plot.m_data.at(1).enable);
        delete plot.visibles();
        plot.onDlgSelectCheckedApply(); // does nothing without a dialog
    }

    void newTypeClosesTheVisibles()
    {
        Plot plot;
        plot.fill(3);
        plot.onSelectVisibles();
        QPointer<SelectCheckedDialog> dialog = plot.visibles();
        plot.setAddType(MultiVectorGraphWidget::AddEachGroup);
        QVERIFY(!dialog->isVisible());
        TRY_VERIFY(dialog.isNull());
        QVERIFY(plot.m_visibleDialogs.map.isEmpty());
    }

private:
    QString savedFile(Plot& plot)
    {
        const QString path = folder.filePath(QStringLiteral("plot.csv"));
        QFile::remove(path);
        ModalWatchdog watchdog({ acceptFile(path) });
        plot.onSaveCsv();
        QFile file(path);
        if (!watchdog.isContent() || !file.open(QIODevice::ReadOnly))
            return QStringLiteral("no file");
        return QString::fromUtf8(file.readAll());
    }

    QTemporaryDir folder;
};

QTEST_MAIN(TestMultiVectorTools)
#include "tst_multivectortools.moc"
