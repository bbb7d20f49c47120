// Outlines of check boxes and radio buttons that are visible on a dark background.
#pragma once

#include <QProxyStyle>

namespace console {

/// The desktop's style, except for the outlines of indicators if the palette is dark: the style derives them from a
/// darker shade of the window, which is hardly visible on a dark base.
class IndicatorStyle : public QProxyStyle {
    Q_OBJECT
public:
    explicit IndicatorStyle(const QString& base);

    void drawPrimitive(
        PrimitiveElement element, const QStyleOption* option, QPainter* painter, const QWidget* widget) const override;

    /// Installs it as the style of the application, once.
    static void install();
};

} // namespace console
