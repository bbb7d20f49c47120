// Catalogues, and texts that follow the language.
#include "support/wait.h"
#include "tarnis/foundation/retranslator.h"

#include <tarnis/dialogs/dialogchecklist.h>
#include <tarnis/dialogs/graph1ddialog.h>
#include <tarnis/dialogs/selectcheckeddialog.h>
#include <tarnis/foundation/translation.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTranslator>

namespace {

QString language = QStringLiteral("en");

QString inLanguage(const char* text)
{
    return QLatin1String(text) + u' ' + language;
}

void changeLanguage(QWidget& widget, const QString& next)
{
    language = next;
    QEvent event(QEvent::LanguageChange);
    QCoreApplication::sendEvent(&widget, &event);
}

} // namespace

class TestTranslation : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The library's texts in another language, changed while windows are open.

    void cleanup() { tarnis::setLanguage(QLocale(QLocale::English)); }

    void germanAndBack()
    {
        QCOMPARE(zoomIn(), "Zoom In");
        QVERIFY(tarnis::setLanguage(QLocale(QLocale::German, QLocale::Austria)));
        QCOMPARE(zoomIn(), "Vergrößern");
        QVERIFY(tarnis::setLanguage(QLocale(QLocale::English)));
        QCOMPARE(zoomIn(), "Zoom In");
        QVERIFY(tarnis::setLanguage(QLocale::c()));
        QCOMPARE(zoomIn(), "Zoom In");
    }

    void languageWithoutCatalogue()
    {
        QVERIFY(tarnis::setLanguage(QLocale(QLocale::German)));
        QVERIFY(!tarnis::setLanguage(QLocale(QLocale::Japanese)));
        QCOMPARE(zoomIn(), "Zoom In");
    }

    void openWindowsFollow()
    {
        Graph1DDialog window(nullptr, "Title", "X", 0, 10, 1, 0, "Ch", {}, "hist", 0, 1, nullptr);
        window.setAttribute(Qt::WA_DeleteOnClose, false);
        window.show();
        auto* const button = window.findChild<QPushButton*>("updatePushButton");
        QCOMPARE(button->text(), "Update");
        tarnis::setLanguage(QLocale(QLocale::German));
        TRY_COMPARE(button->text(), "Aktualisieren");
        // The window also reads the entries of this box, so they are not translated.
        QCOMPARE(window.findChild<QComboBox*>("typeComboBox")->itemText(0), "Each");
        tarnis::setLanguage(QLocale(QLocale::English));
        TRY_COMPARE(button->text(), "Update");
    }

    void toolsOfAPlotFollow()
    {
        MultiVectorGraphWidget plot;
        plot.SetEnableSelectXRangeFeature(true, "T");
        plot.actions().at(1)->setText("the host's own");
        const auto texts = [&plot] {
            QStringList all;
            const auto actions = plot.actions();
            for (const QAction* action : actions)
                all.append(action->text());
            return all;
        };
        const QStringList english = texts();
        tarnis::setLanguage(QLocale(QLocale::German));
        TRY_VERIFY(texts().contains("Vergr\u00f6\u00dfern"));
        QCOMPARE(texts().at(1), "the host's own");
        QVERIFY(texts().contains("T-Bereich w\u00e4hlen"));
        QVERIFY(texts().contains("CSV speichern..."));
        plot.SetEnableSelectXRangeFeature(true, "T2");
        QVERIFY(texts().contains("T2-Bereich w\u00e4hlen"));
        plot.SetEnableSelectXRangeFeature(true, "T");
        tarnis::setLanguage(QLocale(QLocale::English));
        TRY_COMPARE(texts(), english);
    }

    void buttonOfAMapFollows()
    {
        XY2DGraphWidget plot;
        const auto* const button = plot.findChild<QPushButton*>();
        plot.onAutoScaleZToggled(false);
        tarnis::setLanguage(QLocale(QLocale::German));
        TRY_COMPARE(button->text(), "Manuell");
        QVERIFY(button->width() >= button->sizeHint().width());
        tarnis::setLanguage(QLocale(QLocale::English));
        TRY_COMPARE(button->text(), "Manual");
    }

    void aCutKeepsItsSavingInEveryLanguage()
    {
        tarnis::setLanguage(QLocale(QLocale::German));
        XY2DGraphWidget plot;
        plot.init("X", "Y", 2, 2, true, true);
        plot.setData(0, { 1, 2 }, 2, false);
        plot.setData(1, { 3, 4 }, 4, true);
        plot.show1dCutWithGauss({}, {});
        const auto* const cut = plot.findChild<VectorGraphWidget*>();
        QVERIFY(cut);
        QStringList texts;
        const auto actions = cut->actions();
        for (const QAction* action : actions)
            texts.append(action->text());
        QCOMPARE(texts,
            QStringList({ "PNG speichern...", "CSV speichern...", "Y automatisch", "Y-Minimum \u00e4ndern ...",
                "Y-Maximum \u00e4ndern ..." }));
    }

    void aListOfCurvesKeepsItsTitle()
    {
        MultiVectorGraphWidget plot;
        plot.setData(0, { 1, 2 }, 2);
        plot.onSelectVisibles();
        const auto* const list = plot.findChild<SelectCheckedDialog*>();
        tarnis::setLanguage(QLocale(QLocale::German));
        TRY_COMPARE(list->windowTitle(), "Sichtbare Kurven w\u00e4hlen");
        TRY_COMPARE(list->findChild<QPushButton*>("applyPushButton")->text(), "Anwenden");
    }

    void aCheckListKeepsWhatItWasGiven()
    {
        DialogCheckList list("Title", nullptr);
        list.setDescription("Words");
        tarnis::setLanguage(QLocale(QLocale::German));
        TRY_COMPARE(list.findChild<QPushButton*>("buttonUncheckAll")->text(), "Alle abw\u00e4hlen");
        QCOMPARE(list.windowTitle(), "Title");
        QCOMPARE(list.findChild<QLabel*>("labelDescription")->text(), "Words");
    }

    void loadsOnce()
    {
        for (int i = 0; i < 100; ++i)
            tarnis::setLanguage(QLocale(QLocale::German));
        QCOMPARE(QCoreApplication::instance()->findChildren<QTranslator*>().size(), 1);
    }

    void init() { language = QStringLiteral("en"); }

    void aLabelFollowsTheLanguageWithItsLastText()
    {
        QLabel label;
        tarnis::setTranslatedText(label, [] { return inLanguage("first"); });
        tarnis::setTranslatedText(label, [] { return inLanguage("second"); });
        QCOMPARE(label.text(), "second en");
        changeLanguage(label, QStringLiteral("de"));
        QCOMPARE(label.text(), "second de");
    }

    void aLabelThatIsAWindowKeepsTextAndTitle()
    {
        QLabel label;
        tarnis::setTranslatedText(label, [] { return inLanguage("text"); });
        tarnis::setTranslatedTitle(label, [] { return inLanguage("title"); });
        changeLanguage(label, QStringLiteral("de"));
        QCOMPARE(label.text(), "text de");
        QCOMPARE(label.windowTitle(), "title de");
    }

    void anActionKeepsATextOfTheHost()
    {
        QWidget owner;
        QAction action;
        tarnis::setTranslatedText(action, owner, [] { return inLanguage("save"); });
        changeLanguage(owner, QStringLiteral("de"));
        QCOMPARE(action.text(), "save de");
        action.setText(QStringLiteral("store"));
        changeLanguage(owner, QStringLiteral("en"));
        QCOMPARE(action.text(), "store");
    }

    void anActionMayEndBeforeItsOwner()
    {
        QWidget owner;
        auto action = std::make_unique<QAction>();
        tarnis::setTranslatedText(*action, owner, [] { return inLanguage("save"); });
        action.reset();
        changeLanguage(owner, QStringLiteral("de"));
    }

    void everyCallbackOfAWidgetIsCalled()
    {
        QWidget widget;
        int first = 0;
        int second = 0;
        tarnis::onLanguageChange(widget, [&] { ++first; });
        tarnis::onLanguageChange(widget, [&] { ++second; });
        changeLanguage(widget, QStringLiteral("de"));
        QCOMPARE(first, 1);
        QCOMPARE(second, 1);
    }

private:
    static QString zoomIn() { return QCoreApplication::translate("XYGraphWidget", "Zoom In"); }
};

QTEST_MAIN(TestTranslation)
#include "tst_translation.moc"
