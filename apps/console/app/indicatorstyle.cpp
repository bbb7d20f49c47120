#include "app/indicatorstyle.h"

#include "app/colours.h"

#include <QApplication>
#include <QStyleFactory>
#include <QStyleOption>

namespace console {

namespace {

/// The outline is derived as a darker shade of this, with a contrast of 3 to 1 or more on every background of the dark
/// palette.
constexpr QColor outlineSource(0xf0, 0xf0, 0xf0);

bool isIndicator(QStyle::PrimitiveElement element)
{
    return element == QStyle::PE_IndicatorCheckBox || element == QStyle::PE_IndicatorRadioButton;
}

template <typename Option>
void drawOutlined(
    const QProxyStyle& style, QStyle::PrimitiveElement element, Option option, QPainter* painter, const QWidget* widget)
{
    option.palette.setColor(QPalette::Window, outlineSource);
    style.QProxyStyle::drawPrimitive(element, &option, painter, widget);
}

} // namespace

IndicatorStyle::IndicatorStyle(const QString& base)
    : QProxyStyle(QStyleFactory::create(base))
{
}

void IndicatorStyle::drawPrimitive(
    PrimitiveElement element, const QStyleOption* option, QPainter* painter, const QWidget* widget) const
{
    if (!isIndicator(element) || !isDark(option->palette))
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    else if (const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(option))
        drawOutlined(*this, element, *button, painter, widget);
    else if (const auto* const item = qstyleoption_cast<const QStyleOptionViewItem*>(option))
        drawOutlined(*this, element, *item, painter, widget);
    else
        drawOutlined(*this, element, *option, painter, widget);
}

void IndicatorStyle::install()
{
    if (!qobject_cast<IndicatorStyle*>(QApplication::style()))
        QApplication::setStyle(new IndicatorStyle(QApplication::style()->name())); // the application's
}

} // namespace console
