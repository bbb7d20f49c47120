// Parses replies for the statistics window. Pure functions.
#pragma once

#include "tarnis/dialogs/namevalue.h"

#include <QList>
#include <QString>

namespace tarnis {

/// The lines "name:value" of a reply in the order in which names first appear, each with its last value, neither
/// trimmed. Lines without a name and the names "OK" and "NG" are ignored. Returns the same as nvUpdate() for each line,
/// but in linear instead of quadratic time.
QList<NameValue> namedValues(const QString& reply);

} // namespace tarnis
