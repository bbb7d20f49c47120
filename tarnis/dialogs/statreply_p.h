// What the statistics window reads out of a reply. Plain values.
#pragma once

#include "tarnis/dialogs/namevalue.h"

#include <QList>
#include <QString>

namespace tarnis {

/// The lines "name:value" of a reply in the order in which names first appear, each with its last value, neither
/// trimmed. Lines without a name and the names "OK" and "NG" are left out. Gives what nvUpdate() line by line gives, in
/// a time that grows with the number of lines, not with its square.
QList<NameValue> namedValues(const QString& reply);

} // namespace tarnis
