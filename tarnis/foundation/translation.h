/// @file
/// The library's texts in other languages. GUI thread only.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QLocale>

/// Everything in the library except its global classes.
namespace tarnis {

/// Shows the library's texts in the language of `locale`, in open windows too. English and German are available.
/// Returns false for other languages, and the texts are then English. Needs a QCoreApplication, and may be called again
/// at any time.
TARNIS_EXPORT bool setLanguage(const QLocale& locale = QLocale());

} // namespace tarnis
