// What the tour does with the live 2D window.
#include "tour/uidriver.h"
#include "tour/histogramsteps.h"

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

void choose(Person& person, XY2DGraphWidget& plot, const char* entry)
{
    person.chooseInMenu(plot, placeIn(plot, 0.75, 0.2), QLatin1String(entry));
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

void typeInto(Person& person, QLineEdit& edit, const QString& text)
{
    person.clearText(edit);
    person.type(edit, text);
    person.key(edit, Qt::Key_Return);
}

// Colours.

QList<QRgb> colours()
{
    return { XY2DGraphWidget::colMin.rgb(), XY2DGraphWidget::colHalfMin.rgb(), XY2DGraphWidget::colHalf.rgb(),
        XY2DGraphWidget::colHalfMax.rgb(), XY2DGraphWidget::colMax.rgb() };
}

/// The menu of the colour bar opens on the plot, beside which the bar stands.
void chooseColours(Person& person, XY2DGraphWidget& plot, const QString& entry)
{
    const auto& bar = *plot.findChild<ColorBarWidget*>();
    person.chooseInMenu(plot, bar.geometry().center(), entry);
}

void palettes(Person& person, QWidget& window)
{
    XY2DGraphWidget& plot = plotOf(window);
    const QList<QRgb> before = colours();
    person.openMenu(plot, plot.findChild<ColorBarWidget*>()->geometry().center());
    person.scene(window, QStringLiteral("colour-menu"));
    person.key(*QApplication::activePopupWidget(), Qt::Key_Escape);

    QList<QList<QRgb>> seen;
    for (const char* name :
        { "Rainbow2", "Grayscale", "BlueRedGreen", "RedWhiteBlue", "CyanMagenta", "YellowHot", "Blue", "Rainbow1" }) {
        chooseColours(person, plot, QStringLiteral("Pattern - ") + QLatin1String(name));
        person.expect(!seen.contains(colours()), QStringLiteral("%1 has colours of its own").arg(QLatin1String(name)));
        seen.append(colours());
        person.picture(window, QString::fromLatin1(name).toLower());
    }
    chooseColours(person, plot, QStringLiteral("Edit - Reverse"));
    QList<QRgb> turned = seen.constLast();
    std::reverse(turned.begin(), turned.end());
    person.expect(colours() == turned, QStringLiteral("the colours are reversed"));
    person.picture(window, QStringLiteral("reversed"));
    chooseColours(person, plot, QStringLiteral("Edit - Reverse"));
    person.expect(colours() == before, QStringLiteral("the colours are those of before"));
}

QPushButton& autoButtonOf(XY2DGraphWidget& plot)
{
    for (QPushButton* const button : plot.findChildren<QPushButton*>()) {
        if (button->isCheckable())
            return *button;
    }
    throw TourFailure(QStringLiteral("the colour bar has no button above it"));
}

/// Opens the editor on the upper or lower label of the bar and types a limit.
void typeLimit(Person& person, ColorBarWidget& bar, double y, const QString& text)
{
    person.clickAt(bar, placeIn(bar, 0.7, y));
    auto* const edit = bar.findChild<QLineEdit*>();
    person.expect(edit != nullptr, QStringLiteral("a click on a label of the bar opens an editor"));
    typeInto(person, *edit, text);
}

void colourScale(Person& person, QWidget& window)
{
    XY2DGraphWidget& plot = plotOf(window);
    auto& bar = *plot.findChild<ColorBarWidget*>();
    QPushButton& button = autoButtonOf(plot);
    person.click(button);
    double max = 0.0;
    person.expect(!plot.getMaxZ(max), QStringLiteral("the scale is manual"));
    const double wanted = std::max(2.0, std::floor(max / 3.0));
    typeLimit(person, bar, 0.01, QString::number(wanted));
    person.expect(!plot.getMaxZ(max) && max == wanted, QStringLiteral("the scale ends where it was told to"));
    typeLimit(person, bar, 0.99, QStringLiteral("1"));
    person.picture(window, QStringLiteral("manual-scale"));
    person.click(button);
    person.expect(plot.getMaxZ(max), QStringLiteral("the scale follows the data again"));

    choose(person, plot, "Log Scale");
    person.picture(window, QStringLiteral("log-scale"));
    choose(person, plot, "Log Scale");
}

// Zoom.

void zoom(Person& person, QWidget& window)
{
    XY2DGraphWidget& plot = plotOf(window);
    const QRectF whole = rangeOf(plot);
    choose(person, plot, "Rectangle");
    person.drag(plot, placeIn(plot, 0.3, 0.3), placeIn(plot, 0.6, 0.6));
    const QRectF part = rangeOf(plot);
    person.expect(part.width() < 0.6 * whole.width() && part.height() < 0.6 * whole.height(),
        QStringLiteral("the rectangle is zoomed to"));
    person.picture(window, QStringLiteral("zoomed"));
    choose(person, plot, "Move");
    person.drag(plot, placeIn(plot, 0.5, 0.5), placeIn(plot, 0.35, 0.6));
    person.expect(rangeOf(plot).left() > part.left(), QStringLiteral("the map is moved"));
    person.picture(window, QStringLiteral("moved"));
    choose(person, plot, "Zoom In");
    person.clickAt(plot, placeIn(plot, 0.5, 0.5));
    person.expect(rangeOf(plot).width() < part.width(), QStringLiteral("a click zooms in"));
    choose(person, plot, "Zoom Out");
    person.clickAt(plot, placeIn(plot, 0.5, 0.5));
    choose(person, plot, "Zoom Out"); // the tool goes off again
    choose(person, plot, "Reset");
    person.expect(rangeOf(plot) == whole, QStringLiteral("Reset shows everything again"));
}

void readOut(Person& person, QWidget& window)
{
    XY2DGraphWidget& plot = plotOf(window);
    // Empty bins tell nothing: along a line until one is hit.
    for (int x = 300; x < 700 && !QToolTip::isVisible(); x += 4)
        person.hover(plot, placeIn(plot, x / 1000.0, 0.45));
    person.expect(QToolTip::isVisible() && !QToolTip::text().isEmpty(), QStringLiteral("a bin is read out"));
    person.scene(window, QStringLiteral("read-out"));
    QToolTip::hideText();
}

// Cuts.

/// The limits of the cut as its box shows them.
double limitIn(Person& person, QWidget& box, const char* edit)
{
    return person.find<QLineEdit>(box, edit).text().toDouble();
}

QWidget& rangeBoxOf(Person& person, XY2DGraphWidget& plot)
{
    auto* const box = plot.findChild<QDialog*>(QStringLiteral("XYRangeInputDialog"));
    person.expect(box != nullptr && box->isVisible(), QStringLiteral("the cut has its box"));
    return *box;
}

void cut(Person& person, QWidget& window)
{
    XY2DGraphWidget& plot = plotOf(window);
    choose(person, plot, "1D Cut");
    person.drag(plot, placeIn(plot, 0.35, 0.35), placeIn(plot, 0.55, 0.6));
    QWidget& box = rangeBoxOf(person, plot);
    person.expect(limitIn(person, box, "xMaxEdit") > limitIn(person, box, "xMinEdit"),
        QStringLiteral("the drag makes a rectangle"));
    person.scene(window, QStringLiteral("cut"));

    // By its left edge, as far as the middle between the edges.
    const double left = limitIn(person, box, "xMinEdit");
    const double middleY = (limitIn(person, box, "yMinEdit") + limitIn(person, box, "yMaxEdit")) / 2.0;
    const QPoint edge = plot.calcWidgetPointF(QPointF(left, middleY)).toPoint();
    person.drag(plot, edge, edge + QPoint(30, 0));
    person.expect(limitIn(person, box, "xMinEdit") > left, QStringLiteral("the edge goes along with the pointer"));

    // Typed in the box, and on an edge after a right click.
    typeInto(person, person.find<QLineEdit>(box, "xMinEdit"), QStringLiteral("64"));
    person.expect(limitIn(person, box, "xMinEdit") == 64.0, QStringLiteral("the box takes a limit"));
    const QPoint upper = plot.calcWidgetPointF(QPointF((64.0 + limitIn(person, box, "xMaxEdit")) / 2.0,
                                                   limitIn(person, box, "yMaxEdit")))
                             .toPoint();
    person.clickAt(plot, upper, Qt::RightButton);
    auto* const edit = plot.findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly);
    person.expect(edit != nullptr, QStringLiteral("a right click on an edge opens an editor"));
    person.scene(window, QStringLiteral("cut-editor"));
    typeInto(person, *edit, QStringLiteral("200"));
    person.expect(limitIn(person, box, "yMaxEdit") == 200.0, QStringLiteral("the editor takes a limit"));

    choose(person, plot, "Inside Only");
    person.scene(window, QStringLiteral("inside-only"));
    choose(person, plot, "Inside Only");
    printToPdf(person, plot, QStringLiteral("map-and-cuts.pdf"));
    choose(person, plot, "1D Cut");
    person.waitUntil(
        QStringLiteral("the cut goes off with its windows"), [&] { return plot.findChildren<QDialog*>().isEmpty(); });
}

