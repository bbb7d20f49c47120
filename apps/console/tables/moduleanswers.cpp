#include "tables/moduleanswers.h"

#include "server/replytext.h"

#include <tarnis/server/tarniscmd.h>

#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>
#include <tuple>

namespace console {

namespace {

constexpr int maxModules = 1000;

struct ModuleAnswers {
    Q_DECLARE_TR_FUNCTIONS(console::ModuleAnswers)
};

QMap<QString, QString> valuesOf(const QStringList& lines)
{
    QMap<QString, QString> values;
    TarnisCmd::makeNameValueMap(lines, values);
    values.remove(QStringLiteral("OK")); // the first line of an accepted command is not a value
    return values;
}

/// Names that end in a number are sorted by that number, independent of the locale.
std::tuple<QString, qulonglong, QString> orderKey(const QString& name)
{
    qsizetype digits = name.size();
    while (digits > 0 && name.at(digits - 1) >= u'0' && name.at(digits - 1) <= u'9')
        --digits;
    return { name.left(digits), QStringView(name).mid(digits).toULongLong(), name };
}

ModuleAnswer wholeAnswer(const QString& addressed, const QString& reply)
{
    const QMap<QString, QString> values = valuesOf(reply.split(u'\n'));
    if (!values.isEmpty())
        return { addressed, ModuleAnswers::tr("done"), values };
    QString text = reply.trimmed();
    if (text.startsWith(u"OK:"))
        text = text.mid(3).trimmed();
    return { addressed, text.isEmpty() ? ModuleAnswers::tr("done") : text, {} };
}

} // namespace

QList<ModuleAnswer> moduleAnswers(const QString& addressed, const QString& reply)
{
    if (replyKind(reply) == ReplyKind::Refused)
        return { { addressed, ModuleAnswers::tr("refused: %1").arg(reply.trimmed().mid(3).trimmed()), {} } };
    QMap<QString, QList<QString>> sections;
    TarnisCmd::devideByKey(reply, sections);
    if (sections.isEmpty())
        return { wholeAnswer(addressed, reply) };
    QList<ModuleAnswer> answers;
    for (auto section = sections.cbegin(); section != sections.cend(); ++section)
        answers.append({ section.key(), ModuleAnswers::tr("done"), valuesOf(section.value()) });
    std::stable_sort(answers.begin(), answers.end(),
        [](const ModuleAnswer& a, const ModuleAnswer& b) { return orderKey(a.module) < orderKey(b.module); });
    return answers;
}

QStringList moduleIds(const QString& text, QString& problem)
{
    static const QRegularExpression separators(QStringLiteral("[\\s,;]+"));
    static const QRegularExpression range(QStringLiteral("^(\\d{1,9})-(\\d{1,9})$"));
    problem.clear();
    QStringList ids;
    for (const QString& word : text.split(separators, Qt::SkipEmptyParts)) {
        const QRegularExpressionMatch match = range.match(word);
        if (!match.hasMatch()) {
            ids.append(word);
            continue;
        }
        const int first = match.captured(1).toInt();
        const int last = match.captured(2).toInt();
        if (last < first || last - first >= maxModules)
            problem = ModuleAnswers::tr("%1 is not a valid range of modules").arg(word);
        for (int id = first; problem.isEmpty() && id <= last; ++id)
            ids.append(QString::number(id));
    }
    ids.removeDuplicates();
    if (problem.isEmpty() && ids.isEmpty())
        problem = ModuleAnswers::tr("Type the number of a module");
    else if (problem.isEmpty() && ids.size() > maxModules)
        problem = ModuleAnswers::tr("These are more than %L1 modules").arg(maxModules);
    return ids;
}

} // namespace console
