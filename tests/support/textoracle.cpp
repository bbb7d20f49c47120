#include "support/textoracle.h"

namespace tarnis::testing {

namespace {

QString withoutOuterSpace(QString text)
{
    const QString space = QStringLiteral(" \t\n\v\f\r");
    if (!text.isEmpty() && space.contains(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && space.contains(text.back()))
        text.chop(1);
    return text;
}

} // namespace

Sections spelledSections(const QString& text)
{
    Sections out;
    QString key;
    QStringList lines;
    const auto store = [&] {
        if (key.size() > 0 && lines.size() > 0)
            out.insert(key, out.value(key) + lines);
    };
    qsizetype begin = 0;
    while (begin <= text.size()) {
        qsizetype end = begin;
        while (end < text.size() && text[end] != QLatin1Char('\n'))
            ++end;
        const QString line = text.sliced(begin, end - begin);
        begin = end + 1;
        if (line.size() >= 2 && line[0] == QLatin1Char('-') && line[1] == QLatin1Char('-')) {
            store();
            key.clear();
            lines.clear();
            for (qsizetype i = 0; i < line.size(); ++i) {
                if (i + 1 < line.size() && line[i] == QLatin1Char('-') && line[i + 1] == QLatin1Char('-'))
                    ++i;
                else
                    key += line[i];
            }
        } else {
            lines.append(line);
        }
    }
    store();
    return out;
}

Values spelledValues(const QStringList& lines)
{
    Values out;
    for (const QString& line : lines) {
        qsizetype colon = 0;
        while (colon < line.size() && line[colon] != QLatin1Char(':'))
            ++colon;
        if (colon > 0 && colon < line.size())
            out.insert(withoutOuterSpace(line.first(colon)), withoutOuterSpace(line.sliced(colon + 1)));
    }
    return out;
}

} // namespace tarnis::testing
