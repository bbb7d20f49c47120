// What the tour does with the live 1D windows.
#include "mainwindow.h"
#include "tour/uidriver.h"
#include "tour/tourhelpers.h"
#include "tour/histogramsteps.h"

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

void waitForCurves(Person& person, QWidget& window)
{
    person.waitUntil(QStringLiteral("the first histogram is on show"),
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

void choose(Person& person, MultiVectorGraphWidget& plot, const char* entry)
{
    person.chooseInMenu(plot, placeIn(plot, 0.5, 0.5), QLatin1String(entry));
}

void zoomAndMove(Person& person, QWidget& window)
{
    MultiVectorGraphWidget& plot = plotOf(window);
    const auto whole = rangeX(plot);
    person.openMenu(plot, placeIn(plot, 0.4, 0.3));
    person.scene(window, QStringLiteral("menu"));
    person.key(*QApplication::activePopupWidget(), Qt::Key_Escape);

    choose(person, plot, "Rectangle");
    person.drag(plot, placeIn(plot, 0.3, 0.2), placeIn(plot, 0.7, 0.9));
    const auto part = rangeX(plot);
    person.expect(widthOf(part) < 0.6 * widthOf(whole), QStringLiteral("the rectangle is zoomed to"));
    person.picture(window, QStringLiteral("rectangle"));

    choose(person, plot, "Move");
    person.drag(plot, placeIn(plot, 0.6, 0.5), placeIn(plot, 0.4, 0.5));
    person.expect(rangeX(plot).first > part.first, QStringLiteral("the plot is moved"));

    choose(person, plot, "Zoom In");
    for (int i = 0; i < 5; ++i)
        person.clickAt(plot, placeIn(plot, 0.5, 0.5));
    const auto near = rangeX(plot);
    person.expect(widthOf(near) < widthOf(part), QStringLiteral("clicks zoom in"));
    person.picture(window, QStringLiteral("zoomed-in"));
    choose(person, plot, "Zoom Out");
    for (int i = 0; i < 2; ++i)
        person.clickAt(plot, placeIn(plot, 0.5, 0.5));
    person.expect(widthOf(rangeX(plot)) > widthOf(near), QStringLiteral("clicks zoom out"));
    choose(person, plot, "Zoom Out"); // the tool goes off again

    choose(person, plot, "Reset");
    person.expect(rangeX(plot) == whole, QStringLiteral("Reset shows everything again"));
}

/// Opens the editor of the right end of the X axis by a click on its label, which lies somewhere below the right
/// corner.
QLineEdit& openEditorOfMaxX(Person& person, MultiVectorGraphWidget& plot)
{
    for (int y = 97; y > 70; y -= 3) {
        for (int x = 99; x > 85; x -= 2) {
            person.clickAt(plot, placeIn(plot, x / 100.0, y / 100.0));
            if (auto* const edit = plot.findChild<QLineEdit*>())
                return *edit;
        }
    }
    throw TourFailure(QStringLiteral("no click on the labels opens an editor"));
}

void editAxisEnd(Person& person, QWidget& window)
{
    MultiVectorGraphWidget& plot = plotOf(window);
    QLineEdit& edit = openEditorOfMaxX(person, plot);
    person.clearText(edit);
    person.type(edit, QStringLiteral("8000"));
    person.picture(window, QStringLiteral("axis-editor"));
    person.key(edit, Qt::Key_Return);
    person.expect(rangeX(plot).second == 8000.0, QStringLiteral("the axis ends where it was told to"));
    person.picture(window, QStringLiteral("axis-edited"));
    choose(person, plot, "Reset");
}

void drawingForms(Person& person, QWidget& window)
{
    MultiVectorGraphWidget& plot = plotOf(window);
    auto& type = person.find<QComboBox>(window, "typeComboBox");
    person.chooseItem(type, QStringLiteral("All"));
    person.picture(window, QStringLiteral("all"));
    choose(person, plot, "Column Chart");
    person.picture(window, QStringLiteral("columns"));
    choose(person, plot, "Column Chart");
    choose(person, plot, "Log Scale");
    person.picture(window, QStringLiteral("log-scale"));
    choose(person, plot, "Log Scale");
    person.chooseItem(type, QStringLiteral("Each"));
}

QPoint rowOf(const QTableWidget& table, int row)
{
    return table.visualItemRect(table.item(row, 0)).center();
}

void visibleItems(Person& person, QWidget& window)
{
    person.click(person.find<QToolButton>(window, "toolButton"));
    auto* const dialog = plotOf(window).findChild<SelectCheckedDialog*>();
    person.expect(dialog != nullptr && dialog->isVisible(), QStringLiteral("the visible items can be chosen"));
    auto& table = person.find<QTableWidget>(*dialog, "tableWidget");
    person.look(60); // until it is laid out
    person.clickAt(*table.viewport(), rowOf(table, 1));
    person.clickAt(*table.viewport(), rowOf(table, table.rowCount() - 1), Qt::LeftButton, Qt::ShiftModifier);
    person.click(person.find<QPushButton>(*dialog, "unselectAllPushButton"));
    person.click(person.find<QPushButton>(*dialog, "applyPushButton"));
    person.picture(*dialog, QStringLiteral("visible-items"));
    person.picture(window, QStringLiteral("one-of-eight"));
    person.clickAt(*table.viewport(), rowOf(table, 0));
    person.clickAt(*table.viewport(), rowOf(table, table.rowCount() - 1), Qt::LeftButton, Qt::ShiftModifier);
    person.click(person.find<QPushButton>(*dialog, "selectAllPushButton"));
    person.click(person.find<QPushButton>(*dialog, "applyPushButton"));
    person.close(*dialog);
}

void selectRange(Person& person, QWidget& window)
{
    MultiVectorGraphWidget& plot = plotOf(window);
    choose(person, plot, "Select Time Range");
    person.drag(plot, placeIn(plot, 0.3, 0.5), placeIn(plot, 0.5, 0.6));
    double min = 0.0;
    double max = 0.0;
    person.expect(plot.GetXRange(min, max) && max > min, QStringLiteral("a range is selected"));

    auto* const box = plot.findChild<QDialog*>(QStringLiteral("XRangeInputDialog"));
    person.expect(box != nullptr && box->isVisible(), QStringLiteral("the range has its box"));
    auto& edit = person.find<QLineEdit>(*box, "xMaxEdit");
    person.clearText(edit);
    person.type(edit, QStringLiteral("30000"));
    person.key(edit, Qt::Key_Return);
    person.expect(plot.GetXRange(min, max) && max == 30000.0, QStringLiteral("the range ends where the box says"));
    person.scene(window, QStringLiteral("range"));

    choose(person, plot, "Clear Time Range");
    person.expect(!plot.GetXRange(min, max), QStringLiteral("the range can be cleared"));
    choose(person, plot, "Select Time Range");
    person.waitUntil(QStringLiteral("the box goes with the tool"),
        [&] { return plot.findChild<QDialog*>(QStringLiteral("XRangeInputDialog")) == nullptr; });
}

/// Polls go on meanwhile: the peaks stay those of the curve that was searched.
void searchPeaks(Person& person, QWidget& window, const QString& thresholdText, const QString& widthText)
{
    MultiVectorGraphWidget& plot = plotOf(window);
    choose(person, plot, "Peak Search");
    auto* const dialog = plot.findChild<PeakSearchDialog*>();
    person.expect(dialog != nullptr && dialog->isVisible(), QStringLiteral("the peak search opens"));
    auto& threshold = person.find<QLineEdit>(*dialog, "lineEditThreshold");
    person.clearText(threshold);
    person.type(threshold, thresholdText);
    auto& width = person.find<QLineEdit>(*dialog, "lineEditWidth");
    person.clearText(width);
    person.type(width, widthText);
    person.click(person.find<QPushButton>(*dialog, "pushButtonSearch"));
    auto& table = person.find<QTableWidget>(*dialog, "resultTableWidget");
    person.expect(table.rowCount() > 0, QStringLiteral("there are peaks"));
    person.clickAt(*table.viewport(), rowOf(table, 0));
    person.picture(*dialog, QStringLiteral("peaks"));
    person.picture(window, QStringLiteral("fitted"));
    person.click(person.find<QCheckBox>(*dialog, "displayPointsCheckBox"));
    person.picture(window, QStringLiteral("points"));
    person.close(*dialog);
}

} // namespace

void driveRows(Person& person, QWidget& window)
{
    waitForCurves(person, window);
    person.picture(window, QStringLiteral("each"));
    zoomAndMove(person, window);
    editAxisEnd(person, window);
    drawingForms(person, window);
    visibleItems(person, window);
    MultiVectorGraphWidget& plot = plotOf(window);
    const QString table = saveAs(person, plot, QStringLiteral("Save CSV..."), QStringLiteral("curves.csv"));
    person.expect(linesOf(table) > 1000, QStringLiteral("the file has a line for each bin"));
    saveAs(person, plot, QStringLiteral("Save PNG..."), QStringLiteral("curves.png"));
    printToPdf(person, plot, QStringLiteral("curves.pdf"));
}

void drivePairs(Person& person, QWidget& window)
{
    waitForCurves(person, window);
    selectRange(person, window);
    auto& console = *qobject_cast<MainWindow*>(window.parentWidget());
    ask(person, console, QStringLiteral("start"));
    MultiVectorGraphWidget& plot = plotOf(window);
    person.waitUntil(QStringLiteral("the peaks stand out"), [&] { return plot.getMaxValue() >= 100.0; });
    ask(person, console, QStringLiteral("stop"));
    searchPeaks(person, window, QStringLiteral("20"), QStringLiteral("4"));
}

void driveSingleRow(Person& person, QWidget& window)
{
    waitForCurves(person, window);
    person.picture(window, QStringLiteral("row"));
    auto& automatic = person.find<QCheckBox>(window, "autoUpdateCheckBox");
    person.click(automatic);
    person.expect(!automatic.isChecked(), QStringLiteral("the polling can be switched off"));
    person.click(person.find<QPushButton>(window, "updatePushButton"));
    person.click(automatic);
}

void driveSpectrum(Person& person, QWidget& window)
{
    MultiVectorGraphWidget& plot = plotOf(window);
    person.waitUntil(
        QStringLiteral("the spectrum is on show"), [&] { return plot.hasData() && plot.getMaxValue() > 0.0; });
    person.picture(window, QStringLiteral("measured"));
    choose(person, plot, "Log Scale");
    person.picture(window, QStringLiteral("log-scale"));
    choose(person, plot, "Log Scale");
    searchPeaks(person, window, QStringLiteral("10"), QStringLiteral("9"));
    saveAs(person, plot, QStringLiteral("Save CSV..."), QStringLiteral("spectrum.csv"));
}

} // namespace console
