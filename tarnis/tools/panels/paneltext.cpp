#include "tarnis/tools/panels/paneltext_p.h"

#include "tarnis/foundation/files.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QGuiApplication>

namespace tarnis {

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(tarnis::PanelText)
};

constexpr qsizetype maxSize = qsizetype(16) * 1024 * 1024;

} // namespace

QString writeTextFile(const QString& path, const QByteArray& text)
{
    const QString cause = writeFile(path, text);
    return cause.isEmpty() ? QString()
                           : Text::tr("%1 cannot be written: %2").arg(QDir::toNativeSeparators(path), cause);
}

QByteArray readTextFile(const QString& path, QString& error)
{
    const FileContent file = readFile(path, maxSize);
    if (!file.error.isEmpty())
        error = Text::tr("%1 cannot be read: %2").arg(QDir::toNativeSeparators(path), file.error);
    return file.bytes;
}

QString saveTextFile(QWidget* parent, const QString& title, const QString& filter, const QByteArray& text)
{
    const QString path = QFileDialog::getSaveFileName(parent, title, QString(), filter);
    return path.isEmpty() ? QString() : writeTextFile(path, text);
}

void copyText(const QString& text)
{
    if (!text.isEmpty())
        QGuiApplication::clipboard()->setText(text);
}

} // namespace tarnis
