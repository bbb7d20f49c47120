// The layouts of a read-out over a plot, kept from one repaint to the next.
#pragma once

#include "tarnis/tools/base/labelplacement_p.h"
#include "tarnis/tools/base/plotlabel_p.h"

#include <QFont>
#include <QFontMetrics>
#include <QString>

#include <optional>

namespace tarnis {

/// The layouts of the last read-out: each is needed to find what to repaint, and to paint it.
struct ReadOutLabels {
    void use(const QString& given, const QFont& inFont)
    {
        if (parts && text == given && font == inFont)
            return;
        text = given;
        font = inFont;
        parts.emplace(text, QFontMetrics(font));
        line.reset();
        lines.reset();
    }
    /// The height of a box of so many lines.
    int heightOf(qsizetype number) const
    {
        return labelSize(QFontMetrics(font), QString(QStringLiteral("1\n").repeated(number)).chopped(1)).height();
    }
    const LabelLayout& inOneLine()
    {
        if (!line)
            line.emplace(text, font);
        return *line;
    }
    const LabelLayout& inLines(int maxWidth, int maxLines)
    {
        if (!lines || width != maxWidth || count != maxLines)
            lines.emplace(wrapped(*parts, QFontMetrics(font), maxWidth, maxLines), font);
        width = maxWidth;
        count = maxLines;
        return *lines;
    }

    QString text;
    QFont font;
    std::optional<ReadOutParts> parts;
    std::optional<LabelLayout> line;
    std::optional<LabelLayout> lines;
    int width = 0; // of the lines
    int count = 0;
};

/// A read-out and its place. The layout is that of the labels until the next one is made.
struct PlacedReadOut {
    QRect row; ///< of the text's height, at least as wide as the text
    const LabelLayout* layout = nullptr; ///< null if there is no such place
};

/// The place in `area` with the fewest lines in which the text of `labels` meets no box and nothing is elided.
inline PlacedReadOut placedBeside(ReadOutLabels& labels, const QRect& area, const QList<QRect>& boxes, int maxLines)
{
    const int lineHeight = labels.heightOf(2) - labels.heightOf(1);
    const QSize padding = labelSize(QFontMetrics(labels.font), QString()) - QSize(0, lineHeight);
    const FreeLines found = freeLines(*labels.parts, area, boxes, lineHeight, padding, maxLines);
    if (found.row.isNull())
        return {};
    return { found.row, &labels.inLines(found.width, found.count) };
}

} // namespace tarnis
