#include "tarnis/tools/panels/paneltext_p.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QGuiApplication>
#include <QSaveFile>

namespace tarnis {

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(tarnis::PanelText)
};

constexpr qint64 maxSize = qint64(16) * 1024 * 1024;

} // namespace

QString writeTextFile(const QString& path, const QByteArray& text)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit())
        return {};
    return Text::tr("%1 cannot be written: %2").arg(QDir::toNativeSeparators(path), file.errorString());
}

QByteArray readTextFile(const QString& path, QString& error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        error = Text::tr("%1 cannot be read: %2").arg(QDir::toNativeSeparators(path), file.errorString());
        return {};
    }
    QByteArray text = file.read(maxSize + 1);
    if (text.size() > maxSize) {
        error = Text::tr("%1 is larger than 16 MiB and is not read.").arg(QDir::toNativeSeparators(path));
        return {};
    }
    return text;
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