// Regions.

void regions(Person& person, QWidget& window)
{
    XY2DGraphWidget& plot = plotOf(window);
    choose(person, plot, "Select ROI...");
    person.drag(plot, placeIn(plot, 0.3, 0.3), placeIn(plot, 0.5, 0.5));
    person.drag(plot, placeIn(plot, 0.55, 0.6), placeIn(plot, 0.7, 0.75));
    ViewSelectedROI* const view = plot.GetViewSelectedROI();
    person.expect(view != nullptr && view->isVisible(), QStringLiteral("the regions are listed"));
    person.expect(view->getRoiList().size() == 2, QStringLiteral("each drag adds a region"));
    person.scene(window, QStringLiteral("regions"));

    auto& spin = person.find<QSpinBox>(*view, "x1SpinBox");
    auto& edit = *spin.findChild<QLineEdit*>();
    typeInto(person, edit, QStringLiteral("100"));
    person.expect(view->getRoiList().at(1).left() == 100, QStringLiteral("a region can be edited"));
    person.scene(window, QStringLiteral("region-edited"));

    person.answering(
        [&](QWidget& box) {
            auto* const question = qobject_cast<QMessageBox*>(&box);
            person.expect(question != nullptr, QStringLiteral("it is asked before a region goes"));
            person.picture(box, QStringLiteral("delete"));
            person.click(*question->button(QMessageBox::Ok));
        },
        [&] { person.click(person.find<QPushButton>(*view, "deleteButton")); });
    person.expect(view->getRoiList().size() == 1, QStringLiteral("a region can be deleted"));
    person.scene(window, QStringLiteral("region-deleted"));
    choose(person, plot, "Select ROI...");
    person.expect(!view->isVisible(), QStringLiteral("the list goes with the tool"));
}

