#include "tarnis/plots/labeleditor_p.h"

#include "tarnis/foundation/helpers.h"

#include <QKeyEvent>

namespace tarnis {

LabelEditor::LabelEditor(const QString& text, QWidget* plot)
    : QLineEdit(text, plot)
{
    setStyleSheet(QStringLiteral("color:black; background-color:white;"));
}

void LabelEditor::keyPressEvent(QKeyEvent* event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    QLineEdit::keyPressEvent(event);
    if (isReturn)
        event->accept();
}

QRect editorRect(QRect label, bool upright, const QRect& bounds)
{
    const QPoint middle = center(label); // before the label is rotated, so that the editor covers it
    if (upright)
        label.setSize(label.size().transposed());
    label.setWidth(qMax(static_cast<int>(label.width() * 1.5), 50));
    setCenter(label, middle);
    return moveIn(label, bounds);
}

} // namespace tarnis
