#include "tarnis/tools/plotview.h"

#include "tarnis/foundation/files.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/tools/interactivetool.h"
#include "tarnis/tools/navigation/viewcontrol_p.h"
#include "tarnis/tools/navigation/viewfile_p.h"

#include <QAction>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPointer>
#include <QStandardPaths>

#include <utility>

namespace tarnis {

namespace {

const QLatin1String gridKey("grid");
const QLatin1String toolsKey("tools"); // maps a name to a state, or to a list if a plot has several tools of one kind
const QString suffix = QStringLiteral(".json");

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(tarnis::PlotView)
};

QJsonObject statesOfTools(const XYGraphWidget& plot)
{
    QHash<QString, QJsonArray> states;
    for (const InteractiveTool* const tool : InteractiveTool::toolsOf(plot)) {
        const QJsonObject state = tool->saveState();
        if (!state.isEmpty() || states.contains(tool->stateName()))
            states[tool->stateName()].append(state);
    }
    QJsonObject tools;
    for (auto it = states.cbegin(); it != states.cend(); ++it)
        tools.insert(it.key(), it.value().size() == 1 ? it.value().first() : QJsonValue(it.value()));
    return tools;
}

void restoreTools(XYGraphWidget& plot, const QJsonObject& states)
{
    QHash<QString, qsizetype> restored;
    QList<QPointer<InteractiveTool>> tools; // a slot of one may delete others
    for (InteractiveTool* const tool : InteractiveTool::toolsOf(plot))
        tools.append(tool);
    for (const QPointer<InteractiveTool>& tool : std::as_const(tools)) {
        if (tool.isNull())
            continue;
        const QJsonValue stored = states.value(tool->stateName());
        const qsizetype number = restored[tool->stateName()]++;
        const QJsonValue state = stored.isArray() ? stored.toArray().at(number) : stored;
        if (state.isObject() && (stored.isArray() || number == 0))
            tool->restoreState(state.toObject());
    }
}

QString notStored(const QString& path, const QString& fault)
{
    return fault.isEmpty() ? QString() : Texts::tr("The view in %1 was not changed: %2.").arg(path, fault);
}

QString notRestored(const QString& path, const QString& fault)
{
    return fault.isEmpty() ? QString() : Texts::tr("The view in %1 was not restored: %2.").arg(path, fault);
}

} // namespace

QJsonObject PlotView::stateOf(const XYGraphWidget& plot)
{
    // Only reads, but calls functions of the plot that are not declared const.
    QJsonObject state = storedView(ViewControl(const_cast<XYGraphWidget&>(plot)).state());
    if (qobject_cast<const XY2DGraphWidget*>(&plot) == nullptr)
        state.remove(QLatin1String("colours"));
    state.insert(gridKey, PlotAccess::isGridShown(plot));
    const QJsonObject tools = statesOfTools(plot);
    if (!tools.isEmpty())
        state.insert(toolsKey, tools);
    return state;
}

QString PlotView::apply(XYGraphWidget& plot, const QJsonObject& state)
{
    QString fault = faultOf(state);
    if (!fault.isEmpty())
        return fault;
    ViewControl view(plot);
    view.apply(mergedView(view.state(), state));
    if (state.value(gridKey).toBool(PlotAccess::isGridShown(plot)) != PlotAccess::isGridShown(plot))
        PlotAccess::gridAction(plot)->trigger();
    restoreTools(plot, state.value(toolsKey).toObject());
    return {};
}

PlotView::PlotView(const QString& folder)
    : m_folder(folder.isEmpty() ? defaultFolder() : folder)
{
}

QString PlotView::defaultFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) + QStringLiteral("/views");
}

QString PlotView::filePath(const QString& name) const
{
    return m_folder + u'/' + encodedName(name) + suffix;
}

QStringList PlotView::names() const
{
    QStringList found;
    const QStringList files = QDir(m_folder).entryList({ u'*' + suffix }, QDir::Files);
    for (const QString& file : files)
        found.append(decodedName(file.chopped(suffix.size())));
    found.sort();
    return found;
}

bool PlotView::contains(const QString& name) const
{
    return QFileInfo::exists(filePath(name));
}

QString PlotView::save(const XYGraphWidget& plot, const QString& name) const
{
    const QString path = filePath(name);
    if (QFileInfo::exists(path)) {
        const FileContent present = readFile(path, maxViewBytes);
        const QString fault = present.error.isEmpty() ? parseView(present.bytes).error : present.error;
        if (!fault.isEmpty())
            return notStored(path, Texts::tr("%1; delete or rename the file to store the view again").arg(fault));
    }
    if (!QDir().mkpath(m_folder))
        return Texts::tr("The view was not stored: the folder %1 cannot be created.").arg(m_folder);
    const QString error = writeFile(path, QJsonDocument(stateOf(plot)).toJson());
    return error.isEmpty() ? QString() : Texts::tr("The view was not stored in %1: %2.").arg(path, error);
}

QString PlotView::restore(XYGraphWidget& plot, const QString& name) const
{
    const QString path = filePath(name);
    if (!QFileInfo::exists(path))
        return {};
    const FileContent content = readFile(path, maxViewBytes);
    if (!content.error.isEmpty())
        return notRestored(path, content.error);
    const ParsedView parsed = parseView(content.bytes);
    return notRestored(path, parsed.error.isEmpty() ? apply(plot, parsed.state) : parsed.error);
}

QString PlotView::remove(const QString& name) const
{
    QFile file(filePath(name));
    if (!file.exists() || file.remove())
        return {};
    return Texts::tr("%1 was not deleted: %2.").arg(file.fileName(), file.errorString());
}

} // namespace tarnis
