#include "app/languagemenu.h"

#include "app/language.h"

#include <tarnis/foundation/retranslator.h>

#include <QActionGroup>
#include <QSettings>

namespace console {

namespace {

constexpr QLatin1String storeKey("window/language");

} // namespace

LanguageMenu::LanguageMenu(QSettings& store, const QString& language, QWidget* parent)
    : QMenu(parent)
    , m_store(store)
    , m_group(new QActionGroup(this))
    , m_desktopAction(addAction(QString()))
{
    tarnis::onLanguageChange(*this, [this] { setTexts(); });
    setObjectName(QStringLiteral("languageMenu"));
    setToolTipsVisible(true);
    m_desktopAction->setData(QString());
    const QList<Language> all = languages();
    for (const Language& known : all)
        addAction(known.name)->setData(known.code);
    const QString chosen = language.isEmpty() ? m_store.value(storeKey).toString() : language;
    m_desktopAction->setChecked(true);
    const QList<QAction*> choices = actions();
    for (QAction* const action : choices) {
        const QString code = action->data().toString();
        action->setObjectName(
            code.isEmpty() ? QStringLiteral("desktopLanguageAction") : QStringLiteral("%1Action").arg(code));
        action->setCheckable(true);
        m_group->addAction(action);
        action->setChecked(code.isEmpty() || code == chosen);
        connect(action, &QAction::triggered, this, [this, code] { choose(code); });
    }
    setLanguage(hasLanguage(chosen) ? chosen : QString());
    setTexts();
}

void LanguageMenu::choose(const QString& code)
{
    m_store.setValue(storeKey, code);
    setLanguage(code);
}

void LanguageMenu::setTexts()
{
    setTitle(tr("&Language"));
    m_desktopAction->setText(tr("As on the &Desktop"));
    const QList<QAction*> choices = actions();
    for (QAction* const action : choices)
        action->setToolTip(tr("Show all texts in this language"));
    m_desktopAction->setToolTip(tr("Show all texts in the language of the desktop"));
}

} // namespace console
