#include "app/keyboarddialog.h"

#include <tarnis/foundation/retranslator.h>

#include <QAction>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QMenu>
#include <QTableWidget>
#include <QVBoxLayout>

#include <initializer_list>

namespace console {

namespace {

QString named(std::initializer_list<QKeySequence> keys)
{
    QStringList names;
    for (const QKeySequence& key : keys)
        names.append(key.toString(QKeySequence::NativeText));
    return names.join(QLatin1String(", "));
}

/// The name of a modifier that is held, with the plus sign behind it.
QString held(Qt::Modifier modifier)
{
    return QKeySequence(QKeyCombination::fromCombined(static_cast<int>(modifier))).toString(QKeySequence::NativeText);
}

} // namespace

KeyboardDialog::KeyboardDialog(const QList<QMenu*>& menus, QWidget* parent)
    : QDialog(parent)
    , m_menus(menus)
    , m_table(new QTableWidget(0, 2, this))
{
    tarnis::onLanguageChange(*this, [this] { setTexts(); });
    setObjectName(QStringLiteral("keyboardBox"));
    setAttribute(Qt::WA_DeleteOnClose);
    m_table->setObjectName(QStringLiteral("keyTable"));
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setTabKeyNavigation(false);
    m_table->setShowGrid(false);
    m_table->setAlternatingRowColors(true);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setMinimumSectionSize(fontMetrics().height() + 8);
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents); // long texts take two lines
    m_table->horizontalHeader()->setHighlightSections(false);
    m_table->horizontalHeader()->setStretchLastSection(true);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* const box = new QVBoxLayout(this);
    box->addWidget(m_table);
    box->addWidget(buttons);
    resize(560, 440);
    setTexts();
}

void KeyboardDialog::setTexts()
{
    setWindowTitle(tr("Keyboard and Mouse"));
    m_table->setAccessibleName(tr("Keys and gestures"));
    m_table->setHorizontalHeaderLabels({ tr("Key or gesture"), tr("What it does") });
    m_table->setRowCount(0);
    addMenus();
    addOthers();
    addGestures();
    m_table->resizeColumnToContents(0);
    m_table->setColumnWidth(0, m_table->columnWidth(0) + fontMetrics().averageCharWidth() * 3);
}

void KeyboardDialog::addMenus()
{
    for (const QMenu* const menu : std::as_const(m_menus)) {
        const auto actions = menu->actions();
        for (const QAction* const action : actions) {
            if (!action->shortcut().isEmpty())
                addRow(named({ action->shortcut() }), action->text().remove(u'&'));
        }
    }
}

void KeyboardDialog::addOthers()
{
    addRow(named({ Qt::Key_Up, Qt::Key_Down }), tr("Step through the command history"));
    addRow(named({ Qt::Key_F8 }), tr("Press the button of the alert"));
    addRow(named({ Qt::Key_F2 }), tr("Edit the chosen setting"));
    addRow(named({ Qt::Key_F5 }), tr("Update a live window"));
    addRow(named({ Qt::Key_F5 }), tr("In Runs and the snapshots: refresh"));
    addRow(named({ Qt::Key_F3, Qt::SHIFT | Qt::Key_F3 }), tr("In the log file: find further down and up"));
    addRow(named({ Qt::CTRL | Qt::Key_O }), tr("In Text on the Server: open"));
    addRow(named({ Qt::CTRL | Qt::Key_S, Qt::CTRL | Qt::SHIFT | Qt::Key_S }),
        tr("In Text on the Server: save, save under another name"));
    addRow(named({ Qt::CTRL | Qt::Key_W }), tr("Close a window"));
    m_firstOfPlots = m_table->rowCount();
    addRow(named({ Qt::Key_Menu, Qt::SHIFT | Qt::Key_F10 }), tr("In a plot: its tools"));
    addRow(named({ Qt::Key_Escape }), tr("In a plot: leave the tool"));
    addRow(named({ Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down }), tr("In a plot: move"));
    addRow(named({ Qt::Key_Plus, Qt::Key_Minus }), tr("In a plot: zoom in and out along X"));
    addRow(named({ Qt::Key_PageUp, Qt::Key_PageDown }), tr("In a plot: zoom in and out along Y"));
    addRow(named({ Qt::Key_Backspace, Qt::ALT | Qt::Key_Left, Qt::ALT | Qt::Key_Right }),
        tr("In a plot: to the previous view, back and forward"));
    addRow(named({ Qt::Key_G, Qt::Key_L }), tr("In a plot: grid, logarithmic scale"));
    addRow(named({ Qt::Key_C, Qt::Key_P, Qt::CTRL | Qt::Key_C }),
        tr("In a plot: the values under the pointer; pin them, copy them"));
    addRow(named({ Qt::CTRL | Qt::Key_C }), tr("In a plot without values to copy: copy its picture"));
    addRow(named({ Qt::Key_M, Qt::Key_R }), tr("In a plot: set a marker; the ruler"));
    addRow(named({ Qt::SHIFT | Qt::Key_M, Qt::Key_F2, Qt::Key_Delete }),
        tr("In a plot: select the next marker, rename it, remove it"));
    addRow(named({ Qt::CTRL | Qt::Key_Left, Qt::CTRL | Qt::Key_Right }),
        tr("In a plot: move the cross, or the end of the ruler or profile; with Shift by ten bins"));
    addRow(named({ Qt::Key_Space }), tr("In a plot: swap the ends of the ruler or profile"));
    addRow(named({ Qt::Key_E, Qt::SHIFT | Qt::Key_C, Qt::Key_B }),
        tr("In a plot: error bars, a reference, in a map a profile"));
    addRow(named({ Qt::SHIFT | Qt::Key_L }), tr("In a plot: the legend"));
    addRow(named({ Qt::Key_F6 }), tr("In a plot: to the boxes beside its window, and back"));
    addRow(named({ Qt::Key_Home }), tr("In a plot: show all"));
}

void KeyboardDialog::showPlots()
{
    m_table->setCurrentCell(m_firstOfPlots, 0);
    m_table->scrollToItem(m_table->item(m_firstOfPlots, 0), QAbstractItemView::PositionAtTop);
}

void KeyboardDialog::addGestures()
{
    addRow(
        tr("Wheel"), tr("In a plot: zoom at the pointer; over an axis along it, over the colours their upper limit"));
    addRow(held(Qt::SHIFT) + tr("Wheel"), tr("In a plot: zoom along Y; over the colours their lower limit"));
    addRow(held(Qt::CTRL) + tr("Wheel"), tr("In a plot: zoom along both axes"));
    addRow(tr("Middle drag"), tr("In a plot: move; begun on an axis along it"));
    addRow(tr("Double click"), tr("In a plot: follow the data again; on an axis along it"));
    addRow(tr("Side buttons"), tr("In a plot: to the previous view, back and forward"));
    addRow(tr("Click in the legend"), tr("In a plot: hide or show a curve; twice: show it alone"));
}

void KeyboardDialog::addRow(const QString& keys, const QString& text)
{
    const int row = m_table->rowCount();
    m_table->insertRow(row);
    m_table->setItem(row, 0, new QTableWidgetItem(keys));
    m_table->setItem(row, 1, new QTableWidgetItem(text));
}

} // namespace console
