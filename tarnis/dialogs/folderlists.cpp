#include "tarnis/dialogs/folderlists_p.h"

#include "tarnis/dialogs/plaintextdelegate_p.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QListWidget>
#include <QSignalBlocker>

namespace tarnis {

namespace {

bool isEnter(const QKeyEvent& event)
{
    return (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter)
        && !(event.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier));
}

} // namespace

FolderLists::FolderLists(QComboBox* ancestors, QListWidget* entries, Open open, QWidget* dialog)
    : QObject(dialog)
    , m_ancestors(ancestors)
    , m_entries(entries)
    , m_open(std::move(open))
    , m_dialog(dialog)
{
    m_entries->installEventFilter(this);
    m_entries->setItemDelegate(new PlainTextDelegate(m_entries));
    // The names come from the server and must not determine the width of the dialog.
    m_ancestors->setItemDelegate(new PlainTextDelegate(m_ancestors));
    m_ancestors->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
}

void FolderLists::setEnabled(bool enabled)
{
    QWidget* const focused = m_dialog->focusWidget();
    m_entries->setEnabled(enabled);
    m_ancestors->setEnabled(enabled);
    if (enabled) {
        giveFocusBack();
    } else if (focused != nullptr && (focused == m_entries || focused == m_ancestors)) {
        m_focused = focused;
        m_substitute = m_dialog->focusWidget();
    }
}

void FolderLists::giveFocusBack()
{
    if (m_focused && m_dialog->focusWidget() == m_substitute) {
        // A list view that receives the focus selects an item if none is current; this is not a choice of the user.
        const QSignalBlocker blocker(m_entries);
        const bool hadCurrent = m_entries->currentItem() != nullptr;
        m_focused->setFocus();
        if (!hadCurrent)
            m_entries->setCurrentItem(nullptr);
    }
    m_focused = nullptr;
}

bool FolderLists::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && isEnter(*static_cast<QKeyEvent*>(event))) {
        QListWidgetItem* const item = m_entries->currentItem();
        if (item != nullptr && item->text().endsWith(QLatin1Char('/'))) {
            m_open(item);
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace tarnis
