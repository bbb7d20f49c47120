#include "plots/colourbarmenu.h"

#include <QAction>
#include <QCoreApplication>
#include <QMenu>

#include <array>

namespace console {

namespace {

struct ColourBarMenu {
    Q_DECLARE_TR_FUNCTIONS(ColourBarMenu)
};

// The texts of the library, including the leading space of entries with an icon.
constexpr std::array entries {
    QT_TRANSLATE_NOOP("ColourBarMenu", "Pattern - Rainbow1"),
    QT_TRANSLATE_NOOP("ColourBarMenu", "Pattern - Rainbow2"),
    QT_TRANSLATE_NOOP("ColourBarMenu", "Pattern - Grayscale"),
    QT_TRANSLATE_NOOP("ColourBarMenu", "Pattern - BlueRedGreen"),
    QT_TRANSLATE_NOOP("ColourBarMenu", "Pattern - RedWhiteBlue"),
    QT_TRANSLATE_NOOP("ColourBarMenu", "Pattern - CyanMagenta"),
    QT_TRANSLATE_NOOP("ColourBarMenu", "Pattern - YellowHot"),
    QT_TRANSLATE_NOOP("ColourBarMenu", "Pattern - Blue"),
    QT_TRANSLATE_NOOP("ColourBarMenu", " Edit - Max Color"),
    QT_TRANSLATE_NOOP("ColourBarMenu", " Edit - Half Max Color"),
    QT_TRANSLATE_NOOP("ColourBarMenu", " Edit - Half Color"),
    QT_TRANSLATE_NOOP("ColourBarMenu", " Edit - Half Min Color"),
    QT_TRANSLATE_NOOP("ColourBarMenu", " Edit - Min Color"),
    QT_TRANSLATE_NOOP("ColourBarMenu", "Edit - Reverse"),
    QT_TRANSLATE_NOOP("ColourBarMenu", " Edit - Back Ground Color"),
};

} // namespace

void translateColourBarMenu(QMenu& menu)
{
    const auto actions = menu.actions();
    for (QAction* const action : actions) {
        for (const char* const entry : entries) {
            if (action->text() == QLatin1String(entry))
                action->setText(ColourBarMenu::tr(entry));
        }
    }
}

} // namespace console
