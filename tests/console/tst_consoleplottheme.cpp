// The theme of plots: on open and new plots, stored, and following the window's colours.
#include "app/colours.h"
#include "plots/plottheme.h"
#include "support/wait.h"

#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/tools/plotstyle.h>

#include <QAction>
#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace console;
using tarnis::PlotStyle;

class TestConsolePlotTheme : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    std::unique_ptr<QSettings> m_store;
    QPalette m_palette;

    static PlotStyle* styleOf(const QWidget& window) { return window.findChild<PlotStyle*>(); }
    static QAction* entry(const PlotThemeMenu& menu, const char* theme)
    {
        return menu.findChild<QAction*>(QStringLiteral("%1ThemeAction").arg(QLatin1String(theme)));
    }

private Q_SLOTS:
    void init()
    {
        m_palette = QApplication::palette();
        m_store = std::make_unique<QSettings>(m_folder.filePath("settings.ini"), QSettings::IniFormat);
        m_store->clear();
    }
    void cleanup() { QApplication::setPalette(m_palette); }

    void plotsFollowTheWindowAtFirst()
    {
        const PlotThemeMenu menu(*m_store, nullptr);
        QVERIFY(entry(menu, "window")->isChecked());
        QWidget window;
        new VectorGraphWidget(&window);
        applyTheme(window);
        QVERIFY(styleOf(window) != nullptr);
        QCOMPARE(styleOf(window)->theme(), PlotStyle::Theme::Light);
        QApplication::setPalette(darkPalette());
        TRY_COMPARE(styleOf(window)->theme(), PlotStyle::Theme::Dark);
        QWidget later;
        new VectorGraphWidget(&later);
        applyTheme(later);
        QCOMPARE(styleOf(later)->theme(), PlotStyle::Theme::Dark);
    }

    void aChoiceReachesOpenPlotsAndIsKept()
    {
        QWidget window;
        new VectorGraphWidget(&window);
        {
            const PlotThemeMenu menu(*m_store, nullptr);
            applyTheme(window);
            entry(menu, "print")->trigger();
            QCOMPARE(styleOf(window)->theme(), PlotStyle::Theme::Print);
            QApplication::setPalette(darkPalette());
            QCoreApplication::processEvents();
            QCOMPARE(styleOf(window)->theme(), PlotStyle::Theme::Print);
            entry(menu, "classic")->trigger();
            QVERIFY(styleOf(window) == nullptr);
            QVERIFY(entry(menu, "classic")->isChecked());
        }
        const PlotThemeMenu next(*m_store, nullptr);
        QVERIFY(entry(next, "classic")->isChecked());
        entry(next, "highContrast")->trigger();
        QCOMPARE(styleOf(window)->theme(), PlotStyle::Theme::HighContrast);
    }

    void aDamagedSettingIsTheWindowsLook()
    {
        m_store->setValue("window/plotLook", "purple");
        const PlotThemeMenu menu(*m_store, nullptr);
        QVERIFY(entry(menu, "window")->isChecked());
    }

    void everyEntryHasTextAndToolTip()
    {
        const PlotThemeMenu menu(*m_store, nullptr);
        const QList<QAction*> entries = menu.actions();
        QCOMPARE(entries.size(), 6);
        for (const QAction* const action : entries) {
            QVERIFY(!action->text().isEmpty());
            QVERIFY(action->toolTip() != action->text());
        }
    }
};

QTEST_MAIN(TestConsolePlotTheme)
#include "tst_consoleplottheme.moc"
