#include "plots/plottheme.h"

#include "app/colours.h"

#include <tarnis/plots/xygraphwidget.h>
#include <tarnis/tools/plotstyle.h>

#include <QActionGroup>
#include <QApplication>
#include <QEvent>
#include <QPointer>
#include <QSettings>
#include <QVariant>

#include <array>
#include <utility>

namespace console {

namespace {

constexpr QLatin1String storeKey("window/plotLook");

/// The stored name of a look.
struct StoredLook {
    PlotLook look;
    QLatin1String name;
};
constexpr std::array looks { StoredLook { PlotLook::Window, QLatin1String("window") },
    StoredLook { PlotLook::Light, QLatin1String("light") }, StoredLook { PlotLook::Dark, QLatin1String("dark") },
    StoredLook { PlotLook::Print, QLatin1String("print") },
    StoredLook { PlotLook::HighContrast, QLatin1String("highContrast") },
    StoredLook { PlotLook::Classic, QLatin1String("classic") } };

PlotLook s_look = PlotLook::Window;

tarnis::PlotStyle::Theme themeOf(PlotLook look)
{
    using Theme = tarnis::PlotStyle::Theme;
    switch (look) {
    case PlotLook::Light:
        return Theme::Light;
    case PlotLook::Dark:
        return Theme::Dark;
    case PlotLook::Print:
        return Theme::Print;
    case PlotLook::HighContrast:
        return Theme::HighContrast;
    default:
        return isDark(QApplication::palette()) ? Theme::Dark : Theme::Light;
    }
}

tarnis::PlotStyle* styleOf(const XYGraphWidget& plot)
{
    return plot.findChild<tarnis::PlotStyle*>(QString(), Qt::FindDirectChildrenOnly);
}

constexpr const char* servedProperty = "hasPlotLook"; // marks plots that follow the menu

void apply(XYGraphWidget& plot)
{
    tarnis::PlotStyle* const style = styleOf(plot);
    if (s_look == PlotLook::Classic)
        delete style;
    else if (style == nullptr)
        new tarnis::PlotStyle(&plot, themeOf(s_look)); // owned by the plot
    else
        style->setTheme(themeOf(s_look));
}

void applyToOpenPlots()
{
    // Collected first, because adding or removing a style may delete other widgets of the list.
    QList<QPointer<XYGraphWidget>> plots;
    const QWidgetList all = QApplication::allWidgets();
    for (QWidget* const widget : all) {
        auto* const plot = qobject_cast<XYGraphWidget*>(widget);
        if (plot && plot->property(servedProperty).toBool())
            plots.append(plot);
    }
    for (const QPointer<XYGraphWidget>& plot : std::as_const(plots)) {
        if (plot)
            apply(*plot);
    }
}

} // namespace

PlotLook plotLook()
{
    return s_look;
}

void applyLook(QWidget& window)
{
    const auto plots = window.findChildren<XYGraphWidget*>();
    for (XYGraphWidget* const plot : plots) {
        if (plot->property(servedProperty).toBool())
            continue; // keeps the user's choice for a plot while it is hidden
        plot->setProperty(servedProperty, true);
        apply(*plot);
    }
}

void reapplyLook(QWidget& window)
{
    const auto plots = window.findChildren<XYGraphWidget*>();
    for (XYGraphWidget* const plot : plots)
        plot->setProperty(servedProperty, false);
    applyLook(window);
}

PlotLookMenu::PlotLookMenu(QSettings& store, QWidget* parent)
    : QMenu(parent)
    , m_store(store)
    , m_group(new QActionGroup(this))
{
    setObjectName(QStringLiteral("plotLookMenu"));
    setToolTipsVisible(true);
    const QString stored = m_store.value(storeKey).toString();
    s_look = PlotLook::Window;
    for (const StoredLook& known : looks) {
        QAction* const action = addAction(QString());
        action->setObjectName(QStringLiteral("%1LookAction").arg(known.name));
        action->setCheckable(true);
        m_group->addAction(action);
        if (stored == known.name)
            s_look = known.look;
        connect(action, &QAction::triggered, this, [this, look = known.look] { choose(look); });
    }
    actions().at(static_cast<int>(s_look))->setChecked(true);
    setTexts();
    applyToOpenPlots();
}

void PlotLookMenu::choose(PlotLook look)
{
    s_look = look;
    m_store.setValue(storeKey, looks.at(static_cast<std::size_t>(look)).name);
    applyToOpenPlots();
}

void PlotLookMenu::setTexts()
{
    setTitle(tr("&Plots"));
    const std::array texts { tr("As the &Window"), tr("&Light"), tr("&Dark"), tr("&Print"), tr("&High Contrast"),
        tr("&Classic") };
    const std::array tips { tr("Light or dark plots, like the console's windows"), tr("Plots on white"),
        tr("Plots on dark grey"), tr("Plots in black on white, for paper"),
        tr("Plots on black with thick lines and large contrast"),
        tr("Plots on black in a grey frame, the original look") };
    const QList<QAction*> choices = actions();
    for (qsizetype i = 0; i < choices.size(); ++i) {
        choices.at(i)->setText(texts.at(static_cast<std::size_t>(i)));
        choices.at(i)->setToolTip(tips.at(static_cast<std::size_t>(i)));
    }
}

void PlotLookMenu::changeEvent(QEvent* event)
{
    QMenu::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        setTexts();
    else if (event->type() == QEvent::PaletteChange && s_look == PlotLook::Window)
        applyToOpenPlots();
}

} // namespace console
