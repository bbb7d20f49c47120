// A plot of several series with access to its members.
#pragma once

#include "support/curveprobe.h"

namespace tarnis::testing {

class Plot : public tarnis::testing::MultiProbe {
public:
    Plot()
    {
        init(QStringLiteral("Channel"), QStringLiteral("Counts"), 500.0, 50.0, true, true);
        resize(400, 300);
        m_refreshRequired = false;
    }
    /// True if a refresh was requested since the last call.
    bool wasRefreshed() { return std::exchange(m_refreshRequired, false); }

    QImage picture()
    {
        m_doubleBuffered = true;
        m_refreshRequired = true;
        refreshPixmapIfRequired();
        return m_pixmap.toImage();
    }

    QAction* entry(const QString& text) const
    {
        for (QAction* action : actions()) {
            if (action->text() == text)
                return action;
        }
        return nullptr;
    }
};

inline int count(const QImage& image, QColor color)
{
    int pixels = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            pixels += image.pixelColor(x, y) == color ? 1 : 0;
    }
    return pixels;
}

} // namespace tarnis::testing
