#include "tarnis/foundation/retranslator.h"

#include <QAction>
#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QTest>

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

class TestRetranslator : public QObject {
    Q_OBJECT

private Q_SLOTS:
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
};

QTEST_MAIN(TestRetranslator)
#include "tst_retranslator.moc"
