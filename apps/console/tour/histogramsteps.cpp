#include "tour/histogramsteps.h"

#include "tour/uidriver.h"

#include <tarnis/export/exportdialog.h>
#include <tarnis/plots/xygraphwidget.h>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>

namespace console {

namespace {

/// A position on the plot away from the edges of a cut, where the menu opens.
QPoint menuPlace(const QWidget& plot)
{
    return placeIn(plot, 0.8, 0.2);
}

/// Enters the path in the edit of this name of the box that `act` opens, and presses Save.
QString saveIn(UiDriver& driver, const char* pathEdit, const QString& fileName, const std::function<void()>& act)
{
    QString path = driver.newFile(fileName);
    driver.answering(
        [&](QWidget& box) {
            if (qobject_cast<tarnis::ExportDialog*>(&box))
                driver.screenshot(box, QStringLiteral("export"));
            auto& edit = driver.find<QLineEdit>(box, pathEdit);
            driver.clearText(edit);
            driver.enter(edit, path);
            auto* const buttons = box.findChild<QDialogButtonBox*>();
            driver.click(*buttons->button(QDialogButtonBox::Save));
        },
        act);
    driver.waitUntil(QStringLiteral("%1 is written").arg(fileName), [&] { return QFileInfo(path).size() > 0; });
    return path;
}

} // namespace

QPoint placeIn(const QWidget& widget, double x, double y)
{
    return { static_cast<int>(x * widget.width()), static_cast<int>(y * widget.height()) };
}

QString saveBy(UiDriver& driver, const QString& fileName, const std::function<void()>& act)
{
    return saveIn(driver, "fileNameEdit", fileName, act);
}

QString saveAs(UiDriver& driver, XYGraphWidget& plot, const QString& menuText, const QString& fileName)
{
    return saveIn(driver, "exportPathEdit", fileName, [&] { driver.chooseInMenu(plot, menuPlace(plot), menuText); });
}

void printToPdf(UiDriver& driver, XYGraphWidget& plot, const QString& fileName)
{
    const QString path = driver.newFile(fileName);
    driver.answering(
        [&](QWidget& box) {
            driver.chooseItem(driver.find<QComboBox>(box, "printers"), QStringLiteral("Print to File (PDF)"));
            auto& edit = driver.find<QLineEdit>(box, "filename");
            driver.clearText(edit);
            edit.setCompleter(nullptr); // its list opens when the folder has been read, and would cover other controls
            driver.type(edit, path);
            for (QPushButton* const button : box.findChildren<QPushButton*>()) {
                if (button->isDefault())
                    driver.click(*button);
            }
        },
        [&] { driver.chooseInMenu(plot, menuPlace(plot), QStringLiteral("Print...")); });
    driver.waitUntil(QStringLiteral("%1 is written").arg(fileName), [&] { return QFileInfo(path).size() > 0; });
    QFile file(path);
    driver.expect(file.open(QIODevice::ReadOnly) && file.read(5) == "%PDF-", QStringLiteral("the page is a PDF"));
}

qsizetype linesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().count('\n') : 0;
}

} // namespace console
