#include "tarnis/foundation/translation.h"

#include <QCoreApplication>
#include <QTranslator>

// Outside any namespace, because the macro declares a global function. Needed for a static library.
static void makeCataloguesAvailable()
{
    Q_INIT_RESOURCE(tarnis_translations);
}

namespace {

/// The one translator of the process, owned by the application.
QTranslator* installedTranslator()
{
    const QString name = QStringLiteral("tarnisTranslator");
    auto* translator = QCoreApplication::instance()->findChild<QTranslator*>(name, Qt::FindDirectChildrenOnly);
    if (!translator) {
        translator = new QTranslator(QCoreApplication::instance());
        translator->setObjectName(name);
    }
    return translator;
}

} // namespace

namespace tarnis {

bool setLanguage(const QLocale& locale)
{
    makeCataloguesAvailable();
    QTranslator* const translator = installedTranslator();
    QCoreApplication::removeTranslator(translator);
    if (locale.language() == QLocale::English || locale.language() == QLocale::C)
        return true;
    if (!translator->load(
            locale, QStringLiteral("tarnis"), QStringLiteral("_"), QStringLiteral(":/tarnis/translations")))
        return false;
    return QCoreApplication::installTranslator(translator);
}

} // namespace tarnis
