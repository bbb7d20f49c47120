// Caches the layouts of short texts that are drawn repeatedly. They are laid out once for each font, and drawn as by
// QPainter::drawText().
#pragma once

#include <QFont>
#include <QFontMetrics>
#include <QHash>
#include <QRectF>
#include <QString>

#include <memory>

QT_BEGIN_NAMESPACE
class QPainter;
class QTextLayout;
QT_END_NAMESPACE

namespace tarnis {

/// Caches the layouts of labels. Numbers and other simple single-line texts are cached; other texts are drawn by the
/// painter.
class LabelCache {
public:
    LabelCache();
    ~LabelCache();
    LabelCache(const LabelCache&) = delete;
    LabelCache& operator=(const LabelCache&) = delete;

    /// Draws exactly the pixels of painter.drawText(rect, flags, text). Only alignment flags are supported.
    void draw(QPainter& painter, const QRectF& rect, int flags, const QString& text);

    /// metrics.horizontalAdvance(text)
    int advanceOf(const QString& text, const QFontMetrics& metrics);

private:
    struct Label {
        std::unique_ptr<QTextLayout> layout; ///< layout of one line
        qreal width = 0.0; ///< width of the glyphs including bearings
        qreal height = 0.0;
        qreal advance = 0.0;
    };
    const Label& labelOf(const QString& text, const QFont& font);

    QFont m_font; ///< font of all cached labels
    QHash<QString, std::shared_ptr<Label>> m_labels;
    QFontMetrics m_metrics { m_font }; ///< metrics of all cached advances
    QHash<QString, int> m_advances;
};

} // namespace tarnis
