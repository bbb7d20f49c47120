// A bar of buttons beside a plot, and a menu of the same actions.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QList>
#include <QPointer>
#include <QToolBar>

QT_BEGIN_NAMESPACE
class QMenu;
QT_END_NAMESPACE
class XYGraphWidget;

namespace tarnis {

class InteractiveTool;

/// Collects what the user can do with a plot: the mouse tools of the plot's own menu, then the actions of each attached
/// tool in the order of attachment, then what the host adds by addAction() or addWidget(). Tools may be attached and
/// deleted at any time; the bar follows. Buttons show an icon, name and keys are in the tool tip and are named for
/// screen readers. Tab leads to one button, arrows, Home and End to the others, Space presses. GUI thread only.
class TARNIS_EXPORT PlotToolBar : public QToolBar {
    Q_OBJECT

public:
    /// A bar for the plot, which it does not own; null is reported as a warning, and the bar stays empty. It is emptied
    /// when the plot is destroyed.
    explicit PlotToolBar(XYGraphWidget* plot, QWidget* parent = nullptr);
    ~PlotToolBar() override;

    XYGraphWidget* plot() const; ///< null once it has been destroyed
    /// A menu of the same actions with their texts and keys, for a menu bar or a button. It belongs to the bar.
    QMenu* menu() const;

protected:
    /// Follows the tools of the plot, and handles the keys of the buttons.
    bool eventFilter(QObject* object, QEvent* event) override;
    void actionEvent(QActionEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    TARNIS_NO_EXPORT void addPlotActions();
    TARNIS_NO_EXPORT void follow(InteractiveTool& tool);
    TARNIS_NO_EXPORT void collectLater();
    TARNIS_NO_EXPORT void collect();
    TARNIS_NO_EXPORT void nameBar();
    TARNIS_NO_EXPORT void separateHost();
    TARNIS_NO_EXPORT QList<QWidget*> buttons() const;
    TARNIS_NO_EXPORT bool moveFocus(const QWidget& from, int key);
    TARNIS_NO_EXPORT void chooseTabStop();

    QPointer<XYGraphWidget> m_plot;
    const QObject* m_watched = nullptr; ///< the plot; compared only, also while it is destroyed
    QMenu* m_menu;
    QList<QAction*> m_plotActions; // copies of the plot's mouse tools
    QList<QPointer<QAction>> m_collected; // of the plot and its tools, as they are in the bar
    QList<QAction*> m_separators; // between them
    QAction* m_end = nullptr; // where the host's own actions begin
    QPointer<QWidget> m_tabStop;
    bool m_isPosted = false;
};

} // namespace tarnis
