#include "tour/histogramsteps.h"

#include "tour/uidriver.h"

#include <tarnis/plots/xygraphwidget.h>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>

namespace console {

namespace {

/// A place on the plot that is no edge of a cut, where the menu opens.
QPoint menuPlace(const QWidget& plot)
{
    return placeIn(plot, 0.8, 0.2);
}

} // namespace

QPoint placeIn(const QWidget& widget, double x, double y)
{
    return { static_cast<int>(x * widget.width()), static_cast<int>(y * widget.height()) };
}

QString saveBy(Person& person, const QString& fileName, const std::function<void()>& act)
{
    QString path = person.newFile(fileName);
    person.answering(
        [&](QWidget& box) {
            auto& edit = person.find<QLineEdit>(box, "fileNameEdit");
            person.clearText(edit);
            person.enter(edit, path);
            auto& buttons = person.find<QDialogButtonBox>(box, "buttonBox");
            person.click(*buttons.button(QDialogButtonBox::Save));
        },
        act);
    person.waitUntil(QStringLiteral("%1 is written").arg(fileName), [&] { return QFileInfo(path).size() > 0; });
    return path;
}

QString saveAs(Person& person, XYGraphWidget& plot, const QString& menuText, const QString& fileName)
{
    return saveBy(person, fileName, [&] { person.chooseInMenu(plot, menuPlace(plot), menuText); });
}

void printToPdf(Person& person, XYGraphWidget& plot, const QString& fileName)
{
    const QString path = person.newFile(fileName);
    person.answering(
        [&](QWidget& box) {
            person.chooseItem(person.find<QComboBox>(box, "printers"), QStringLiteral("Print to File (PDF)"));
            auto& edit = person.find<QLineEdit>(box, "filename");
            person.clearText(edit);
            edit.setCompleter(nullptr); // its list opens when the folder has been read, over whatever is pressed then
            person.type(edit, path);
            for (QPushButton* const button : box.findChildren<QPushButton*>()) {
                if (button->isDefault())
                    person.click(*button);
            }
        },
        [&] { person.chooseInMenu(plot, menuPlace(plot), QStringLiteral("Print...")); });
    person.waitUntil(QStringLiteral("%1 is written").arg(fileName), [&] { return QFileInfo(path).size() > 0; });
    QFile file(path);
    person.expect(file.open(QIODevice::ReadOnly) && file.read(5) == "%PDF-", QStringLiteral("the page is a PDF"));
}

qsizetype linesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().count('\n') : 0;
}

} // namespace console
