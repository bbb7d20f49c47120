#include "tarnis/plots/labeleditor_p.h"

#include "tarnis/foundation/helpers.h"

namespace tarnis {

QRect editorRect(QRect label, bool upright, const QRect& bounds)
{
    const QPoint middle = center(label); // before the label is laid down, so that the editor covers it
    if (upright)
        label.setSize(label.size().transposed());
    label.setWidth(qMax(static_cast<int>(label.width() * 1.5), 50));
    setCenter(label, middle);
    return moveIn(label, bounds);
}

} // namespace tarnis
