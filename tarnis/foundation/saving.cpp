#include "tarnis/foundation/saving_p.h"

#include "tarnis/foundation/files.h"
#include "tarnis/foundation/helpers.h"
#include "tarnis/foundation/modalbox_p.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QImageWriter>
#include <QPainter>
#include <QPrinter>
#include <QTemporaryDir>
#include <QTextStream>

#include <memory>

namespace tarnis {

namespace {

/// The context of the texts in the catalogues.
struct Texts {
    Q_DECLARE_TR_FUNCTIONS(tarnis::Saving)
};

/// Process-wide, because the library's windows create plots and tables that the host does not know about.
SaveHooks& hooks()
{
    static SaveHooks instance;
    return instance;
}

/// Without reports: the file is truncated first, and a disk error is not detected.
bool writeTableDirectly(const QString& path, const std::function<QString()>& text)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return false;
    setSaveFilePath(path);
    QTextStream(&file) << text();
    return true;
}

bool paintPage(QPrinter& printer, const std::function<void(QPainter&)>& paint)
{
    QPainter painter;
    if (!painter.begin(&printer))
        return false;
    paint(painter);
    return painter.end();
}

QString nameOfOutput(const QPrinter& printer)
{
    const bool isFile = printer.outputFormat() == QPrinter::PdfFormat && !printer.outputFileName().isEmpty();
    return isFile ? printer.outputFileName() : printer.printerName();
}

bool isFine(const QPrinter& printer)
{
    return printer.printerState() != QPrinter::Error && printer.printerState() != QPrinter::Aborted;
}

/// The printer's engine does not detect a full disk, so the page is written elsewhere and checked first.
QString printPdf(QPrinter& printer, const std::function<bool()>& paint)
{
    const QTemporaryDir scratch;
    const QString path = printer.outputFileName();
    const QString page = scratch.filePath(QStringLiteral("page.pdf"));
    printer.setOutputFileName(page);
    const bool isPainted = scratch.isValid() && paint() && isFine(printer);
    printer.setOutputFileName(path); // shown by the next dialog
    const FileContent content = readFile(page);
    if (!isPainted || !content.error.isEmpty() || !content.bytes.trimmed().endsWith("%%EOF"))
        return Texts::tr("the page cannot be made in the folder for temporary files '%1': free some space there")
            .arg(QDir::tempPath());
    return writeFile(path, content.bytes);
}

} // namespace

void setSaveHooks(const SaveHooks& newHooks)
{
    hooks() = newHooks;
}

bool isSaveReported()
{
    return bool(hooks().report);
}

void reportSave(QWidget* source, const QString& path, const QString& error)
{
    if (isSaveReported())
        hooks().report(*source, path, error);
}

bool isSavedByHost(QWidget* source, SaveKind kind, const QString& caption, const QString& filter)
{
    return hooks().save && hooks().save({ source, kind, caption, getSaveDir(), filter });
}

QString askSavePath(QWidget* source, SaveKind kind, const QString& caption, const QString& filter)
{
    QFileDialog* const dialog =
        hooks().makeDialog ? hooks().makeDialog({ source, kind, caption, getSaveDir(), filter }) : nullptr;
    if (!dialog)
        return askSaveFileName(source, caption, getSaveDir(), filter);
    if (!isAccepted(dialog))
        return {};
    const std::unique_ptr<QFileDialog> owner(dialog);
    return dialog->selectedFiles().value(0);
}

void saveTable(QWidget* source, const QString& caption, const QString& filter, const std::function<QString()>& text)
{
    if (isSavedByHost(source, SaveKind::Table, caption, filter))
        return;
    const QString path = askSavePath(source, SaveKind::Table, caption, filter);
    if (path.isEmpty())
        return;
    if (!isSaveReported()) {
        writeTableDirectly(path, text);
        return;
    }
    const QString error = writeFile(path, text().toUtf8());
    if (error.isEmpty())
        setSaveFilePath(path);
    reportSave(source, path, error);
}

QString writePicture(const QPixmap& picture, const QString& path)
{
    const QByteArray format = QFileInfo(path).suffix().toLower().toLatin1();
    if (!QImageWriter::supportedImageFormats().contains(format))
        return Texts::tr("the extension of the file name is not a picture format: use .png or .jpg");
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (picture.isNull() || !picture.save(&buffer, format.constData()))
        return Texts::tr("the picture is empty or too large: change the size of the window");
    return writeFile(path, bytes);
}

QString printDocument(QPrinter& printer, const std::function<bool()>& paint)
{
    if (printer.outputFormat() == QPrinter::PdfFormat && !printer.outputFileName().isEmpty())
        return printPdf(printer, paint);
    return paint() && isFine(printer) ? QString()
                                      : Texts::tr("the printer does not accept the page: check that it is ready");
}

void printPage(QWidget* source, QPrinter& printer, const std::function<void(QPainter&)>& paint)
{
    if (!isSaveReported()) {
        paintPage(printer, paint);
        return;
    }
    const QString error = printDocument(printer, [&] { return paintPage(printer, paint); });
    reportSave(source, nameOfOutput(printer), error);
}

} // namespace tarnis
