#include "saves/savereports.h"

#include "notices/notice.h"
#include "saves/savedialog.h"
#include "server/servercontroller.h"

#include <tarnis/foundation/savehooks.h>

#include <QDateTime>
#include <QMainWindow>
#include <QMessageBox>
#include <QRegularExpression>
#include <QVariant>

namespace console {

namespace {

constexpr char savedNameProperty[] = "savedName";

/// A part of a file name that every file system accepts.
QString fileNamePart(const QString& text)
{
    static const QRegularExpression other(QStringLiteral("[^\\w]+"), QRegularExpression::UseUnicodePropertiesOption);
    QString part = text;
    part.remove(QLatin1String("[*]")).replace(other, QStringLiteral("-"));
    while (part.startsWith(u'-'))
        part.remove(0, 1);
    while (part.endsWith(u'-'))
        part.chop(1);
    return part;
}

} // namespace

void setSavedName(QWidget& window, const QString& name)
{
    window.setProperty(savedNameProperty, name);
}

SaveReports::SaveReports(ServerController& controller, const std::function<QString()>& run)
    : m_controller(controller)
    , m_run(run)
{
    tarnis::setSaveHooks({ .makeDialog = [this](const tarnis::SaveRequest& request) { return makeDialog(request); },
        .report = [this](
                      QWidget& source, const QString& path, const QString& error) { report(source, path, error); } });
}

SaveReports::~SaveReports()
{
    tarnis::setSaveHooks({});
}

QString SaveReports::suggestedName(const QWidget& source) const
{
    const QVariant name = source.window()->property(savedNameProperty);
    return suggestedName(name.isValid() ? name.toString() : source.window()->windowTitle());
}

QString SaveReports::suggestedName(const QString& what) const
{
    QStringList parts { fileNamePart(what) };
    if (const QString run = m_run(); !run.isEmpty())
        parts.append(QStringLiteral("run") + fileNamePart(run));
    parts.append(QDateTime::currentDateTime().toString(u"yyyyMMdd-HHmmss"));
    parts.removeAll(QString());
    return parts.join(u'_');
}

SaveDialog* SaveReports::makeDialog(const tarnis::SaveRequest& request) const
{
    const QStringList filters = request.kind == tarnis::SaveKind::Picture
        ? QStringList { tr("PNG image (*.png)"), tr("JPEG image (*.jpg *.jpeg)") }
        : QStringList { tr("Comma-separated values (*.csv)"), tr("Text (*.txt)") };
    return new SaveDialog(request.source, request.caption, filters, suggestedName(*request.source));
}

void SaveReports::report(QWidget& source, const QString& path, const QString& error)
{
    if (error.isEmpty()) {
        m_controller.tell(noticeOf(Notice::Severity::Information, [path] { return tr("Saved as %1.").arg(path); }));
        Q_EMIT saved();
        return;
    }
    const auto words = [path, error] { return tr("%1 was not saved: %2.").arg(path, error); };
    m_controller.tell(noticeOf(Notice::Severity::Warning, words));
    if (qobject_cast<const QMainWindow*>(source.window()))
        return; // the notice is there already
    auto* const box = new QMessageBox(QMessageBox::Warning, source.window()->windowTitle().remove(QLatin1String("[*]")),
        words(), QMessageBox::Ok, source.window());
    box->setObjectName(QStringLiteral("saveBox"));
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

} // namespace console
