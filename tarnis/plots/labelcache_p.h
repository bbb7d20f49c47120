// Short texts that are drawn again and again: laid out once for each font, drawn as QPainter::drawText() draws them.
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

/// Keeps the layout of labels. Numbers and other plain words of one line are kept; any other text goes to the painter.
class LabelCache {
public:
    LabelCache();
    ~LabelCache();
    LabelCache(const LabelCache&) = delete;
    LabelCache& operator=(const LabelCache&) = delete;

    /// Exactly the pixels of painter.drawText(rect, flags, text). Flags of alignment only.
    void draw(QPainter& painter, const QRectF& rect, int flags, const QString& text);

    /// metrics.horizontalAdvance(text)
    int advanceOf(const QString& text, const QFontMetrics& metrics);

private:
    struct Label {
        std::unique_ptr<QTextLayout> layout; ///< of one line
        qreal width = 0.0; ///< of the ink and its bearings
        qreal height = 0.0;
        qreal advance = 0.0;
    };
    const Label& labelOf(const QString& text, const QFont& font);

    QFont m_font; ///< of all labels that are kept
    QHash<QString, std::shared_ptr<Label>> m_labels;
    QFontMetrics m_metrics { m_font }; ///< of all advances that are kept
    QHash<QString, int> m_advances;
};

} // namespace tarnis
