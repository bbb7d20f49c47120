// The console's language: its own texts, the library's, and those of Qt's own boxes. GUI thread only.
#pragma once

#include <QList>
#include <QString>

namespace console {

/// A language with a catalogue. English, the language of the sources, is the first.
struct Language {
    QString code; ///< ISO 639-1
    QString name; ///< in the language itself
};

QList<Language> languages();

/// True for the code of one of languages().
bool hasLanguage(const QString& code);

/// Shows all texts in this language, in open windows too. An empty code selects the desktop's language, or English if
/// that has no catalogue. Returns false and changes nothing for any other code without a catalogue.
bool setLanguage(const QString& code);

} // namespace console
