// Parses and writes stored views, with validation. No plot, no file.
#pragma once

#include "tarnis/tools/navigation/viewhistory_p.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

namespace tarnis {

/// The largest file that is read as a view.
constexpr qsizetype maxViewBytes = qsizetype { 1 } << 20;

/// What parseView() returns: the object, or an error in the current language.
struct ParsedView {
    QJsonObject state;
    QString error;
};

/// Parses the bytes of a file. Anything but an object of this format and version is an error.
ParsedView parseView(const QByteArray& bytes);
/// Why an object cannot be applied as a view; empty if it can.
QString faultOf(const QJsonObject& state);

/// The part of a stored view that the plot itself has.
QJsonObject storedView(const ViewState& view);
/// `present` updated by the stored part; missing or invalid values are unchanged.
ViewState mergedView(const ViewState& present, const QJsonObject& state);

/// Encodes a name as a file name, and back. Letters, digits and some symbols are unchanged; others are encoded as %XX.
QString encodedName(const QString& name);
QString decodedName(const QString& fileName);

} // namespace tarnis
