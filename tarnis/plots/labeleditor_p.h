// The in-place editor of a number in a plot, and where it stands.
#pragma once

#include <QLineEdit>
#include <QRect>

namespace tarnis {

/// Black on white in any theme. Keeps Return to itself: a dialog around the plot would press its default button.
class LabelEditor : public QLineEdit {
public:
    LabelEditor(const QString& text, QWidget* plot);

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

/// Geometry of the editor over a label: half as wide again and at least 50 pixels, centred on the label and moved into
/// `bounds`. The label of an upright plot stands on its side; its editor lies.
QRect editorRect(QRect label, bool upright, const QRect& bounds);

} // namespace tarnis
