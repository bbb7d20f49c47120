// A bar of buttons beside a plot, and a menu of the same actions.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QList>
#include <QPointer>
#include <QToolBar>

QT_BEGIN_NAMESPACE
class QMenu;
class QToolButton;
QT_END_NAMESPACE
class XYGraphWidget;

namespace tarnis {

class InteractiveTool;

/// Collects the actions of a plot: the mouse tools of the plot's own menu, then the actions of each attached tool in
/// the order of attachment, then those added by the host with addAction() or addWidget(). Tools may be attached and
/// deleted at any time; the bar is updated. Buttons show an icon; name and keys are in the tool tip and in the
/// accessible name. Tab selects one button, arrows, Home and End the others, and Space triggers it. GUI thread only.
class TARNIS_EXPORT PlotToolBar : public QToolBar {
    Q_OBJECT

public:
    /// Creates a bar for the plot, which it does not own. Null causes a warning, and the bar is empty. It is cleared
    /// when the plot is destroyed.
    explicit PlotToolBar(XYGraphWidget* plot, QWidget* parent = nullptr);
    ~PlotToolBar() override;

    XYGraphWidget* plot() const; ///< the plot; null after it has been destroyed
    /// A menu of the same actions with their texts and keys, for a menu bar or a button. Owned by the bar.
    QMenu* menu() const;

protected:
    /// Follows the tools of the plot, and handles the keys of the buttons.
    bool eventFilter(QObject* object, QEvent* event) override;
    void actionEvent(QActionEvent* event) override;

private:
    TARNIS_NO_EXPORT void addPlotActions();
    TARNIS_NO_EXPORT void follow(InteractiveTool& tool);
    TARNIS_NO_EXPORT void collectLater();
    TARNIS_NO_EXPORT void collect();
    TARNIS_NO_EXPORT QToolButton* extensionButton() const;
    TARNIS_NO_EXPORT void drawExtension();
    TARNIS_NO_EXPORT void nameBar();
    TARNIS_NO_EXPORT void separateHost();
    TARNIS_NO_EXPORT QList<QWidget*> buttons() const;
    TARNIS_NO_EXPORT bool moveFocus(const QWidget& from, int key);
    TARNIS_NO_EXPORT void chooseTabStop();

    QPointer<XYGraphWidget> m_plot;
    const QObject* m_watched = nullptr; ///< the plot; only compared, even while it is being destroyed
    QMenu* m_menu;
    QList<QAction*> m_plotActions; // copies of the plot's mouse tools
    QList<QPointer<QAction>> m_collected; // actions of the plot and its tools in the bar
    QList<QAction*> m_separators; // between them
    QAction* m_end = nullptr; // start of the host's own actions
    QPointer<QWidget> m_tabStop;
    bool m_isPosted = false;
};

} // namespace tarnis