void filter(Person& person, QWidget& window)
{
    person.click(person.find<QPushButton>(window, "filterPushButton"));
    auto* const dialog = window.findChild<Graph2DFilterDialog*>();
    person.expect(dialog != nullptr && dialog->isVisible(), QStringLiteral("the filter's dialog opens"));
    for (int row = 1; row <= 5; ++row) {
        for (int column = 1; column <= 5; ++column) {
            auto& edit = person.find<QLineEdit>(
                *dialog, QStringLiteral("matrix%1%2LineEdit").arg(row).arg(column).toLatin1().constData());
            person.clearText(edit);
            person.type(edit, QStringLiteral("1"));
        }
    }
    auto& divisor = person.find<QLineEdit>(*dialog, "divisorLineEdit");
    person.clearText(divisor);
    person.type(divisor, QStringLiteral("25"));
    person.picture(*dialog, QStringLiteral("filter"));
    person.click(*person.find<QDialogButtonBox>(*dialog, "buttonBox").button(QDialogButtonBox::Ok));
    auto* const filtered = window.findChild<Graph2DDialog*>();
    person.expect(filtered != nullptr && filtered->isVisible(), QStringLiteral("the filtered map opens"));
    person.picture(*filtered, QStringLiteral("filtered"));
    person.close(*filtered);
}

void files(Person& person, QWidget& window)
{
    XY2DGraphWidget& plot = plotOf(window);
    const QString table = saveAs(person, plot, QStringLiteral("Save CSV..."), QStringLiteral("map.csv"));
    person.expect(linesOf(table) > 0, QStringLiteral("the file has a line for each row"));
    const QImage image(saveAs(person, plot, QStringLiteral("Save PNG..."), QStringLiteral("map-with-bar.png")));
    person.expect(image.width() >= plot.width(), QStringLiteral("the colour bar is on the saved picture"));
    printToPdf(person, plot, QStringLiteral("map.pdf"));
}

} // namespace

void driveMap(Person& person, QWidget& window)
{
    person.waitUntil(QStringLiteral("the first map is on show"), [&] { return plotOf(window).getMaxValue() > 0.0; });
    person.picture(window, QStringLiteral("map"));
    palettes(person, window);
    colourScale(person, window);
    zoom(person, window);
    readOut(person, window);
    cut(person, window);
    regions(person, window);
    filter(person, window);
    files(person, window);
}

} // namespace console
