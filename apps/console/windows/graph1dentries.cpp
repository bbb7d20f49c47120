// The live 1D windows: rows of all modules, the sum in the pair format, a single row.
#include "tour/person.h"
#include "windows/histogramwindows.h"
#include "windows/livewindows.h"
#include "windows/window.h"

#include <tarnis/peak/peaksearchdialog.h>
#include <tarnis/plots/multivectorgraphwidget.h>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QToolButton>

namespace console {

namespace {

constexpr double period = 40000.0; // of the simulated source, in us
constexpr double detectorSize = 1000.0; // in mm
constexpr int binsShown = 1024;
constexpr int modules = 8;

QWidget* openRows(const WindowContext& context)
{
    CurvesRequest request;
    request.title = Windows::tr("Arrival Times");
    request.xLabel = Windows::tr("Time [us]");
    request.xMax = period;
    request.description = Windows::tr("Module");
    request.command = QStringLiteral("hist1d time 0 %1 bins:%2").arg(modules - 1).arg(binsShown);
    request.last = modules - 1;
    auto* const window = new LiveCurves(context, request);
    window->getGraphWidget()->SetEnableSelectXRangeFeature(true, Windows::tr("Time"));
    return window;
}

QWidget* openPairs(const WindowContext& context)
{
    CurvesRequest request; // both ends 0: each reply brings its own axis
    request.title = Windows::tr("Arrival Times, All Modules");
    request.xLabel = Windows::tr("Time [us]");
    request.description = Windows::tr("Sum");
    request.command = QStringLiteral("hist1d total pairs bins:%1").arg(binsShown);
    auto* const window = new LiveCurves(context, request);
    window->getGraphWidget()->SetEnableSelectXRangeFeature(true, Windows::tr("Time"));
    return window;
}

QWidget* openSingleRow(const WindowContext& context)
{
    CurvesRequest request;
    request.title = Windows::tr("Position, Module 0");
    request.xLabel = Windows::tr("Position [mm]");
    request.xMax = detectorSize;
    request.command = QStringLiteral("hist1d position 0");
    return new LiveCurves(context, request);
}

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

void zoomAndMove(Person& person, QWidget& window)
{
    MultiVectorGraphWidget& plot = plotOf(window);
    const auto whole = rangeX(plot);
    plotAction(plot, QStringLiteral("Rectangle")).trigger();
    person.drag(plot, placeIn(plot, 0.3, 0.2), placeIn(plot, 0.7, 0.9));
    const auto part = rangeX(plot);
    person.expect(
        part.second - part.first < 0.6 * (whole.second - whole.first), QStringLiteral("the rectangle is zoomed to"));
    person.picture(window, QStringLiteral("rectangle"));
    plotAction(plot, QStringLiteral("Move")).trigger();
    person.drag(plot, placeIn(plot, 0.6, 0.5), placeIn(plot, 0.4, 0.5));
    person.expect(rangeX(plot).first > part.first, QStringLiteral("the plot is moved"));
    plotAction(plot, QStringLiteral("Move")).trigger(); // the tool goes off again
    plotAction(plot, QStringLiteral("Reset")).trigger();
    person.expect(rangeX(plot) == whole, QStringLiteral("Reset shows everything again"));
}

/// Opens the editor of the right end of the X axis by a click on its label, which lies somewhere below the right
/// corner.
QLineEdit& openEditorOfMaxX(Person& person, MultiVectorGraphWidget& plot)
{
    for (double y = 0.97; y > 0.7; y -= 0.03) {
        for (double x = 0.99; x > 0.85; x -= 0.02) {
            person.drag(plot, placeIn(plot, x, y), placeIn(plot, x, y));
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
    plotAction(plot, QStringLiteral("Reset")).trigger();
}

void drawingForms(Person& person, QWidget& window)
{
    MultiVectorGraphWidget& plot = plotOf(window);
    auto& type = person.find<QComboBox>(window, "typeComboBox");
    type.setCurrentText(QStringLiteral("All"));
    person.picture(window, QStringLiteral("all"));
    plotAction(plot, QStringLiteral("Column Chart")).trigger();
    person.picture(window, QStringLiteral("columns"));
    plotAction(plot, QStringLiteral("Column Chart")).trigger();
    plotAction(plot, QStringLiteral("Log Scale")).trigger();
    person.picture(window, QStringLiteral("log-scale"));
    plotAction(plot, QStringLiteral("Log Scale")).trigger();
    type.setCurrentText(QStringLiteral("Each"));
}

void visibleItems(Person& person, QWidget& window)
{
    person.click(person.find<QToolButton>(window, "toolButton"));
    auto* const dialog = plotOf(window).findChild<QDialog*>(QStringLiteral("SelectCheckedDialog"));
    person.expect(dialog != nullptr && dialog->isVisible(), QStringLiteral("the visible items can be chosen"));
    auto& table = person.find<QTableWidget>(*dialog, "tableWidget");
    for (int row = 1; row < table.rowCount(); ++row)
        table.item(row, 0)->setSelected(true);
    person.click(person.find<QPushButton>(*dialog, "unselectAllPushButton"));
    person.click(person.find<QPushButton>(*dialog, "applyPushButton"));
    person.picture(*dialog, QStringLiteral("visible-items"));
    person.picture(window, QStringLiteral("one-of-eight"));
    person.click(person.find<QPushButton>(*dialog, "selectAllPushButton"));
    person.click(person.find<QPushButton>(*dialog, "applyPushButton"));
    person.close(*dialog);
}

void driveRows(Person& person, QWidget& window)
{
    waitForCurves(person, window);
    person.picture(window, QStringLiteral("each"));
    zoomAndMove(person, window);
    editAxisEnd(person, window);
    drawingForms(person, window);
    visibleItems(person, window);
    saveAs(person, plotOf(window), QStringLiteral("Save CSV..."), QStringLiteral("curves.csv"));
    saveAs(person, plotOf(window), QStringLiteral("Save PNG..."), QStringLiteral("curves.png"));
    printToPdf(person, [&] { plotAction(plotOf(window), QStringLiteral("Print...")).trigger(); });
}

void drivePairs(Person& person, QWidget& window)
{
    waitForCurves(person, window);
    MultiVectorGraphWidget& plot = plotOf(window);
    plotAction(plot, QStringLiteral("Select Time Range")).trigger();
    person.drag(plot, placeIn(plot, 0.3, 0.5), placeIn(plot, 0.5, 0.6));
    double min = 0.0;
    double max = 0.0;
    person.expect(plot.GetXRange(min, max) && max > min, QStringLiteral("a range is selected"));
    person.picture(window, QStringLiteral("range"));
    plotAction(plot, QStringLiteral("Select Time Range")).trigger();

    // Polls go on meanwhile: the peaks stay those of the curve that was searched.
    plotAction(plot, QStringLiteral("Peak Search")).trigger();
    auto* const dialog = plot.findChild<PeakSearchDialog*>();
    person.expect(dialog != nullptr && dialog->isVisible(), QStringLiteral("the peak search opens"));
    auto& threshold = person.find<QLineEdit>(*dialog, "lineEditThreshold");
    person.clearText(threshold);
    person.type(threshold, QStringLiteral("30"));
    auto& width = person.find<QLineEdit>(*dialog, "lineEditWidth");
    person.clearText(width);
    person.type(width, QStringLiteral("5"));
    person.click(person.find<QPushButton>(*dialog, "pushButtonSearch"));
    person.picture(*dialog, QStringLiteral("peaks"));
    person.picture(window, QStringLiteral("fitted"));
    person.close(*dialog);
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

} // namespace

WindowEntry rowsEntry()
{
    return { QStringLiteral("curves"), Windows::tr("&Arrival Times"), Windows::tr("Arrival Times"),
        Windows::tr("The arrival times of each module, live"), openRows, driveRows };
}

WindowEntry pairsEntry()
{
    return { QStringLiteral("pairs"), Windows::tr("Arrival Times, A&ll Modules"),
        Windows::tr("Arrival Times, All Modules"),
        Windows::tr("The sum of all modules, live; the server tells the axis"), openPairs, drivePairs };
}

WindowEntry singleRowEntry()
{
    return { QStringLiteral("single-row"), Windows::tr("&Position of Module 0"), Windows::tr("Position, Module 0"),
        Windows::tr("Where the events of one module are, live"), openSingleRow, driveSingleRow };
}

} // namespace console
