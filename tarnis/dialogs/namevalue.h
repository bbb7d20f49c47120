/// @file
/// Lists of names with one or several values, for the statistics tables. Plain values, no lock.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QList>
#include <QString>

/// A name with its value.
struct NameValue {
    QString name; ///< compared exactly
    QString value; ///< shown unchanged
};

/// A name with its values, one per column of a table.
struct NameValues {
    QString name; ///< compared exactly
    QList<QString> values; ///< may be shorter than the table is wide
};

/// Clears the values of every record; names and order are unchanged.
TARNIS_EXPORT void nvClear(QList<NameValues>& list);

/// Replaces the value of the record with exactly the name of `item`, or appends `item`.
TARNIS_EXPORT void nvUpdate(QList<NameValue>& list, NameValue const& item);

/// Appends only the first of `item.values` to the record with exactly the name of `item`, or appends the complete
/// `item`. For a name in the list, `item.values` must not be empty.
TARNIS_EXPORT void nvUpdate(QList<NameValues>& list, NameValues const& item);
