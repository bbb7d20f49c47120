#include "tarnis/tools/base/toolaction_p.h"

#include <QActionGroup>
#include <QEvent>
#include <QGuiApplication>
#include <QIconEngine>
#include <QMenu>
#include <QPainter>
#include <QPalette>

#include <algorithm>

namespace tarnis {

namespace {

constexpr double unitsOfIcon = 16.0;
constexpr double penWidth = 1.2;
constexpr int lightBackground = 128;
const QColor accentOnLight(0, 95, 184); // 5.9:1 on white
const QColor accentOnDark(96, 205, 255); // 9:1 on #202020

class DrawnIconEngine : public QIconEngine {
public:
    explicit DrawnIconEngine(IconDrawing drawing)
        : m_drawing(drawing)
    {
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override
    {
        // The palette is read in each paint, so that an icon follows a change between light and dark.
        const QPalette palette = QGuiApplication::palette();
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        IconInk ink;
        ink.line = palette.color(group, QPalette::ButtonText);
        const bool isLight = palette.color(QPalette::Active, QPalette::Button).lightness() >= lightBackground;
        ink.accent = mode == QIcon::Disabled ? ink.line : (isLight ? accentOnLight : accentOnDark);
        const double unit = std::min(rect.width(), rect.height()) / unitsOfIcon;
        const QPointF corner = QRectF(rect).center() - QPointF(unit, unit) * (unitsOfIcon / 2.0);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(corner);
        painter->scale(unit, unit);
        painter->setPen(QPen(ink.line, penWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->setBrush(Qt::NoBrush);
        m_drawing(*painter, ink);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new DrawnIconEngine(*this); }

private:
    IconDrawing m_drawing;
};

} // namespace

QIcon drawnIcon(IconDrawing drawing)
{
    return QIcon(new DrawnIconEngine(drawing)); // the icon's
}

ToolAction::ToolAction(QObject* owner, const char* name, ActionText currentText, IconDrawing drawing)
    : QAction(drawnIcon(drawing), currentText(), owner)
    , m_text(currentText)
{
    setObjectName(QLatin1String(name));
    describe();
}

void ToolAction::showKeys(std::initializer_list<QKeySequence> keys)
{
    // The context of a widget that never has the focus (a tool bar or menu), so that shortcuts are shown but never
    // triggered.
    setShortcutContext(Qt::WidgetShortcut);
    setShortcuts(keys);
    describe();
}

void ToolAction::describe()
{
    const QString keys = QKeySequence::listToString(shortcuts(), QKeySequence::NativeText);
    const QString tip = keys.isEmpty() ? text() : QStringLiteral("%1 (%2)").arg(text(), keys);
    setToolTip(m_reason == nullptr ? tip : QStringLiteral("%1\n%2").arg(tip, m_reason()));
}

void ToolAction::setUsable(bool usable, ActionText reason)
{
    m_reason = usable ? nullptr : reason;
    setEnabled(usable);
    describe();
}

bool ToolAction::event(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        setText(m_text());
        describe();
    }
    return QAction::event(event);
}

void setUsable(QAction* action, bool usable, ActionText reason)
{
    static_cast<ToolAction*>(action)->setUsable(usable, reason);
}

QAction* addMenuChoice(QMenu& menu, QActionGroup& group, const QString& text, bool isChecked)
{
    QAction* const entry = group.addAction(text);
    entry->setCheckable(true);
    entry->setChecked(isChecked);
    menu.addAction(entry);
    return entry;
}

} // namespace tarnis
