// The tour's steps for the live 2D window.
#include "tour/histogramsteps.h"
#include "tour/uidriver.h"
#include "tour/windowsteps.h"

#include <tarnis/dialogs/graph2ddialog.h>
#include <tarnis/plots/colorbarwidget.h>
#include <tarnis/plots/viewselectedroi.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include <QApplication>
#include <QDialogButtonBox>
#include <QImage>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace console {

namespace {

XY2DGraphWidget& plotOf(QWidget& window)
{
    return *static_cast<Graph2DDialog&>(window).getGraphWidget();
}

void choose(UiDriver& driver, XY2DGraphWidget& plot, const char* entry)
{
    driver.chooseInMenu(plot, placeIn(plot, 0.75, 0.2), QLatin1String(entry));
}

QRectF rangeOf(XY2DGraphWidget& plot)
{
    double minX = 0.0;
    double maxX = 0.0;
    double minY = 0.0;
    double maxY = 0.0;
    plot.getMinMaxX(minX, maxX);
    plot.getMinMaxY(minY, maxY);
    return { QPointF(minX, minY), QPointF(maxX, maxY) };
}

void typeInto(UiDriver& driver, QLineEdit& edit, const QString& text)
{
    driver.clearText(edit);
    driver.type(edit, text);
    driver.key(edit, Qt::Key_Return);
}

// Colours.

QList<QRgb> colours()
{
    return { XY2DGraphWidget::colMin.rgb(), XY2DGraphWidget::colHalfMin.rgb(), XY2DGraphWidget::colHalf.rgb(),
        XY2DGraphWidget::colHalfMax.rgb(), XY2DGraphWidget::colMax.rgb() };
}

/// The menu of the colour bar opens on the plot beside the bar.
void chooseColours(UiDriver& driver, XY2DGraphWidget& plot, const QString& entry)
{
    const auto& bar = *plot.findChild<ColorBarWidget*>();
    driver.chooseInMenu(plot, bar.geometry().center(), entry);
}

void palettes(UiDriver& driver, QWidget& window)
{
    XY2DGraphWidget& plot = plotOf(window);
    const QList<QRgb> before = colours();
    driver.openMenu(plot, plot.findChild<ColorBarWidget*>()->geometry().center());
    driver.screenshotWithPopups(window, QStringLiteral("colour-menu"));
    driver.key(*QApplication::activePopupWidget(), Qt::Key_Escape);

    QList<QList<QRgb>> seen;
    for (const char* name :
        { "Rainbow2", "Grayscale", "BlueRedGreen", "RedWhiteBlue", "CyanMagenta", "YellowHot", "Blue", "Rainbow1" }) {
        chooseColours(driver, plot, QStringLiteral("Pattern - ") + QLatin1String(name));
        driver.expect(!seen.contains(colours()), QStringLiteral("%1 has colours of its own").arg(QLatin1String(name)));
        seen.append(colours());
        driver.screenshot(window, QString::fromLatin1(name).toLower());
    }
    chooseColours(driver, plot, QStringLiteral("Edit - Reverse"));
    QList<QRgb> turned = seen.constLast();
    std::reverse(turned.begin(), turned.end());
    driver.expect(colours() == turned, QStringLiteral("the colours are reversed"));
    driver.screenshot(window, QStringLiteral("reversed"));
    chooseColours(driver, plot, QStringLiteral("Edit - Reverse"));
    driver.expect(colours() == before, QStringLiteral("the previous colours are back"));
}

QPushButton& autoButtonOf(XY2DGraphWidget& plot)
{
    for (QPushButton* const button : plot.findChildren<QPushButton*>()) {
        if (button->isCheckable())
            return *button;
    }
    throw TourFailure(QStringLiteral("the colour bar has no button above it"));
}

/// Opens the editor on the upper or lower label of the bar, which is somewhere near that end, and types a limit.
void typeLimit(UiDriver& driver, ColorBarWidget& bar, bool isUpper, const QString& text)
{
    for (int percent = 1; percent < 20; percent += 2) {
        driver.clickAt(bar, placeIn(bar, 0.7, (isUpper ? percent : 100 - percent) / 100.0));
        if (auto* const edit = bar.findChild<QLineEdit*>()) {
            typeInto(driver, *edit, text);
            return;
        }
    }
    throw TourFailure(QStringLiteral("no click on a label of the bar opens an editor"));
}

void colourScale(UiDriver& driver, QWidget& window)
{
    XY2DGraphWidget& plot = plotOf(window);
    auto& bar = *plot.findChild<ColorBarWidget*>();
    QPushButton& button = autoButtonOf(plot);
    driver.click(button);
    double max = 0.0;
    driver.expect(!plot.getMaxZ(max), QStringLiteral("the scale is manual"));
    const double wanted = std::max(2.0, std::floor(max / 3.0));
    typeLimit(driver, bar, true, QString::number(wanted));
    driver.expect(!plot.getMaxZ(max) && max == wanted, QStringLiteral("the scale ends at the given value"));
    typeLimit(driver, bar, false, QStringLiteral("1"));
    driver.screenshot(window, QStringLiteral("manual-scale"));
    driver.click(button);
    driver.expect(plot.getMaxZ(max), QStringLiteral("the scale follows the data again"));

    choose(driver, plot, "Log Scale");
    driver.screenshot(window, QStringLiteral("log-scale"));
    choose(driver, plot, "Log Scale");
}

// Zoom.

void zoom(UiDriver& driver, QWidget& window)
{
    XY2DGraphWidget& plot = plotOf(window);
    const QRectF whole = rangeOf(plot);
    choose(driver, plot, "Rectangle");
    driver.drag(plot, placeIn(plot, 0.3, 0.3), placeIn(plot, 0.5, 0.55));
    const QRectF part = rangeOf(plot);
    driver.expect(part.width() < 0.6 * whole.width() && part.height() < 0.6 * whole.height(),
        QStringLiteral("the rectangle is zoomed to"));
    driver.screenshot(window, QStringLiteral("zoomed"));
    choose(driver, plot, "Move");
    driver.drag(plot, placeIn(plot, 0.5, 0.5), placeIn(plot, 0.35, 0.6));
    driver.expect(rangeOf(plot).left() > part.left(), QStringLiteral("the map is moved"));
    driver.screenshot(window, QStringLiteral("moved"));
    choose(driver, plot, "Zoom In");
    driver.clickAt(plot, placeIn(plot, 0.5, 0.5));
    driver.expect(rangeOf(plot).width() < part.width(), QStringLiteral("a click zooms in"));
    choose(driver, plot, "Zoom Out");
    driver.clickAt(plot, placeIn(plot, 0.5, 0.5));
    choose(driver, plot, "Zoom Out"); // switches the tool off again
    choose(driver, plot, "Reset");
    driver.expect(rangeOf(plot) == whole, QStringLiteral("Reset shows everything again"));
}

void readOut(UiDriver& driver, QWidget& window)
{
    XY2DGraphWidget& plot = plotOf(window);
    // Empty bins have no read-out: tries several lines until a bin with events is found.
    for (int y = 300; y < 700 && !QToolTip::isVisible(); y += 37) {
        for (int x = 100; x < 800 && !QToolTip::isVisible(); x += 4)
            driver.hover(plot, placeIn(plot, x / 1000.0, y / 1000.0));
    }
    driver.expect(QToolTip::isVisible() && !QToolTip::text().isEmpty(), QStringLiteral("a bin is read out"));
    driver.screenshotWithPopups(window, QStringLiteral("read-out"));
    QToolTip::hideText();
}

// Cuts.

/// The limits of the cut in its box.
double limitIn(UiDriver& driver, QWidget& box, const char* edit)
{
    return driver.find<QLineEdit>(box, edit).text().toDouble();
}

QWidget& rangeBoxOf(UiDriver& driver, XY2DGraphWidget& plot)
{
    auto* const box = plot.findChild<QDialog*>(QStringLiteral("XYRangeInputDialog"));
    driver.expect(box != nullptr && box->isVisible(), QStringLiteral("the cut has its box"));
    return *box;
}

void cut(UiDriver& driver, QWidget& window)
{
    XY2DGraphWidget& plot = plotOf(window);
    choose(driver, plot, "1D Cut");
    driver.drag(plot, placeIn(plot, 0.35, 0.35), placeIn(plot, 0.55, 0.6));
    QWidget& box = rangeBoxOf(driver, plot);
    driver.expect(limitIn(driver, box, "xMaxEdit") > limitIn(driver, box, "xMinEdit"),
        QStringLiteral("the drag makes a rectangle"));
    driver.screenshotWithPopups(window, QStringLiteral("cut"));

    // Drags the left edge to the middle between the edges.
    const double left = limitIn(driver, box, "xMinEdit");
    const double middleY = (limitIn(driver, box, "yMinEdit") + limitIn(driver, box, "yMaxEdit")) / 2.0;
    const QPoint edge = plot.calcWidgetPointF(QPointF(left, middleY)).toPoint();
    driver.drag(plot, edge, edge + QPoint(30, 0));
    driver.expect(limitIn(driver, box, "xMinEdit") > left, QStringLiteral("the edge goes along with the pointer"));

    // Types a limit in the box, and on an edge after a right click.
    typeInto(driver, driver.find<QLineEdit>(box, "xMinEdit"), QStringLiteral("64"));
    driver.expect(limitIn(driver, box, "xMinEdit") == 64.0, QStringLiteral("the box takes a limit"));
    // Away from the left edge, also from where it was before the limit was typed.
    const QPoint upper = plot.calcWidgetPointF(QPointF((64.0 + 3.0 * limitIn(driver, box, "xMaxEdit")) / 4.0,
                                                   limitIn(driver, box, "yMaxEdit")))
                             .toPoint();
    driver.clickAt(plot, upper, Qt::RightButton);
    auto* const edit = plot.findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly);
    driver.expect(edit != nullptr, QStringLiteral("a right click on an edge opens an editor"));
    driver.screenshotWithPopups(window, QStringLiteral("cut-editor"));
    typeInto(driver, *edit, QStringLiteral("200"));
    driver.expect(limitIn(driver, box, "yMaxEdit") == 200.0, QStringLiteral("the editor takes a limit"));

