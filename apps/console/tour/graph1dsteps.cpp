// The tour's steps for the live 1D windows.
#include "mainwindow.h"
#include "tour/histogramsteps.h"
#include "tour/tourhelpers.h"
#include "tour/uidriver.h"
#include "tour/windowsteps.h"

#include <tarnis/dialogs/graph1ddialog.h>
#include <tarnis/dialogs/selectcheckeddialog.h>
#include <tarnis/peak/peaksearchdialog.h>
#include <tarnis/plots/multivectorgraphwidget.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QToolButton>

namespace console {

namespace {

MultiVectorGraphWidget& plotOf(QWidget& window)
{
    return *static_cast<Graph1DDialog&>(window).getGraphWidget();
}

void waitForCurves(UiDriver& driver, QWidget& window)
{
    driver.waitUntil(QStringLiteral("the first histogram is on show"),
        [&] { return plotOf(window).hasData() && plotOf(window).getMaxValue() > 0.0; });
}

QPair<double, double> rangeX(MultiVectorGraphWidget& plot)
{
    QPair<double, double> range;
    plot.getMinMaxX(range.first, range.second);
    return range;
}

double widthOf(const QPair<double, double>& range)
{
    return range.second - range.first;
}

void choose(UiDriver& driver, MultiVectorGraphWidget& plot, const char* entry)
{
    driver.chooseInMenu(plot, placeIn(plot, 0.5, 0.5), QLatin1String(entry));
}

void zoomAndMove(UiDriver& driver, QWidget& window)
{
    MultiVectorGraphWidget& plot = plotOf(window);
    const auto whole = rangeX(plot);
    driver.openMenu(plot, placeIn(plot, 0.4, 0.3));
    driver.screenshotWithPopups(window, QStringLiteral("menu"));
    driver.key(*QApplication::activePopupWidget(), Qt::Key_Escape);

    choose(driver, plot, "Rectangle");
    driver.drag(plot, placeIn(plot, 0.3, 0.2), placeIn(plot, 0.7, 0.9));
    const auto part = rangeX(plot);
    driver.expect(widthOf(part) < 0.6 * widthOf(whole), QStringLiteral("the rectangle is zoomed to"));
    driver.screenshot(window, QStringLiteral("rectangle"));

    choose(driver, plot, "Move");
    driver.drag(plot, placeIn(plot, 0.6, 0.5), placeIn(plot, 0.4, 0.5));
    driver.expect(rangeX(plot).first > part.first, QStringLiteral("the plot is moved"));

    choose(driver, plot, "Zoom In");
    for (int i = 0; i < 5; ++i)
        driver.clickAt(plot, placeIn(plot, 0.5, 0.5));
    const auto near = rangeX(plot);
    driver.expect(widthOf(near) < widthOf(part), QStringLiteral("clicks zoom in"));
    driver.screenshot(window, QStringLiteral("zoomed-in"));
    choose(driver, plot, "Zoom Out");
    for (int i = 0; i < 2; ++i)
        driver.clickAt(plot, placeIn(plot, 0.5, 0.5));
    driver.expect(widthOf(rangeX(plot)) > widthOf(near), QStringLiteral("clicks zoom out"));
    choose(driver, plot, "Zoom Out"); // switches the tool off again

    choose(driver, plot, "Reset");
    driver.expect(rangeX(plot) == whole, QStringLiteral("Reset shows everything again"));
}

/// Opens the editor of the right end of the X axis by a click on its label, which is somewhere below the right corner.
QLineEdit& openEditorOfMaxX(UiDriver& driver, MultiVectorGraphWidget& plot)
{
    for (int y = 97; y > 70; y -= 3) {
        for (int x = 99; x > 85; x -= 2) {
            driver.clickAt(plot, placeIn(plot, x / 100.0, y / 100.0));
            if (auto* const edit = plot.findChild<QLineEdit*>())
                return *edit;
        }
    }
    throw TourFailure(QStringLiteral("no click on the labels opens an editor"));
}

void editAxisEnd(UiDriver& driver, QWidget& window)
{
    MultiVectorGraphWidget& plot = plotOf(window);
    QLineEdit& edit = openEditorOfMaxX(driver, plot);
    driver.clearText(edit);
    driver.type(edit, QStringLiteral("8000"));
    driver.screenshot(window, QStringLiteral("axis-editor"));
    driver.key(edit, Qt::Key_Return);
    driver.expect(rangeX(plot).second == 8000.0, QStringLiteral("the axis ends at the given value"));
    driver.screenshot(window, QStringLiteral("axis-edited"));
    choose(driver, plot, "Reset");
}

void drawingForms(UiDriver& driver, QWidget& window)
{
    MultiVectorGraphWidget& plot = plotOf(window);
    auto& type = driver.find<QComboBox>(window, "typeComboBox");
    driver.chooseItem(type, QStringLiteral("Sum of All"));
    driver.screenshot(window, QStringLiteral("all"));
    choose(driver, plot, "Column Chart");
    driver.screenshot(window, QStringLiteral("columns"));
    choose(driver, plot, "Column Chart");
    choose(driver, plot, "Log Scale");
    driver.screenshot(window, QStringLiteral("log-scale"));
    choose(driver, plot, "Log Scale");
    driver.chooseItem(type, QStringLiteral("Each Curve"));
}

QPoint rowOf(const QTableWidget& table, int row)
{
    return table.visualItemRect(table.item(row, 0)).center();
}

void visibleItems(UiDriver& driver, QWidget& window)
{
    driver.click(driver.find<QToolButton>(window, "toolButton"));
    auto* const dialog = plotOf(window).findChild<SelectCheckedDialog*>();
    driver.expect(dialog != nullptr && dialog->isVisible(), QStringLiteral("the visible items can be chosen"));
    auto& table = driver.find<QTableWidget>(*dialog, "tableWidget");
    driver.wait(60); // until it is laid out
    driver.clickAt(*table.viewport(), rowOf(table, 1));
    driver.clickAt(*table.viewport(), rowOf(table, table.rowCount() - 1), Qt::LeftButton, Qt::ShiftModifier);
    driver.click(driver.find<QPushButton>(*dialog, "unselectAllPushButton"));
    driver.click(driver.find<QPushButton>(*dialog, "applyPushButton"));
    driver.screenshot(*dialog, QStringLiteral("visible-items"));
    driver.screenshot(window, QStringLiteral("one-of-eight"));
    driver.clickAt(*table.viewport(), rowOf(table, 0));
    driver.clickAt(*table.viewport(), rowOf(table, table.rowCount() - 1), Qt::LeftButton, Qt::ShiftModifier);
    driver.click(driver.find<QPushButton>(*dialog, "selectAllPushButton"));
    driver.click(driver.find<QPushButton>(*dialog, "applyPushButton"));
    driver.close(*dialog);
}

void selectRange(UiDriver& driver, QWidget& window)
{
    MultiVectorGraphWidget& plot = plotOf(window);
    choose(driver, plot, "Select Time Range");
    driver.drag(plot, placeIn(plot, 0.3, 0.5), placeIn(plot, 0.5, 0.6));
    double min = 0.0;
    double max = 0.0;
    driver.expect(plot.GetXRange(min, max) && max > min, QStringLiteral("a range is selected"));

    auto* const box = plot.findChild<QDialog*>(QStringLiteral("XRangeInputDialog"));
    driver.expect(box != nullptr && box->isVisible(), QStringLiteral("the range has its box"));
    auto& edit = driver.find<QLineEdit>(*box, "xMaxEdit");
    driver.clearText(edit);
    driver.type(edit, QStringLiteral("30000"));
    driver.key(edit, Qt::Key_Return);
    driver.expect(plot.GetXRange(min, max) && max == 30000.0, QStringLiteral("the range ends where the box says"));
    driver.screenshotWithPopups(window, QStringLiteral("range"));

    choose(driver, plot, "Clear Time Range");
    driver.expect(!plot.GetXRange(min, max), QStringLiteral("the range can be cleared"));
    choose(driver, plot, "Select Time Range");
    driver.waitUntil(QStringLiteral("the box closes with the tool"),
        [&] { return plot.findChild<QDialog*>(QStringLiteral("XRangeInputDialog")) == nullptr; });
}

/// Polling continues in the meantime: the peaks remain those of the searched curve.
void searchPeaks(UiDriver& driver, QWidget& window, const QString& thresholdText, const QString& widthText)
{
    MultiVectorGraphWidget& plot = plotOf(window);
    choose(driver, plot, "Peak Search");
    auto* const dialog = plot.findChild<PeakSearchDialog*>();
    driver.expect(dialog != nullptr && dialog->isVisible(), QStringLiteral("the peak search opens"));
    auto& threshold = driver.find<QLineEdit>(*dialog, "lineEditThreshold");
    driver.clearText(threshold);
    driver.type(threshold, thresholdText);
    auto& width = driver.find<QLineEdit>(*dialog, "lineEditWidth");
    driver.clearText(width);
    driver.type(width, widthText);
    driver.click(driver.find<QPushButton>(*dialog, "pushButtonSearch"));
    auto& table = driver.find<QTableWidget>(*dialog, "resultTableWidget");
    driver.expect(table.rowCount() > 0, QStringLiteral("there are peaks"));
    driver.clickAt(*table.viewport(), rowOf(table, 0));
    driver.screenshot(*dialog, QStringLiteral("peaks"));
    driver.screenshot(window, QStringLiteral("fitted"));
    driver.click(driver.find<QCheckBox>(*dialog, "displayPointsCheckBox"));
    driver.screenshot(window, QStringLiteral("points"));
    driver.close(*dialog);
}

} // namespace

void driveRows(UiDriver& driver, QWidget& window)
{
    waitForCurves(driver, window);
    driver.screenshot(window, QStringLiteral("each"));
    zoomAndMove(driver, window);
    editAxisEnd(driver, window);
    drawingForms(driver, window);
    visibleItems(driver, window);
    MultiVectorGraphWidget& plot = plotOf(window);
    const QString table = saveAs(driver, plot, QStringLiteral("Save CSV..."), QStringLiteral("curves.csv"));
    driver.expect(linesOf(table) > 1000, QStringLiteral("the file has a line for each bin"));
    saveAs(driver, plot, QStringLiteral("Save PNG..."), QStringLiteral("curves.png"));
    printToPdf(driver, plot, QStringLiteral("curves.pdf"));
}

void drivePairs(UiDriver& driver, QWidget& window)
{
    waitForCurves(driver, window);
    selectRange(driver, window);
    auto& console = *qobject_cast<MainWindow*>(window.parentWidget());
    ask(driver, console, QStringLiteral("start"));
    MultiVectorGraphWidget& plot = plotOf(window);
    driver.waitUntil(QStringLiteral("the peaks stand out"), [&] { return plot.getMaxValue() >= 100.0; });
    ask(driver, console, QStringLiteral("stop"));
    searchPeaks(driver, window, QStringLiteral("20"), QStringLiteral("4"));
}

void driveSingleRow(UiDriver& driver, QWidget& window)
{
    waitForCurves(driver, window);
    driver.screenshot(window, QStringLiteral("row"));
    auto& automatic = driver.find<QCheckBox>(window, "autoUpdateCheckBox");
    driver.click(automatic);
    driver.expect(!automatic.isChecked(), QStringLiteral("the polling can be switched off"));
    driver.click(driver.find<QPushButton>(window, "updatePushButton"));
    driver.click(automatic);
}

void driveSpectrum(UiDriver& driver, QWidget& window)
{
    MultiVectorGraphWidget& plot = plotOf(window);
    driver.waitUntil(
        QStringLiteral("the spectrum is on show"), [&] { return plot.hasData() && plot.getMaxValue() > 0.0; });
    driver.screenshot(window, QStringLiteral("measured"));
    choose(driver, plot, "Log Scale");
    driver.screenshot(window, QStringLiteral("log-scale"));
    choose(driver, plot, "Log Scale");
    searchPeaks(driver, window, QStringLiteral("10"), QStringLiteral("9"));
    saveAs(driver, plot, QStringLiteral("Save CSV..."), QStringLiteral("spectrum.csv"));
}

} // namespace console
