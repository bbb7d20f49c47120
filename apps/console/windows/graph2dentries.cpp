// The live 2D window on the detector's image.
#include "tour/person.h"
#include "windows/histogramwindows.h"
#include "windows/livewindows.h"
#include "windows/window.h"

#include <tarnis/plots/xy2dgraphwidget.h>

#include <QAction>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>

namespace console {

namespace {

constexpr int binsShown = 256;

QWidget* openMap(const WindowContext& context)
{
    MapRequest request;
    request.title = Windows::tr("Image");
    request.xLabel = Windows::tr("X");
    request.yLabel = Windows::tr("Y");
    request.bins = binsShown;
    request.command = QStringLiteral("hist2d image bins:%1").arg(binsShown);
    auto* const window = new LiveMap(context, request);
    window->getGraphWidget()->enalbeRoiSelect(QRect(0, 0, binsShown, binsShown));
    return window;
}

XY2DGraphWidget& plotOf(QWidget& window)
{
    return *static_cast<Graph2DDialog&>(window).getGraphWidget();
}

/// What happens beside the window, such as the cut windows, belongs to the picture of the step.
void pictureOfChildren(Person& person, QWidget& window)
{
    for (QDialog* const child : window.findChildren<QDialog*>()) {
        if (child->isVisible() && child->isWindow() && !child->findChild<QLineEdit*>())
            person.picture(*child, QStringLiteral("cut"));
    }
}

void cut(Person& person, QWidget& window)
{
    XY2DGraphWidget& plot = plotOf(window);
    plotAction(plot, QStringLiteral("1D Cut")).trigger();
    person.drag(plot, placeIn(plot, 0.35, 0.35), placeIn(plot, 0.6, 0.6));
    person.picture(window, QStringLiteral("cut-rectangle"));
    pictureOfChildren(person, window);
    plotAction(plot, QStringLiteral("1D Cut")).trigger();
}

void regions(Person& person, QWidget& window)
{
    XY2DGraphWidget& plot = plotOf(window);
    plot.SetRoiEnabled(true);
    person.drag(plot, placeIn(plot, 0.3, 0.3), placeIn(plot, 0.5, 0.5));
    person.picture(window, QStringLiteral("region"));
    plot.SetRoiEnabled(false);
}

void zoom(Person& person, QWidget& window)
{
    XY2DGraphWidget& plot = plotOf(window);
    plotAction(plot, QStringLiteral("Rectangle")).trigger();
    person.drag(plot, placeIn(plot, 0.3, 0.3), placeIn(plot, 0.6, 0.6));
    person.picture(window, QStringLiteral("zoomed"));
    plotAction(plot, QStringLiteral("Reset")).trigger();
    plotAction(plot, QStringLiteral("Log Scale")).trigger();
    person.picture(window, QStringLiteral("log-scale"));
    plotAction(plot, QStringLiteral("Log Scale")).trigger();
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

void driveMap(Person& person, QWidget& window)
{
    person.waitUntil(QStringLiteral("the first map is on show"), [&] { return plotOf(window).getMaxValue() > 0.0; });
    person.picture(window, QStringLiteral("map"));
    zoom(person, window);
    cut(person, window);
    regions(person, window);
    filter(person, window);
    saveAs(person, plotOf(window), QStringLiteral("Save CSV..."), QStringLiteral("map.csv"));
    saveAs(person, plotOf(window), QStringLiteral("Save PNG..."), QStringLiteral("map.png"));
    printToPdf(person, [&] { plotAction(plotOf(window), QStringLiteral("Print...")).trigger(); });
}

} // namespace

WindowEntry mapEntry()
{
    return { QStringLiteral("map"), Windows::tr("&Image"), Windows::tr("Image"),
        Windows::tr("The events by place, live"), openMap, driveMap };
}

} // namespace console