    choose(driver, plot, "Inside Only");
    driver.screenshotWithPopups(window, QStringLiteral("inside-only"));
    choose(driver, plot, "Inside Only");
    printToPdf(driver, plot, QStringLiteral("map-and-cuts.pdf"));
    choose(driver, plot, "1D Cut");
    driver.waitUntil(
        QStringLiteral("the cut goes off with its windows"), [&] { return plot.findChildren<QDialog*>().isEmpty(); });
}

// Regions.

void regions(UiDriver& driver, QWidget& window)
{
    XY2DGraphWidget& plot = plotOf(window);
    choose(driver, plot, "Select ROI...");
    driver.drag(plot, placeIn(plot, 0.3, 0.3), placeIn(plot, 0.5, 0.5));
    driver.drag(plot, placeIn(plot, 0.55, 0.6), placeIn(plot, 0.7, 0.75));
    ViewSelectedROI* const view = plot.GetViewSelectedROI();
    driver.expect(view != nullptr && view->isVisible(), QStringLiteral("the regions are listed"));
    driver.expect(view->getRoiList().size() == 2, QStringLiteral("each drag adds a region"));
    driver.screenshotWithPopups(window, QStringLiteral("regions"));

    auto& spin = driver.find<QSpinBox>(*view, "x1SpinBox");
    auto& edit = *spin.findChild<QLineEdit*>();
    typeInto(driver, edit, QStringLiteral("100"));
    driver.expect(view->getRoiList().at(1).left() == 100, QStringLiteral("a region can be edited"));
    driver.screenshotWithPopups(window, QStringLiteral("region-edited"));

    driver.answering(
        [&](QWidget& box) {
            auto* const question = qobject_cast<QMessageBox*>(&box);
            driver.expect(question != nullptr, QStringLiteral("a box asks before a region is deleted"));
            driver.screenshot(box, QStringLiteral("delete"));
            driver.click(*question->button(QMessageBox::Ok));
        },
        [&] { driver.click(driver.find<QPushButton>(*view, "deleteButton")); });
    driver.expect(view->getRoiList().size() == 1, QStringLiteral("a region can be deleted"));
    driver.screenshotWithPopups(window, QStringLiteral("region-deleted"));
    choose(driver, plot, "Select ROI...");
    driver.expect(!view->isVisible(), QStringLiteral("the list closes with the tool"));
}

