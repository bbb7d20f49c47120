#include "plots/plottheme.h"

#include "app/colours.h"

#include <tarnis/foundation/retranslator.h>
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

/// The stored name of a theme.
struct StoredTheme {
    PlotTheme theme;
    QLatin1String name;
};
constexpr std::array themes { StoredTheme { PlotTheme::Window, QLatin1String("window") },
    StoredTheme { PlotTheme::Light, QLatin1String("light") }, StoredTheme { PlotTheme::Dark, QLatin1String("dark") },
    StoredTheme { PlotTheme::Print, QLatin1String("print") },
    StoredTheme { PlotTheme::HighContrast, QLatin1String("highContrast") },
    StoredTheme { PlotTheme::Classic, QLatin1String("classic") } };

PlotTheme s_theme = PlotTheme::Window;

tarnis::PlotStyle::Theme themeOf(PlotTheme theme)
{
    using Theme = tarnis::PlotStyle::Theme;
    switch (theme) {
    case PlotTheme::Light:
        return Theme::Light;
    case PlotTheme::Dark:
        return Theme::Dark;
    case PlotTheme::Print:
        return Theme::Print;
    case PlotTheme::HighContrast:
        return Theme::HighContrast;
    default:
        return isDark(QApplication::palette()) ? Theme::Dark : Theme::Light;
    }
}

tarnis::PlotStyle* styleOf(const XYGraphWidget& plot)
{
    return plot.findChild<tarnis::PlotStyle*>(QString(), Qt::FindDirectChildrenOnly);
}

constexpr const char* servedProperty = "hasPlotTheme"; // marks plots that follow the menu

void apply(XYGraphWidget& plot)
{
    tarnis::PlotStyle* const style = styleOf(plot);
    if (s_theme == PlotTheme::Classic)
        delete style;
    else if (style == nullptr)
        new tarnis::PlotStyle(&plot, themeOf(s_theme)); // owned by the plot
    else
        style->setTheme(themeOf(s_theme));
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

void applyTheme(QWidget& window)
{
    const auto plots = window.findChildren<XYGraphWidget*>();
    for (XYGraphWidget* const plot : plots) {
        if (plot->property(servedProperty).toBool())
            continue; // keeps the user's choice for a plot while it is hidden
        plot->setProperty(servedProperty, true);
        apply(*plot);
    }
}

void reapplyTheme(QWidget& window)
{
    const auto plots = window.findChildren<XYGraphWidget*>();
    for (XYGraphWidget* const plot : plots)
        plot->setProperty(servedProperty, false);
    applyTheme(window);
}

PlotThemeMenu::PlotThemeMenu(QSettings& store, QWidget* parent)
    : QMenu(parent)
    , m_store(store)
    , m_group(new QActionGroup(this))
{
    tarnis::onLanguageChange(*this, [this] { setTexts(); });
    setObjectName(QStringLiteral("plotThemeMenu"));
    setToolTipsVisible(true);
    const QString stored = m_store.value(storeKey).toString();
    s_theme = PlotTheme::Window;
    for (const StoredTheme& known : themes) {
        QAction* const action = addAction(QString());
        action->setObjectName(QStringLiteral("%1ThemeAction").arg(known.name));
        action->setCheckable(true);
        m_group->addAction(action);
        if (stored == known.name)
            s_theme = known.theme;
        connect(action, &QAction::triggered, this, [this, theme = known.theme] { choose(theme); });
    }
    actions().at(static_cast<int>(s_theme))->setChecked(true);
    setTexts();
    applyToOpenPlots();
}

void PlotThemeMenu::choose(PlotTheme theme)
{
    s_theme = theme;
    m_store.setValue(storeKey, themes.at(static_cast<std::size_t>(theme)).name);
    applyToOpenPlots();
}

void PlotThemeMenu::setTexts()
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

void PlotThemeMenu::changeEvent(QEvent* event)
{
    QMenu::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && s_theme == PlotTheme::Window)
        applyToOpenPlots();
}

} // namespace console
