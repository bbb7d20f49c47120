/// @file
/// Free functions on text, numbers, rectangles and run directories, used by all other folders. The number format and
/// the save directory are process-wide and not locked: GUI thread only.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QList>
#include <QPoint>
#include <QRect>
#include <QString>

class QDate;
class QWidget;

// Text and numbers - helpers.cpp

/// `text` with its first character in upper case; the rest is unchanged.
TARNIS_EXPORT QString capitalize(QString text);

/// Sets what numStr(value) uses. Letters: E, G, e, f, g, and n for engineeringNumber(). Any other letter is refused:
/// returns false and changes nothing. `precision` is not checked. Initially g and 6.
TARNIS_EXPORT bool setNumberFormat(char format, int precision);

/// `value` as text, without trailing zeros after the point. A text with an exponent keeps its zeros.
TARNIS_EXPORT QString numStr(double value, char format, int precision);
/// As above, in the format of setNumberFormat().
TARNIS_EXPORT QString numStr(double value);

/// Mantissa of magnitude 1 to 1000 and an exponent that is a multiple of 3: 1.5e+3, 2e-3, 999, 0. Values that are not
/// finite are written as inf, -inf and nan.
TARNIS_EXPORT QString engineeringNumber(double value, int precision);

// Lists of lines - helpers.cpp

/// Trims every element in place and returns the list itself.
TARNIS_EXPORT QList<QString>& trim(QList<QString>& list);
/// A copy of the list with every element trimmed.
TARNIS_EXPORT QList<QString> trimmed(QList<QString> list);

/// What follows `key` and `separator` in the first element that begins with them, case-sensitively, else
/// `defaultValue`. `trimResult` trims either.
TARNIS_EXPORT QString valueOf(const QList<QString>& list, const QString& key, const QString& separator,
    const QString& defaultValue, bool trimResult);

/// The elements that match "^" `prefix` ".+": `prefix` is part of a regular expression. It is neither escaped nor
/// grouped, and at least one character must follow it. An invalid expression matches nothing.
TARNIS_EXPORT QList<QString> startsWith(const QList<QString>& list, const QString& prefix);

/// Cuts the trimmed text at `separator` into at most `maxParts` parts; 0 means no limit. Exactly one character is
/// dropped at each cut, independent of the separator's length. A remainder that begins with the separator is not split
/// further.
TARNIS_EXPORT QList<QString> split(const QString& text, const QString& separator, int maxParts);

/// Sorts in place by QString::localeAwareCompare, ascending, and returns the list itself.
TARNIS_EXPORT QList<QString>& localeAwareSort(QList<QString>& list);

// Run directories and files - helpers.cpp

/// Parses a run directory's name: prefix, run number of six digits, "_", date as yyyymmdd. Returns false and writes
/// nothing if `name` does not have this form. Null outputs are allowed. The date may be invalid: it is not checked.
TARNIS_EXPORT bool getRunDirInfo(const QString& name, QString* prefix, int* run, QDate* date);

/// The directory at which a save dialog opens: that of the last setSaveFilePath(), initially QDir::currentPath().
TARNIS_EXPORT QString getSaveDir();
/// Stores `path` up to and including its last "/". A path without "/" changes nothing.
TARNIS_EXPORT void setSaveFilePath(const QString& path);

// Rectangles - helpers_geometry.cpp

/// The middle by integer division of the width: one pixel right of and below QRect::center() for even sizes.
TARNIS_EXPORT QPoint center(const QRect& rect);
/// Moves `rect`, without resizing it, so that left = x - width / 2 and top = y - height / 2; returns it.
TARNIS_EXPORT QRect& setCenter(QRect& rect, const QPoint& point);
/// Multiplies width and height, rounded to the nearest pixel, halves away from zero, about the rectangle's own middle.
/// Sizes are clamped to the range of int; a NaN factor counts as 0.
TARNIS_EXPORT void stretchRect(QRect& rect, double xFactor, double yFactor);
/// Moves `rect` inside `bounds` without resizing it and returns it. If it is larger, its left and top edges are aligned
/// with those of `bounds`.
TARNIS_EXPORT QRect& moveIn(QRect& rect, const QRect& bounds);

// Widgets - helpers_widgets.cpp

/// QWidget::setEnabled() with a grey style sheet while disabled. Replaces any style sheet that the widget had. A null
/// widget is ignored. Needs Tarnis::Tarnis: it is not part of Tarnis::Core.
TARNIS_EXPORT void setEnabled(QWidget* widget, bool enabled);
