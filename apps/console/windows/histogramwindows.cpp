#include "windows/histogramwindows.h"

#include "tour/person.h"

#include <tarnis/plots/xygraphwidget.h>

#include <QAction>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QTemporaryDir>

namespace console {

QAction& plotAction(XYGraphWidget& plot, const QString& text)
{
    for (QAction* const action : plot.actions()) {
        if (action->text() != text)
            continue;
        if (!action->isEnabled())
            throw TourFailure(QStringLiteral("%1 cannot be chosen").arg(text));
        return *action;
    }
    throw TourFailure(QStringLiteral("the plot's menu has no %1").arg(text));
}

QPoint placeIn(const QWidget& widget, double x, double y)
{
    return { static_cast<int>(x * widget.width()), static_cast<int>(y * widget.height()) };
}

void saveAs(Person& person, XYGraphWidget& plot, const QString& menuText, const QString& fileName)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(fileName);
    person.answering(
        [&](QWidget& box) {
            auto& edit = person.find<QLineEdit>(box, "fileNameEdit");
            person.clearText(edit);
            person.type(edit, path);
            auto& buttons = person.find<QDialogButtonBox>(box, "buttonBox");
            person.click(*buttons.button(QDialogButtonBox::Save));
        },
        [&] { plotAction(plot, menuText).trigger(); });
    person.waitUntil(QStringLiteral("%1 is written").arg(fileName), [&] { return QFileInfo(path).size() > 0; });
}

void printToPdf(Person& person, const std::function<void()>& print)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("page.pdf"));
    person.answering(
        [&](QWidget& box) {
            auto* const dialog = qobject_cast<QPrintDialog*>(&box);
            person.expect(dialog != nullptr, QStringLiteral("the printer's dialog opens"));
            dialog->printer()->setOutputFormat(QPrinter::PdfFormat);
            dialog->printer()->setOutputFileName(path);
            // The dialog's own Print button would ask for a printer that this machine may not have.
            dialog->done(QDialog::Accepted);
        },
        print);
    person.waitUntil(QStringLiteral("the page is written"), [&] { return QFileInfo(path).size() > 0; });
}

} // namespace console
