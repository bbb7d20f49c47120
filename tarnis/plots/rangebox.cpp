#include <QLineEdit>
#include <QPalette>

#include "tarnis/plots/rangebox_p.h"

namespace tarnis {

std::optional<double> numberIn(const QLineEdit& edit)
{
    bool isNumber = false;
    const double value = edit.text().toDouble(&isNumber);
    return isNumber ? std::optional<double>(value) : std::nullopt;
}

void paintAsRangeBox(QWidget& box)
{
    QPalette colours = box.palette();
    colours.setBrush(QPalette::Window, Qt::lightGray);
    box.setPalette(colours);
    box.setAutoFillBackground(true);
}

} // namespace tarnis