void filter(UiDriver& driver, QWidget& window)
{
    driver.click(driver.find<QPushButton>(window, "filterPushButton"));
    auto* const dialog = window.findChild<Graph2DFilterDialog*>();
    driver.expect(dialog != nullptr && dialog->isVisible(), QStringLiteral("the filter's dialog opens"));
    for (int row = 1; row <= 5; ++row) {
        for (int column = 1; column <= 5; ++column) {
            auto& edit = driver.find<QLineEdit>(
                *dialog, QStringLiteral("matrix%1%2LineEdit").arg(row).arg(column).toLatin1().constData());
            driver.clearText(edit);
            driver.type(edit, QStringLiteral("1"));
        }
    }
    auto& divisor = driver.find<QLineEdit>(*dialog, "divisorLineEdit");
    driver.clearText(divisor);
    driver.type(divisor, QStringLiteral("25"));
    driver.screenshot(*dialog, QStringLiteral("filter"));
    driver.click(*driver.find<QDialogButtonBox>(*dialog, "buttonBox").button(QDialogButtonBox::Ok));
    auto* const filtered = window.findChild<Graph2DDialog*>();
    driver.expect(filtered != nullptr && filtered->isVisible(), QStringLiteral("the filtered map opens"));
    driver.screenshot(*filtered, QStringLiteral("filtered"));
    driver.close(*filtered);
}

void files(UiDriver& driver, QWidget& window)
{
    XY2DGraphWidget& plot = plotOf(window);
    const QString table = saveAs(driver, plot, QStringLiteral("Save CSV..."), QStringLiteral("map.csv"));
    driver.expect(linesOf(table) > 0, QStringLiteral("the file has a line for each row"));
    const QImage image(saveAs(driver, plot, QStringLiteral("Save PNG..."), QStringLiteral("map-with-bar.png")));
    driver.expect(image.width() >= plot.width(), QStringLiteral("the colour bar is on the saved picture"));
    printToPdf(driver, plot, QStringLiteral("map.pdf"));
}

} // namespace

void driveMap(UiDriver& driver, QWidget& window)
{
    driver.waitUntil(QStringLiteral("the first map is on show"), [&] { return plotOf(window).getMaxValue() > 0.0; });
    driver.screenshot(window, QStringLiteral("map"));
    palettes(driver, window);
    colourScale(driver, window);
    zoom(driver, window);
    readOut(driver, window);
    cut(driver, window);
    regions(driver, window);
    filter(driver, window);
    files(driver, window);
}

} // namespace console
