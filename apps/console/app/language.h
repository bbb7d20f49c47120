// The console's language: its own texts, the library's, and those of Qt's own boxes. GUI thread only.
#pragma once

#include <QList>
#include <QString>

namespace console {

/// A language that there is a catalogue for. English, that of the sources, is the first.
struct Language {
    QString code; ///< ISO 639-1
    QString name; ///< in the language itself
};

QList<Language> languages();

/// True for the code of one of languages().
bool hasLanguage(const QString& code);

/// Shows all texts in this language from now on, in open windows too. The empty code means the desktop's language, or
/// English if there is no catalogue for that; false for any other code without one: nothing changes then.
bool setLanguage(const QString& code);

} // namespace console
