// An action of a tool. Its text follows the language, its icon the palette.
#pragma once

#include <QAction>
#include <QIcon>

#include <initializer_list>

QT_BEGIN_NAMESPACE
class QActionGroup;
class QMenu;
class QPainter;
QT_END_NAMESPACE

namespace tarnis {

/// Colours of an icon: lines in the button's text colour, and an accent colour. Grey while disabled.
struct IconInk {
    QColor line;
    QColor accent;
};

/// Draws an icon into a square of 16 by 16 units. The painter has antialiasing, a round pen of 1.2 units in the line
/// colour, and no brush.
using IconDrawing = void (*)(QPainter& painter, const IconInk& ink);

/// An icon that is drawn for each size, resolution, palette and state.
QIcon drawnIcon(IconDrawing drawing);

/// Returns a text in the current language. Called again with each change of it.
using ActionText = QString (*)();

/// Adds an entry to the menu that excludes the others of its group, which owns it.
QAction* addMenuChoice(QMenu& menu, QActionGroup& group, const QString& text, bool isChecked);

/// Owned by the object that it is created for. An InteractiveTool passes language changes to it.
class ToolAction : public QAction {
public:
    /// `name` is the object name, in English and in lower camel case, for finding the action.
    ToolAction(QObject* owner, const char* name, ActionText text, IconDrawing drawing);

    /// Shows the keys in menus and tool tips. The first one is the main key. The keys do not trigger the action.
    void showKeys(std::initializer_list<QKeySequence> keys);
    /// Enables or disables the action. While it is disabled, its tool tip shows the reason.
    void setUsable(bool usable, ActionText reason);

protected:
    bool event(QEvent* event) override;

private:
    void describe();

    ActionText m_text;
    ActionText m_reason = nullptr; // of a disabled action
};

/// ToolAction::setUsable() of an action that is one.
void setUsable(QAction* action, bool usable, ActionText reason);

} // namespace tarnis
