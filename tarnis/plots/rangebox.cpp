#include "tarnis/plots/rangebox_p.h"

#include <QLineEdit>
#include <QPalette>
#include <QStyle>
#include <QStyleOption>

#include <algorithm>

namespace tarnis {

std::optional<double> numberIn(const QLineEdit& edit)
{
    bool isNumber = false;
    const double value = edit.text().toDouble(&isNumber);
    return isNumber ? std::optional<double>(value) : std::nullopt;
}

namespace {

/// The width at which a line edit shows the complete text.
int widthFor(const QLineEdit& edit, const QString& text)
{
    constexpr int inner = 6; // space beside the text, including the cursor
    const QFontMetrics metrics = edit.fontMetrics();
    QStyleOptionFrame frame;
    frame.initFrom(&edit);
    frame.lineWidth = edit.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &frame, &edit);
    const QSize contents(metrics.horizontalAdvance(text) + inner, metrics.height());
    return edit.style()->sizeFromContents(QStyle::CT_LineEdit, &frame, contents, &edit).width();
}

} // namespace

void showNumber(QLineEdit& edit, double value, char format, int precision)
{
    const QString text = QString::number(value, format, precision);
    edit.setText(text);
    edit.setMinimumWidth(std::max(edit.minimumWidth(), widthFor(edit, text)));
}

void paintAsRangeBox(QWidget& box)
{
    QPalette colours = box.palette();
    colours.setBrush(QPalette::Window, Qt::lightGray);
    box.setPalette(colours);
    box.setAutoFillBackground(true);
}

} // namespace tarnis
