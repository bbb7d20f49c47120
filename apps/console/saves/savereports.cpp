#include "saves/savereports.h"

#include "notices/alert.h"
#include "saves/savedialog.h"
#include "server/servercontroller.h"

#include <tarnis/export/exportdialog.h>
#include <tarnis/foundation/helpers.h>
#include <tarnis/foundation/retranslator.h>
#include <tarnis/foundation/savehooks.h>
#include <tarnis/plots/xygraphwidget.h>
#include <tarnis/server/tarnis.h>

#include <QDateTime>
#include <QDir>
#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <QSettings>
#include <QVariant>

namespace console {

namespace {

constexpr char savedNameProperty[] = "savedName";
constexpr char dataTimeProperty[] = "dataTime";
const QString folderKey = QStringLiteral("saves/folder");

QString titleOf(const QWidget& window)
{
    return window.windowTitle().remove(QLatin1String("[*]"));
}

/// The property of the nearest window: a cut uses that of its map.
QVariant inherited(const QWidget& source, const char* property)
{
    for (const QWidget* widget = &source; widget; widget = widget->parentWidget()) {
        if (const QVariant value = widget->property(property); value.isValid())
            return value;
    }
    return {};
}

/// The name of the widget's content: the histogram, or the title of its window.
QString nameOf(const QWidget& source)
{
    const QVariant name = inherited(source, savedNameProperty);
    return name.isValid() ? name.toString() : titleOf(*source.window());
}

QDateTime dataTimeOf(const QWidget& source)
{
    const QVariant time = inherited(source, dataTimeProperty);
    return time.isValid() ? time.toDateTime() : QDateTime::currentDateTime();
}

} // namespace

void setSavedName(QWidget& window, const QString& name)
{
    window.setProperty(savedNameProperty, name);
}

void setDataTime(QWidget& window, const QDateTime& time)
{
    window.setProperty(dataTimeProperty, time);
}

SaveReports::SaveReports(ServerController& controller, QSettings& settings, const std::function<QString()>& run)
    : m_controller(controller)
    , m_settings(settings)
    , m_run(run)
{
    const QString folder = settings.value(folderKey).toString();
    if (!folder.isEmpty() && QDir(folder).exists())
        setSaveFilePath(QDir(folder).filePath(QStringLiteral("last")));
    tarnis::setSaveHooks({ .makeDialog = [this](const tarnis::SaveRequest& request) { return makeDialog(request); },
        .report = [this](QWidget& source, const QString& path, const QString& error) { report(source, path, error); },
        .save = [this](const tarnis::SaveRequest& request) { return save(request); } });
}

SaveReports::~SaveReports()
{
    tarnis::setSaveHooks({});
}

QString SaveReports::suggestedName(const QString& what) const
{
    return tarnis::PlotExporter::suggestedName(what, m_run(), QDateTime::currentDateTime(), QString());
}

SaveDialog* SaveReports::makeDialog(const tarnis::SaveRequest& request) const
{
    return new SaveDialog(request.source, request.caption, { tr("Comma-separated values (*.csv)"), tr("Text (*.txt)") },
        suggestedName(nameOf(*request.source)));
}

bool SaveReports::save(const tarnis::SaveRequest& request)
{
    auto* const plot = qobject_cast<XYGraphWidget*>(request.source);
    if (!plot)
        return false;
    if (request.kind == tarnis::SaveKind::Page)
        print(*plot);
    else
        exportPlot(*plot, request.kind == tarnis::SaveKind::Table ? QStringLiteral("csv") : QStringLiteral("png"));
    return true;
}

/// The origin of the values, for the files.
QString SaveReports::sourceText() const
{
    const QString address = m_controller.tarnis().GetServerAddress();
    const QString run = m_run();
    return run.isEmpty() ? address : tr("%1, run %2").arg(address, run);
}

void SaveReports::exportPlot(XYGraphWidget& plot, const QString& suffix)
{
    auto* const dialog = new tarnis::ExportDialog(plot, nameOf(plot), m_run(), sourceText(), &plot);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    tarnis::setTranslatedTitle(*dialog, [&plot] { return tr("Save: %1").arg(titleOf(*plot.window())); });
    dialog->setFormat(suffix);
    dialog->setDataTime([&plot] { return dataTimeOf(plot); });
    connect(dialog, &tarnis::ExportDialog::saved, &plot,
        [this, &plot](const QString& path) { report(plot, path, QString()); });
    dialog->open();
}

void SaveReports::print(XYGraphWidget& plot)
{
    if (!m_printer)
        m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    auto* const dialog = new QPrintDialog(m_printer.get(), &plot);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, &plot, [this, &plot] {
        tarnis::PictureOptions options;
        options.heading = titleOf(*plot.window());
        const QString error = tarnis::PlotExporter(plot).print(*m_printer, options);
        const QString file = m_printer->outputFileName();
        report(plot, file.isEmpty() ? m_printer->printerName() : file, error);
    });
    dialog->open();
}

void SaveReports::report(QWidget& source, const QString& path, const QString& error)
{
    if (error.isEmpty()) {
        m_settings.setValue(folderKey, getSaveDir());
        m_controller.showStatusMessage(
            alertOf(Alert::Severity::Information, [path] { return tr("Saved as %1.").arg(path); }));
        Q_EMIT saved();
        return;
    }
    const auto translated = [path, error] { return tr("%1 was not saved: %2.").arg(path, error); };
    m_controller.showStatusMessage(alertOf(Alert::Severity::Warning, translated));
    if (qobject_cast<const QMainWindow*>(source.window()))
        return; // the alert is already shown
    auto* const box = new QMessageBox(
        QMessageBox::Warning, titleOf(*source.window()), translated(), QMessageBox::Ok, source.window());
    box->setObjectName(QStringLiteral("saveBox"));
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

} // namespace console
