// The actions and the stored state of a style.
#include "tarnis/tools/plotstyle.h"

#include "tarnis/plots/xy2dgraphwidget.h"
#include "tarnis/tools/base/toolaction_p.h"
#include "tarnis/tools/style/stylepainter_p.h"

#include <QActionGroup>
#include <QJsonObject>
#include <QMenu>
#include <QMetaEnum>
#include <QPainter>
#include <QSignalBlocker>

namespace tarnis {

namespace {

const QLatin1String themeKey("theme");
const QLatin1String formKey("form");
const QLatin1String numbersKey("numbers");
const QLatin1String lineWidthKey("lineWidth");
const QLatin1String textScaleKey("textScale");
const QLatin1String gridKey("grid");
const QLatin1String legendKey("legend");
const QLatin1String titleKey("title");
const QLatin1String squareKey("squareBins");

void drawStyle(QPainter& painter, const IconInk& ink)
{
    painter.drawPolyline(QPolygonF { { 2.5, 2.0 }, { 2.5, 13.5 }, { 14.0, 13.5 } });
    painter.setPen(QPen(ink.accent, 1.8));
    painter.drawPolyline(QPolygonF { { 4.5, 11.0 }, { 7.0, 9.5 }, { 9.0, 4.0 }, { 11.0, 9.5 }, { 13.5, 10.5 } });
}

template <typename Enum> QString keyOf(Enum value)
{
    return QString::fromLatin1(QMetaEnum::fromType<Enum>().valueToKey(static_cast<int>(value)));
}

/// The value named in the state; `present` for any other text.
template <typename Enum> Enum valueOf(const QJsonObject& state, QLatin1String key, Enum present)
{
    bool isKnown = false;
    const int value =
        QMetaEnum::fromType<Enum>().keyToValue(state.value(key).toString().toLatin1().constData(), &isKnown);
    return isKnown ? static_cast<Enum>(value) : present;
}

QString themeText(PlotStyle::Theme theme)
{
    switch (theme) {
    case PlotStyle::Theme::Dark:
        return PlotStyle::tr("Dark");
    case PlotStyle::Theme::Print:
        return PlotStyle::tr("Print");
    case PlotStyle::Theme::HighContrast:
        return PlotStyle::tr("High Contrast");
    default:
        return PlotStyle::tr("Light");
    }
}

} // namespace

/// One action with a menu: triggered, it selects the next theme.
void PlotStyle::makeActions()
{
    m_menu = std::make_unique<QMenu>();
    m_action = new ToolAction(
        this, "style", [] { return PlotStyle::tr("Colours and Curves"); }, drawStyle);
    m_action->setMenu(m_menu.get());
    connect(m_action, &QAction::triggered, this,
        [this] { setTheme(static_cast<Theme>((static_cast<int>(theme()) + 1) % themeCount)); });

    const auto add = [this](const char* name, ActionText text, const std::function<bool()>& isOn) {
        auto* const action = new ToolAction(this, name, text, drawStyle);
        action->setIcon(QIcon());
        action->setCheckable(true);
        m_menu->addAction(action);
        connect(this, &PlotStyle::styleChanged, action, [action, isOn] { action->setChecked(isOn()); });
        action->setChecked(isOn());
        return action;
    };
    const bool isMap = qobject_cast<XY2DGraphWidget*>(plot()) != nullptr;
    auto* const themes = new QActionGroup(m_menu.get());
    const auto addTheme = [&](const char* name, ActionText text, Theme value) {
        QAction* const action = add(name, text, [this, value] { return theme() == value; });
        themes->addAction(action);
        connect(action, &QAction::triggered, this, [this, value] { setTheme(value); });
    };
    addTheme(
        "lightTheme", [] { return themeText(Theme::Light); }, Theme::Light);
    addTheme(
        "darkTheme", [] { return themeText(Theme::Dark); }, Theme::Dark);
    addTheme(
        "printTheme", [] { return themeText(Theme::Print); }, Theme::Print);
    addTheme(
        "highContrastTheme", [] { return themeText(Theme::HighContrast); }, Theme::HighContrast);
    m_menu->addSeparator();
    auto* const forms = new QActionGroup(m_menu.get());
    forms->setVisible(!isMap);
    const auto addForm = [&](const char* name, ActionText text, CurveForm value) {
        QAction* const action = add(name, text, [this, value] { return curveForm() == value; });
        forms->addAction(action);
        connect(action, &QAction::triggered, this, [this, value] { setCurveForm(value); });
    };
    addForm(
        "formOfPlot", [] { return PlotStyle::tr("Curves as in the Menu"); }, CurveForm::AsPlot);
    addForm(
        "lines", [] { return PlotStyle::tr("Lines"); }, CurveForm::Lines);
    addForm(
        "steps", [] { return PlotStyle::tr("Steps"); }, CurveForm::Steps);
    addForm(
        "columns", [] { return PlotStyle::tr("Columns"); }, CurveForm::Columns);
    addForm(
        "points", [] { return PlotStyle::tr("Points"); }, CurveForm::Points);
    m_menu->addSeparator();
    connect(add(
                "powers", [] { return PlotStyle::tr("Powers of Ten"); },
                [this] { return numberForm() == NumberForm::Powers; }),
        &QAction::triggered, this, [this](bool on) { setNumberForm(on ? NumberForm::Powers : NumberForm::Prefixes); });
    QAction* const square = add(
        "squareBins", [] { return PlotStyle::tr("Square Bins for Equal Units"); }, [this] { return areBinsSquare(); });
    square->setVisible(isMap);
    connect(square, &QAction::triggered, this, &PlotStyle::setBinsSquare);
}

QList<QAction*> PlotStyle::actions() const
{
    return m_action != nullptr ? QList<QAction*> { m_action } : QList<QAction*>();
}

QString PlotStyle::stateName() const
{
    return QStringLiteral("style");
}

QJsonObject PlotStyle::saveState() const
{
    return { { themeKey, keyOf(theme()) }, { formKey, keyOf(curveForm()) }, { numbersKey, keyOf(numberForm()) },
        { lineWidthKey, lineWidth() }, { textScaleKey, textScale() }, { gridKey, isGridShown() },
        { legendKey, isLegendShown() }, { titleKey, isTitleShown() }, { squareKey, areBinsSquare() } };
}

void PlotStyle::restoreState(const QJsonObject& state)
{
    const QJsonObject before = saveState();
    QSignalBlocker quiet(this); // one signal for all, after which a slot may have deleted the style
    setTheme(valueOf(state, themeKey, theme()));
    setCurveForm(valueOf(state, formKey, curveForm()));
    setNumberForm(valueOf(state, numbersKey, numberForm()));
    const double width = state.value(lineWidthKey).toDouble(lineWidth());
    if (width == 0.0 || isLineWidth(width))
        setLineWidth(width);
    if (const double scale = state.value(textScaleKey).toDouble(textScale()); isTextScale(scale))
        setTextScale(scale);
    setGridShown(state.value(gridKey).toBool(isGridShown()));
    setLegendShown(state.value(legendKey).toBool(isLegendShown()));
    setTitleShown(state.value(titleKey).toBool(isTitleShown()));
    setBinsSquare(state.value(squareKey).toBool(areBinsSquare()));
    quiet.unblock();
    if (saveState() != before)
        Q_EMIT styleChanged();
}

} // namespace tarnis
