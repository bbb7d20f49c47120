// Outlines of check boxes and radio buttons that can be seen on a dark ground.
#pragma once

#include <QProxyStyle>

namespace console {

/// The desktop's style, but for the outlines of indicators where the palette is dark: the style makes them from a
/// darker shade of the window, which is hardly there on a dark base.
class IndicatorStyle : public QProxyStyle {
    Q_OBJECT
public:
    explicit IndicatorStyle(const QString& base);

    void drawPrimitive(
        PrimitiveElement element, const QStyleOption* option, QPainter* painter, const QWidget* widget) const override;

    /// Makes it the style of the application, once.
    static void install();
};

} // namespace console
