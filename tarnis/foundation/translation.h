/// @file
/// The library's texts in other languages. GUI thread only.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QLocale>

/// What the library needs beside its global names. Of use to a host: setLanguage().
namespace tarnis {

/// Shows the library's texts in the language of `locale` from now on, in open windows too. English is the language of
/// the sources; there is a catalogue for German. False for another language: the texts are English then. Needs a
/// QCoreApplication, and may be called again at any time.
TARNIS_EXPORT bool setLanguage(const QLocale& locale = QLocale());

} // namespace tarnis
