#include "tarnis/dialogs/statreply_p.h"

#include <QHash>
#include <QStringTokenizer>
#include <QStringView>

namespace tarnis {

QList<NameValue> namedValues(const QString& reply)
{
    QList<NameValue> values;
    QHash<QStringView, qsizetype> places;
    for (const QStringView line : qTokenize(reply, u'\n')) {
        const qsizetype colon = line.indexOf(u':');
        if (colon <= 0)
            continue;
        const QStringView name = line.first(colon);
        if (name == u"OK" || name == u"NG")
            continue;
        const QString value = line.sliced(colon + 1).toString();
        const auto place = places.constFind(name);
        if (place != places.cend()) {
            values[*place].value = value;
        } else {
            places.insert(name, values.size());
            values.append({ name.toString(), value });
        }
    }
    return values;
}

} // namespace tarnis
