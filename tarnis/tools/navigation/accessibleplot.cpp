// What assistive technology sees of a plot with a PlotKeyboard. All other plots keep Qt's object for plain widgets.
#include "tarnis/foundation/helpers.h"
#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/tools/navigation/plotkeyboard_p.h"

#include <QAccessible>
#include <QAccessibleWidget>

namespace tarnis {

namespace {

/// A widget with texts of its own where the host has set none.
class AccessiblePart : public QAccessibleWidget {
public:
    AccessiblePart(QWidget* part, QAccessible::Role role)
        : QAccessibleWidget(part, role)
    {
    }
    QString text(QAccessible::Text kind) const override
    {
        const QString set = QAccessibleWidget::text(kind);
        return set.isEmpty() ? ownText(kind) : set;
    }

protected:
    virtual QString ownText(QAccessible::Text kind) const = 0;
};

class AccessiblePlot : public AccessiblePart {
public:
    explicit AccessiblePlot(XYGraphWidget* plot)
        : AccessiblePart(plot, QAccessible::Chart)
    {
    }

protected:
    QString ownText(QAccessible::Text kind) const override
    {
        const PlotKeyboard* const tool = keyboardOf(object());
        if (tool == nullptr)
            return {};
        switch (kind) {
        case QAccessible::Name:
            return tool->name();
        case QAccessible::Value:
            return tool->value();
        case QAccessible::Description:
            return tool->description();
        case QAccessible::Help:
            return PlotKeyboard::tr("The menu key opens the tools, F6 goes to the boxes beside the plot.");
        default:
            return {};
        }
    }
};

class AccessibleColourBar : public AccessiblePart {
public:
    explicit AccessibleColourBar(ColorBarWidget* bar)
        : AccessiblePart(bar, QAccessible::Indicator)
    {
    }

protected:
    QString ownText(QAccessible::Text kind) const override
    {
        const auto* const map = qobject_cast<XY2DGraphWidget*>(object()->parent());
        if (map == nullptr)
            return {};
        if (kind == QAccessible::Name)
            return PlotKeyboard::tr("Colour scale");
        const AxisRange levels = PlotAccess::levels(*map);
        return kind == QAccessible::Value ? PlotKeyboard::tr("%1 to %2").arg(numStr(levels.min), numStr(levels.max))
                                          : QString();
    }
};

/// Called for the class of an object and for each of its bases.
QAccessibleInterface* makeAccessible(const QString& className, QObject* object)
{
    if (className == QLatin1String("XYGraphWidget")) {
        auto* const plot = qobject_cast<XYGraphWidget*>(object);
        return keyboardOf(plot) != nullptr ? new AccessiblePlot(plot) : nullptr;
    }
    if (className == QLatin1String("ColorBarWidget")) {
        auto* const bar = qobject_cast<ColorBarWidget*>(object);
        return bar != nullptr && keyboardOf(bar->parent()) != nullptr ? new AccessibleColourBar(bar) : nullptr;
    }
    return nullptr;
}

void dropAccessible(QObject* object)
{
    if (QAccessibleInterface* const cached = QAccessible::queryAccessibleInterface(object))
        QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(cached));
}

} // namespace

void installAccessiblePlots()
{
    QAccessible::installFactory(makeAccessible); // keeps a factory once
}

void renewAccessible(XYGraphWidget& plot)
{
    dropAccessible(&plot);
    if (auto* const map = qobject_cast<XY2DGraphWidget*>(&plot))
        dropAccessible(&PlotAccess::colourBar(*map));
}

} // namespace tarnis
