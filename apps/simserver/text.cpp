#include "text.h"

#include <QLocale>
#include <QStringList>

#include <algorithm>

namespace simserver {

QString numberText(double number)
{
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

QString shown(const QString& text)
{
    constexpr qsizetype longest = 60;
    QString result = text.left(longest);
    std::replace_if(
        result.begin(), result.end(), [](QChar c) { return !c.isPrint(); }, QLatin1Char('?'));
    if (text.size() > longest)
        result += QStringLiteral("...");
    return result;
}

QString cleanServerPath(const QString& path, const QString& base)
{
    const QString whole = path.startsWith(QLatin1Char('/')) ? path : base + QLatin1Char('/') + path;
    QStringList parts;
    for (const QString& part : whole.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        if (part == QStringLiteral("..")) {
            if (!parts.isEmpty())
                parts.removeLast();
        } else if (part != QStringLiteral(".")) {
            parts.append(part);
        }
    }
    return QLatin1Char('/') + parts.join(QLatin1Char('/'));
}

QString unquoted(const QString& text)
{
    const QLatin1Char quote('"');
    if (text.size() < 2 || !text.startsWith(quote) || !text.endsWith(quote))
        return text;
    // A client only puts a backslash before each quote, so a backslash at the end is kept.
    return text.mid(1, text.size() - 2).replace(QStringLiteral("\\\""), QStringLiteral("\""));
}

} // namespace simserver
