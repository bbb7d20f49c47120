// Common parts of the two range boxes.
#pragma once

#include <QtGlobal>

#include <optional>

QT_BEGIN_NAMESPACE
class QLineEdit;
class QWidget;
QT_END_NAMESPACE

namespace tarnis {

/// The number in the edit; empty if its text is not a number.
std::optional<double> numberIn(const QLineEdit& edit);

/// Shows the number in the edit, and widens the edit and its box if the text does not fit.
void showNumber(QLineEdit& edit, double value, char format, int precision);

/// Light grey all over, like the plots that the box belongs to.
void paintAsRangeBox(QWidget& box);

} // namespace tarnis
