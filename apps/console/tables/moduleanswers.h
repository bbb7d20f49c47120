// Commands to readout modules: whom they go to, and what came back, module by module.
#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

namespace console {

/// What one module answered.
struct ModuleAnswer {
    QString module; ///< as the server calls it, else as it was addressed
    QString text; ///< in words: done, the reason of a refusal, or the reply itself where it has no values
    QMap<QString, QString> values;
};

/// The answers in a reply, a refusal included: one for each section, else one for `addressed`. In the order of the
/// modules' names, numbers at their ends by value.
QList<ModuleAnswer> moduleAnswers(const QString& addressed, const QString& reply);

/// The ids in "0, 3, 5-7": words between commas or blanks, each once; two whole numbers with a "-" are a range. What is
/// wrong with the text goes into `problem`, in words, which is empty otherwise.
QStringList moduleIds(const QString& text, QString& problem);

} // namespace console
