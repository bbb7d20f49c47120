// What PlotKeyboard shares with its menu and its accessible objects.
#pragma once

#include "tarnis/tools/plotkeyboard.h"

#include <QFocusFrame>
#include <QPointer>

QT_BEGIN_NAMESPACE
class QLineEdit;
class QMenu;
class QShortcut;
QT_END_NAMESPACE

namespace tarnis {

/// The key that moves the focus to the next box of a plot.
constexpr int boxKey = Qt::Key_F6;

/// The tool of a plot; null without one.
const PlotKeyboard* keyboardOf(const QObject* plot);

/// Makes accessible objects for plots with a PlotKeyboard from now on; any number of calls.
void installAccessiblePlots();
/// Drops the accessible objects of a plot, which are made again when they are next wanted.
void renewAccessible(XYGraphWidget& plot);

/// The entries of the menu, and the editors that they open.
class TARNIS_NO_EXPORT PlotKeyboard::Internals : public QObject {
public:
    Internals(PlotKeyboard& tool, XYGraphWidget& plot)
        : m_tool(tool)
        , m_plot(plot)
    {
    }
    ~Internals() override;

    void addEntries(QMenu& menu);

    QPointer<QFocusFrame> frame; ///< while the plot has the keyboard
    QList<QPointer<QObject>> children; ///< former and current children of the plot: its boxes may have another parent
    QList<QPointer<QShortcut>> shortcuts; ///< of the boxes that were visited

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void addEditors(QMenu& menu);
    void addMapEntries(QMenu& menu);
    void openEnd(int end);
    void openLimit(bool isUpper);
    void watchEditor(QLineEdit* edit, const QString& name);

    PlotKeyboard& m_tool;
    XYGraphWidget& m_plot;
};

} // namespace tarnis
