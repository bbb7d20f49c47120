// What the two range boxes share.
#pragma once

#include <optional>

QT_BEGIN_NAMESPACE
class QLineEdit;
class QWidget;
QT_END_NAMESPACE

namespace tarnis {

/// The number that the edit holds, or nothing if its text is not one.
std::optional<double> numberIn(const QLineEdit& edit);

/// Light grey all over, like the plots that the box belongs to.
void paintAsRangeBox(QWidget& box);

} // namespace tarnis
