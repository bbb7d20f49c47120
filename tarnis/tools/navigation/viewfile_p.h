// The stored form of a view: text to checked values and back. No plot, no file.
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

/// Reads the bytes of a file. Anything but an object of our format and version is an error.
ParsedView parseView(const QByteArray& bytes);
/// The reason for which an object is not a view that can be applied; empty if it is one.
QString faultOf(const QJsonObject& state);

/// The part of a stored view that the plot itself has.
QJsonObject storedView(const ViewState& view);
/// The stored part put over `present`: what is missing or wrong stays.
ViewState mergedView(const ViewState& present, const QJsonObject& state);

/// A name as a file name, and back. Letters, digits and a few signs stay; others are written as %XX.
QString encodedName(const QString& name);
QString decodedName(const QString& fileName);

} // namespace tarnis
