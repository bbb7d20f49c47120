#include "plots/plotpanels.h"

#include "screen/placement.h"
#include "screen/windowframe.h"

#include <tarnis/foundation/retranslator.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/calibrationpanel.h>
#include <tarnis/tools/fitpanel.h>
#include <tarnis/tools/peakpanel.h>
#include <tarnis/tools/plottoolbar.h>
#include <tarnis/tools/regiontable.h>

#include <QBoxLayout>
#include <QCoreApplication>
#include <QMenu>
#include <QPointer>
#include <QScreen>
#include <QToolButton>

namespace console {

namespace {

struct PlotPanels {
    Q_DECLARE_TR_FUNCTIONS(PlotPanels)
};

/// Makes the window higher by the panel inside it, as far as the screen allows, so that the plot keeps its height. When
/// the panel is closed, a window that has not been resized since gets its old size.
void growFor(QWidget& panel, QWidget& window, const QSize& before, const QRect& screen)
{
    if (window.isMaximized() || window.isFullScreen())
        return;
    const QRect area = screen.marginsRemoved(frameOf(window));
    const QSize wanted(before.width(), before.height() + panel.sizeHint().height());
    const QSize grown = wanted.expandedTo(window.size()).boundedTo(area.size());
    window.setGeometry(inside(QRect(window.geometry().topLeft(), grown), area));
    const auto restore = [&window, before, grown] {
        if (window.size() != grown || window.isMaximized())
            return;
        window.layout()->activate(); // else the panel still counts
        window.resize(before);
    };
    QObject::connect(&panel, &QObject::destroyed, &window, restore, Qt::QueuedConnection);
}

/// Shows a panel as a window beside the plot's window, or inside it.
void place(QWidget& panel, QWidget& window)
{
    panel.setAttribute(Qt::WA_DeleteOnClose);
    const QRect area = window.screen() != nullptr ? window.screen()->availableGeometry() : QRect();
    const QMargins border = frameOf(window); // the panel gets the same one
    const QRect inner = area.marginsRemoved(border);
    std::optional<QRect> free = placeBeside(panel.sizeHint(), window.frameGeometry(), area, border);
    auto* const layout = qobject_cast<QBoxLayout*>(window.layout());
    if (!free && layout != nullptr
        && layout->totalMinimumSize().height() + panel.minimumSizeHint().height() <= inner.height()) {
        const QSize before = window.size();
        layout->addWidget(&panel);
        panel.show();
        growFor(panel, window, before, area);
        return;
    }
    // A low screen has room for neither: a window in its corner, above that of the plot.
    if (!free && inner.isValid()) {
        const QSize size = panel.sizeHint().boundedTo(inner.size());
        free = QRect(QPoint(inner.right() - size.width() + 1, inner.bottom() - size.height() + 1), size);
    }
    panel.setParent(&window, Qt::Window);
    if (free)
        panel.setGeometry(*free);
    panel.show();
}

/// Opens a panel of this type, or raises the open one; one inside the window is closed.
template <typename Panel> void open(tarnis::PlotToolBar& bar)
{
    QWidget& window = *bar.window();
    if (bar.plot() == nullptr)
        return;
    auto* panel = window.findChild<Panel*>();
    if (panel == nullptr) {
        panel = new Panel(bar.plot(), &window);
        const QString subject = window.windowTitle();
        if (!subject.isEmpty())
            panel->setWindowTitle(QStringLiteral("%1 – %2").arg(panel->windowTitle(), subject));
        place(*panel, window);
    } else if (!panel->isWindow()) {
        panel->close(); // inside the window it has no close button
        return;
    }
    panel->raise();
    panel->activateWindow();
}

/// The menu, with translated texts. In a bar that is too narrow for its button it is a submenu.
class PanelsMenu : public QMenu {
public:
    explicit PanelsMenu(tarnis::PlotToolBar& bar)
        : QMenu(&bar)
        , m_bar(bar)
    {
        tarnis::onLanguageChange(*this, [this] { setTexts(); });
        const bool isMap = qobject_cast<XY2DGraphWidget*>(bar.plot()) != nullptr;
        add("openRegions", [this] { open<tarnis::RegionTable>(m_bar); });
        if (!isMap) {
            add("openFit", [this] { open<tarnis::FitPanel>(m_bar); });
            add("openPeaks", [this] { open<tarnis::PeakPanel>(m_bar); });
            add("openCalibration", [this] { open<tarnis::CalibrationPanel>(m_bar); });
        }
        setTexts();
    }

private:
    template <typename Open> void add(const char* name, const Open& openPanel)
    {
        QAction* const action = addAction(QString());
        action->setObjectName(QLatin1StringView(name));
        connect(action, &QAction::triggered, this, openPanel);
    }
    void setTexts()
    {
        menuAction()->setText(PlotPanels::tr("Analysis"));
        menuAction()->setToolTip(PlotPanels::tr("Analysis of this plot: regions, fits, peaks, energy calibration"));
        const QStringList texts { PlotPanels::tr("Regions..."), PlotPanels::tr("Fit..."), PlotPanels::tr("Peaks..."),
            PlotPanels::tr("Energy Calibration...") };
        const QList<QAction*> entries = actions();
        for (qsizetype i = 0; i < entries.size(); ++i)
            entries.at(i)->setText(texts.value(i));
    }

    tarnis::PlotToolBar& m_bar;
};

} // namespace

void addPanels(tarnis::PlotToolBar& bar)
{
    QAction* const action = (new PanelsMenu(bar))->menuAction();
    // At the front, where a narrow window shows it too.
    bar.insertAction(bar.actions().value(0), action);
    auto* const button = qobject_cast<QToolButton*>(bar.widgetForAction(action));
    if (button == nullptr)
        return;
    button->setObjectName(QStringLiteral("panelsButton"));
    button->setPopupMode(QToolButton::InstantPopup);
}

} // namespace console
