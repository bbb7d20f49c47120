// What the two range boxes share.
#pragma once

#include <QtGlobal>

#include <optional>

QT_BEGIN_NAMESPACE
class QLineEdit;
class QWidget;
QT_END_NAMESPACE

namespace tarnis {

/// The number that the edit holds, or nothing if its text is not one.
std::optional<double> numberIn(const QLineEdit& edit);

/// Puts the number into the edit, which grows, and its box with it, where the whole text has no room.
void showNumber(QLineEdit& edit, double value, char format, int precision);

/// Light grey all over, like the plots that the box belongs to.
void paintAsRangeBox(QWidget& box);

} // namespace tarnis
