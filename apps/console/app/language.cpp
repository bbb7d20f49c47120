#include "app/language.h"

#include <tarnis/foundation/translation.h>

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <algorithm>

// Outside any namespace, because the macro declares a global function. The console's static library needs it.
static void makeCataloguesAvailable()
{
    Q_INIT_RESOURCE(tarnis_console_translations);
}

namespace console {

namespace {

/// The translator of this name, owned by the application.
QTranslator* translatorNamed(const QString& name)
{
    auto* translator = QCoreApplication::instance()->findChild<QTranslator*>(name, Qt::FindDirectChildrenOnly);
    if (!translator) {
        translator = new QTranslator(QCoreApplication::instance());
        translator->setObjectName(name);
    }
    return translator;
}

void install(const QString& catalogue, const QString& folder, const QLocale& locale)
{
    QTranslator* const translator = translatorNamed(catalogue);
    QCoreApplication::removeTranslator(translator);
    if (locale.language() != QLocale::English && locale.language() != QLocale::C
        && translator->load(locale, catalogue, QStringLiteral("_"), folder))
        QCoreApplication::installTranslator(translator);
}

/// The console's own texts. English also has a catalogue, for plurals, which is the fallback.
void installOwn(const QLocale& locale)
{
    const QString catalogue = QStringLiteral("tarnis-console");
    const QString folder = QStringLiteral(":/tarnis/translations");
    QTranslator* const translator = translatorNamed(catalogue);
    QCoreApplication::removeTranslator(translator);
    if (translator->load(locale, catalogue, QStringLiteral("_"), folder)
        || translator->load(QLocale(QLocale::English), catalogue, QStringLiteral("_"), folder))
        QCoreApplication::installTranslator(translator);
}

} // namespace

QList<Language> languages()
{
    return { { QStringLiteral("en"), QStringLiteral("English") }, { QStringLiteral("de"), QStringLiteral("Deutsch") } };
}

bool hasLanguage(const QString& code)
{
    const QList<Language> all = languages();
    return std::any_of(all.begin(), all.end(), [&](const Language& known) { return known.code == code; });
}

bool setLanguage(const QString& code)
{
    if (!code.isEmpty() && !hasLanguage(code))
        return false;
    makeCataloguesAvailable();
    const QLocale locale = code.isEmpty() ? QLocale::system() : QLocale(code);
    QLocale::setDefault(locale); // number formats must match the language
    // The texts of Qt's own boxes and buttons, if installed. The last installed translator is searched first.
    install(QStringLiteral("qtbase"), QLibraryInfo::path(QLibraryInfo::TranslationsPath), locale);
    installOwn(locale);
    tarnis::setLanguage(locale);
    return true;
}

} // namespace console
