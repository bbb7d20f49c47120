// Where the in-place editor of an axis label stands.
#pragma once

#include <QRect>

namespace tarnis {

/// Geometry of the editor over a label: half as wide again and at least 50 pixels, centred on the label and moved into
/// `bounds`. The label of an upright plot stands on its side; its editor lies.
QRect editorRect(QRect label, bool upright, const QRect& bounds);

} // namespace tarnis
