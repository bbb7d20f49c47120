// Commands to readout modules: recipients, and answers by module.
#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

namespace console {

/// The answer of one module.
struct ModuleAnswer {
    QString module; ///< the server's name for it, else as it was addressed
    QString text; ///< a text: done, the reason of a refusal, or the reply itself if it has no values
    QMap<QString, QString> values;
};

/// The answers in a reply, including refusals: one for each section, else one for `addressed`. Sorted by the modules'
/// names, with final numbers by value.
QList<ModuleAnswer> moduleAnswers(const QString& addressed, const QString& reply);

/// The ids in "0, 3, 5-7": words separated by commas or spaces, without duplicates; two integers with a "-" are a
/// range. `problem` receives the error as a text for users, or an empty text.
QStringList moduleIds(const QString& text, QString& problem);

} // namespace console
