// Reference implementations of the two parsers of reply text, character by character.
#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

namespace tarnis::testing {

using Sections = QMap<QString, QList<QString>>;
using Values = QMap<QString, QString>;

/// As TarnisCmd::devideByKey().
Sections spelledSections(const QString& text);
/// As TarnisCmd::makeNameValueMap().
Values spelledValues(const QStringList& lines);

} // namespace tarnis::testing
