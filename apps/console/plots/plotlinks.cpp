#include "plots/plotlinks.h"

#include <tarnis/foundation/retranslator.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/plotcalibration.h>
#include <tarnis/tools/plottoolbar.h>

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QMenu>
#include <QToolButton>

#include <algorithm>

namespace console {

namespace {

const QLatin1String groupKey("group");

struct PlotLinks {
    Q_DECLARE_TR_FUNCTIONS(PlotLinks)
};

/// Names the quantity of an axis: its name and unit, and the calibration of energies, since equal channels of two
/// calibrations have different energies. Empty for an axis without a name.
QString quantityOf(const XYGraphWidget& plot, Qt::Orientation axis)
{
    QString name = axis == Qt::Horizontal ? plot.getNameX() : plot.getNameY();
    const auto* const calibration = axis == Qt::Horizontal ? tarnis::PlotCalibration::of(plot) : nullptr;
    if (name.isEmpty() || calibration == nullptr)
        return name;
    return name + QString::fromUtf8(tarnis::calibrationToJson(calibration->calibration()));
}

/// Has translated texts, and the current group in the text of its button.
class LinksMenu : public QMenu {
public:
    LinksMenu(PlotLink& link, QWidget* parent)
        : QMenu(parent)
        , m_link(link)
        , m_choices(new QActionGroup(this))
    {
        tarnis::onLanguageChange(*this, [this] { setTexts(); });
        setToolTipsVisible(true);
        const QStringList groups = QStringList(QString()) + PlotLink::groups();
        for (const QString& group : groups) {
            QAction* const choice = m_choices->addAction(QString());
            choice->setObjectName(QStringLiteral("linkGroup") + group);
            choice->setCheckable(true);
            choice->setData(group);
            connect(choice, &QAction::triggered, &link, [&link, group] { link.join(group); });
        }
        addActions(m_choices->actions());
        connect(&link, &PlotLink::groupChanged, this, &LinksMenu::setTexts);
        setTexts();
    }

private:
    void setTexts()
    {
        const QString current = m_link.group();
        menuAction()->setText(current.isEmpty() ? PlotLinks::tr("Link") : PlotLinks::tr("Link %1").arg(current));
        menuAction()->setToolTip(
            PlotLinks::tr("Link this plot with others: plots of a group show the same range of axes of the same name"));
        const QList<QAction*> choices = m_choices->actions();
        for (QAction* const choice : choices) {
            const QString group = choice->data().toString();
            choice->setText(group.isEmpty() ? PlotLinks::tr("Not Linked") : PlotLinks::tr("Group %1").arg(group));
            choice->setChecked(group == current);
        }
    }

    PlotLink& m_link;
    QActionGroup* m_choices;
};

} // namespace

PlotLink::PlotLink(XYGraphWidget* plot)
    : InteractiveTool(plot, Nothing)
{
}

PlotLink::~PlotLink()
{
    if (plot() == nullptr)
        return;
    for (const Joined& joined : m_joined)
        joined.link->remove(plot(), joined.axis);
}

QStringList PlotLink::groups()
{
    return { QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C") };
}

void PlotLink::join(const QString& group)
{
    if (plot() == nullptr || group == m_group)
        return;
    for (const Joined& joined : m_joined)
        joined.link->remove(plot(), joined.axis);
    m_joined.clear();
    m_group = group;
    if (!group.isEmpty()) {
        link(Qt::Horizontal);
        if (qobject_cast<const XY2DGraphWidget*>(plot()) != nullptr)
            link(Qt::Vertical);
    }
    Q_EMIT groupChanged();
}

void PlotLink::link(Qt::Orientation axis)
{
    const QString quantity = quantityOf(*plot(), axis);
    if (quantity.isEmpty())
        return;
    std::shared_ptr<tarnis::AxisLink> link = linkOf(quantity);
    if (!link)
        link = std::make_shared<tarnis::AxisLink>();
    link->add(plot(), axis);
    m_joined.push_back({ axis, link });
}

/// The link that other plots of the group have for an axis of this quantity; null without one. Quantities are compared
/// as they are now, because their names follow the language.
std::shared_ptr<tarnis::AxisLink> PlotLink::linkOf(const QString& quantity) const
{
    const QWidgetList widgets = QApplication::allWidgets();
    for (const QWidget* const widget : widgets) {
        const auto* const other = widget->findChild<PlotLink*>(QString(), Qt::FindDirectChildrenOnly);
        if (other == nullptr || other == this || other->plot() == nullptr || other->m_group != m_group)
            continue;
        const auto found = std::find_if(other->m_joined.begin(), other->m_joined.end(),
            [&](const Joined& joined) { return quantityOf(*other->plot(), joined.axis) == quantity; });
        if (found != other->m_joined.end())
            return found->link;
    }
    return nullptr;
}

QString PlotLink::stateName() const
{
    return QStringLiteral("link");
}

QJsonObject PlotLink::saveState() const
{
    return { { groupKey, m_group } };
}

void PlotLink::restoreState(const QJsonObject& state)
{
    const QString group = state.value(groupKey).toString(m_group);
    if (group.isEmpty() || groups().contains(group))
        join(group);
}

void addLinks(tarnis::PlotToolBar& bar)
{
    if (bar.plot() == nullptr)
        return;
    auto* const link = new PlotLink(bar.plot()); // owned by the plot
    auto* const menu = new LinksMenu(*link, &bar);
    QObject::connect(link, &QObject::destroyed, menu, &QObject::deleteLater);
    bar.insertAction(bar.actions().value(0), menu->menuAction());
    auto* const button = qobject_cast<QToolButton*>(bar.widgetForAction(menu->menuAction()));
    if (button == nullptr)
        return;
    button->setObjectName(QStringLiteral("linkButton"));
    button->setPopupMode(QToolButton::InstantPopup);
}

} // namespace console
