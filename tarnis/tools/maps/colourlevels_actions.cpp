// The actions, the menu and the stored state of the colour levels.
#include "tarnis/tools/colourlevels.h"

#include "tarnis/plots/xy2dgraphwidget.h"
#include "tarnis/tools/base/toolaction_p.h"
#include "tarnis/tools/colourmaps.h"

#include <QActionGroup>
#include <QJsonArray>
#include <QMenu>
#include <QPainter>
#include <QPointer>
#include <utility>

namespace tarnis {

namespace {

const QLatin1String coloursKey("colours");
const QLatin1String scaleKey("scale");
const QLatin1String levelsKey("levels"); // [lower, upper]
const QLatin1String percentilesKey("percentiles"); // [lower, upper]
const QLatin1String stripKey("strip");
constexpr QSize previewSize(64, 64); // a menu shrinks it to a square, and a strip to a thin line

constexpr const char* scaleNames[] = { "linear", "sqrt", "log" }; // in the order of ColourLevels::Scale

void drawStrip(QPainter& painter, const IconInk& ink)
{
    painter.drawRect(QRectF(10.5, 1.8, 3.5, 12.4));
    for (const QPointF& end : { QPointF(6.5, 3.0), QPointF(4.0, 6.0), QPointF(2.0, 9.0), QPointF(5.5, 12.5) })
        painter.drawLine(end, QPointF(8.5, end.y()));
    painter.setPen(QPen(ink.accent, 1.4));
    painter.drawLine(QPointF(1.5, 4.5), QPointF(9.0, 4.5));
}

void drawColours(QPainter& painter, const IconInk& ink)
{
    for (int i = 0; i < 6; ++i)
        painter.fillRect(QRectF(2.0 + 2.0 * i, 4.0, 2.0, 8.0), ColourMaps::colour(QStringLiteral("viridis"), i / 5.0));
    painter.setPen(QPen(ink.line, 1.0));
    painter.drawRect(QRectF(2.0, 4.0, 12.0, 8.0));
}

/// Two numbers of a stored view.
std::optional<QPair<double, double>> pairOf(const QJsonValue& value)
{
    const QJsonArray numbers = value.toArray();
    if (numbers.size() != 2 || !numbers.at(0).isDouble() || !numbers.at(1).isDouble())
        return std::nullopt;
    return QPair<double, double>(numbers.at(0).toDouble(), numbers.at(1).toDouble());
}

} // namespace

void ColourLevels::makeActions()
{
    auto* const strip = new ToolAction(
        this, "levelStrip", [] { return ColourLevels::tr("Histogram of the Colours"); }, drawStrip);
    strip->setCheckable(true);
    connect(strip, &QAction::triggered, this, &ColourLevels::setStripVisible);
    auto* const colours = new ToolAction(
        this, "colourMenu", [] { return ColourLevels::tr("Colours and Scale"); }, drawColours);
    m_menu = new QMenu(plot());
    connect(this, &QObject::destroyed, m_menu, &QObject::deleteLater);
    connect(m_menu, &QMenu::aboutToShow, this, &ColourLevels::fillMenu);
    colours->setMenu(m_menu);
    m_switch = strip;
    m_menuAction = colours;
}

void ColourLevels::fillColours(QMenu& menu, bool forAll)
{
    const QString current = ColourMaps::current(*map());
    const QStringList names = ColourMaps::names();
    for (const QString& name : names) {
        const QPixmap preview = QPixmap::fromImage(ColourMaps::preview(name, previewSize));
        QAction* const entry = menu.addAction(QIcon(preview), ColourMaps::title(name));
        entry->setObjectName(name);
        entry->setCheckable(true);
        entry->setChecked(!forAll && name == current);
        connect(entry, &QAction::triggered, this, [this, name, forAll] {
            if (plot() == nullptr)
                return;
            if (forAll)
                ColourMaps::applyToAll(name);
            else
                ColourMaps::apply(*map(), name);
        });
    }
}

void ColourLevels::fillMenu()
{
    m_menu->clear();
    if (plot() == nullptr)
        return;
    QMenu* const colours = m_menu->addMenu(tr("Colours of This Map"));
    QMenu* const coloursOfAll = m_menu->addMenu(tr("Colours of All Maps"));
    fillColours(*colours, false);
    fillColours(*coloursOfAll, true);
    m_menu->addSeparator();
    auto* const scales = new QActionGroup(m_menu);
    const auto addScale = [&](const QString& text, Scale scale) {
        QAction* const entry = addMenuChoice(*m_menu, *scales, text, scale == this->scale());
        connect(entry, &QAction::triggered, this, [this, scale] { setScale(scale); });
    };
    addScale(tr("Linear Scale"), Scale::Linear);
    addScale(tr("Square Root Scale"), Scale::SquareRoot);
    addScale(tr("Logarithmic Scale"), Scale::Logarithmic);
    m_menu->addSeparator();
    auto* const limits = new QActionGroup(m_menu);
    connect(addMenuChoice(*m_menu, *limits, tr("Limits Follow the Data"), mode() == Mode::Automatic),
        &QAction::triggered, this, &ColourLevels::setAutomatic);
    for (const auto& [low, high] : { std::pair(1.0, 99.0), std::pair(0.0, 99.0), std::pair(0.0, 99.9) }) {
        const QString text = tr("Limits at %L1 and %L2 % of the Bins").arg(low).arg(high);
        const bool isChosen = mode() == Mode::Percentiles && percentiles() == std::pair(low, high);
        connect(addMenuChoice(*m_menu, *limits, text, isChosen), &QAction::triggered, this,
            [this, low = low, high = high] { setPercentiles(low, high); });
    }
}

QList<QAction*> ColourLevels::actions() const
{
    return { m_switch, m_menuAction };
}

QString ColourLevels::stateName() const
{
    return QStringLiteral("colourLevels");
}

QJsonObject ColourLevels::saveState() const
{
    if (plot() == nullptr)
        return {};
    QJsonObject state { { stripKey, isStripVisible() },
        { scaleKey, QLatin1String(scaleNames[static_cast<int>(scale())]) } };
    const QString colours = ColourMaps::current(*map());
    if (!colours.isEmpty())
        state.insert(coloursKey, colours);
    if (mode() == Mode::Percentiles)
        state.insert(percentilesKey, QJsonArray { percentiles().first, percentiles().second });
    else if (mode() == Mode::Held)
        state.insert(levelsKey, QJsonArray { lower(), upper() });
    return state;
}

void ColourLevels::restoreState(const QJsonObject& state)
{
    if (plot() == nullptr)
        return;
    const QPointer<ColourLevels> self(this); // a slot may delete it
    setStripVisible(state.value(stripKey).toBool(isStripVisible()));
    const QString colours = state.value(coloursKey).toString();
    if (!self.isNull() && colours != ColourMaps::current(*map()))
        ColourMaps::apply(*map(), colours); // an unknown name changes nothing
    for (const Scale scale : { Scale::Linear, Scale::SquareRoot, Scale::Logarithmic }) {
        if (!self.isNull() && state.value(scaleKey).toString() == QLatin1String(scaleNames[static_cast<int>(scale)]))
            setScale(scale);
    }
    if (self.isNull())
        return;
    if (const auto percentiles = pairOf(state.value(percentilesKey)))
        setPercentiles(percentiles->first, percentiles->second);
    else if (const auto levels = pairOf(state.value(levelsKey)))
        setLevels(levels->first, levels->second);
}

} // namespace tarnis
