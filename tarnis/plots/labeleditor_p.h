// The in-place editor of a number in a plot, and its position.
#pragma once

#include <QLineEdit>
#include <QRect>

namespace tarnis {

/// Black on white in any theme. Does not propagate Return, which would press the default button of a dialog around the
/// plot.
class LabelEditor : public QLineEdit {
public:
    LabelEditor(const QString& text, QWidget* plot);

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

/// Geometry of the editor over a label: 1.5 times as wide and at least 50 pixels, centred on the label and moved into
/// `bounds`. The label of an `upright` plot is vertical; its editor is horizontal.
QRect editorRect(QRect label, bool upright, const QRect& bounds);

} // namespace tarnis
