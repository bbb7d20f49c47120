#include "log/logwindow.h"

#include "app/controlhelp.h"
#include "server/replytext.h"
#include "ui_logwindow.h"

#include <tarnis/foundation/helpers.h>
#include <tarnis/foundation/retranslator.h>

#include <QEvent>
#include <QFileDialog>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QSettings>
#include <QTextCursor>

namespace console {

namespace {

constexpr QLatin1String storeKey("log/file");
constexpr int lookMs = 300;

} // namespace

LogWindow::LogWindow(QSettings& store, QWidget* parent)
    : QDialog(parent)
    , m_store(store)
    , ui(std::make_unique<Ui::LogWindow>())
{
    tarnis::onLanguageChange(*this, [this] {
        ui->retranslateUi(this);
        updateFind();
    });
    ui->setupUi(this);
    ui->view->setMaximumBlockCount(maxLines);
    ui->view->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    connect(ui->openButton, &QPushButton::clicked, this, &LogWindow::chooseFile);
    connect(ui->fileEdit, &QLineEdit::returnPressed, this, [this] { setFile(ui->fileEdit->text().trimmed()); });
    connect(ui->followCheck, &QCheckBox::toggled, this, &LogWindow::onFollowToggled);
    connect(ui->closeButton, &QPushButton::clicked, this, &LogWindow::close);
    connect(ui->nextButton, &QPushButton::clicked, this, [this] { find(false); });
    connect(ui->previousButton, &QPushButton::clicked, this, [this] { find(true); });
    connect(ui->findEdit, &QLineEdit::returnPressed, this, [this] { find(false); });
    connect(ui->findEdit, &QLineEdit::textChanged, this, &LogWindow::updateFind);
    const QScrollBar* const bar = ui->view->verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this, &LogWindow::onScrolled);
    connect(bar, &QScrollBar::rangeChanged, this, [this] {
        if (isFollowing())
            scrollToEnd();
    });
    // The view blocks the signals of the scroll bar when it scrolls by keys or wheel.
    ui->view->installEventFilter(this);
    ui->view->viewport()->installEventFilter(this);
    m_timer.setInterval(lookMs);
    connect(&m_timer, &QTimer::timeout, this, &LogWindow::poll);
    m_timer.start();
    addKey(ui->nextButton, Qt::Key_F3);
    addKey(ui->previousButton, Qt::SHIFT | Qt::Key_F3);
    updateFind();
    setFile(m_store.value(storeKey).toString());
}

LogWindow::~LogWindow() = default;

bool LogWindow::isFollowing() const
{
    return ui->followCheck->isChecked();
}

void LogWindow::setFile(const QString& path)
{
    m_tail = path.isEmpty() ? nullptr : std::make_unique<LogTail>(path);
    m_problem.clear();
    m_store.setValue(storeKey, path);
    ui->fileEdit->setText(path);
    {
        const QScopedValueRollback writing(m_isWriting, true);
        ui->view->clear();
    }
    ui->followCheck->setChecked(true);
    poll();
}

void LogWindow::chooseFile()
{
    const QString old = m_tail ? m_tail->path() : getSaveDir();
    auto* const dialog =
        new QFileDialog(this, tr("Open a Log File"), old, tr("Log files (*.log *.txt);;All files (*)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this, &LogWindow::setFile);
    dialog->open();
}

void LogWindow::poll()
{
    if (m_tail && isFollowing()) {
        const QList<LogChange> changes = m_tail->poll();
        for (const LogChange& change : changes)
            append(change);
        if (!changes.isEmpty())
            scrollToEnd();
    }
    showState();
}

void LogWindow::append(const LogChange& change)
{
    QString note;
    switch (change.kind) {
    case LogChange::Kind::Text:
        m_problem.clear();
        break;
    case LogChange::Kind::Skipped:
        note = tr("(%1 of the file are not shown)").arg(byteCountText(change.bytes));
        break;
    case LogChange::Kind::Emptied:
        note = tr("(the file was emptied or rewritten)");
        m_problem.clear();
        break;
    case LogChange::Kind::Replaced:
        note = tr("(the file was replaced by another one)");
        m_problem.clear();
        break;
    case LogChange::Kind::Missing:
        m_problem = change.text;
        return;
    }
    const QScopedValueRollback writing(m_isWriting, true);
    QTextCursor end(ui->view->document()); // keeps the user's cursor and selection
    end.movePosition(QTextCursor::End);
    if (!note.isEmpty() && !end.atBlockStart())
        end.insertText(QStringLiteral("\n"));
    end.insertText(note.isEmpty() ? change.text : note + u'\n');
}

void LogWindow::scrollToEnd()
{
    const QScopedValueRollback writing(m_isWriting, true);
    QScrollBar* const bar = ui->view->verticalScrollBar();
    bar->setValue(bar->maximum());
}

void LogWindow::onScrolled()
{
    if (m_isWriting)
        return;
    const QScrollBar* const bar = ui->view->verticalScrollBar();
    ui->followCheck->setChecked(bar->value() == bar->maximum());
}

void LogWindow::onFollowToggled()
{
    if (isFollowing())
        scrollToEnd();
    poll();
}

void LogWindow::find(bool isBackward)
{
    const QString text = ui->findEdit->text();
    if (text.isEmpty())
        return;
    ui->followCheck->setChecked(false); // keeps the found text in place
    const QTextDocument::FindFlags flags = isBackward ? QTextDocument::FindBackward : QTextDocument::FindFlags();
    const QScopedValueRollback writing(m_isWriting, true);
    m_isFoundNowhere = false;
    if (ui->view->find(text, flags))
        return showState();
    const QTextCursor before = ui->view->textCursor(); // once round
    QTextCursor start = before;
    start.movePosition(isBackward ? QTextCursor::End : QTextCursor::Start);
    ui->view->setTextCursor(start);
    if (!ui->view->find(text, flags)) {
        ui->view->setTextCursor(before);
        m_isFoundNowhere = true;
    }
    showState();
}

void LogWindow::updateFind()
{
    m_isFoundNowhere = false;
    const bool hasText = !ui->findEdit->text().isEmpty();
    setEnabledWithHelp(ui->nextButton, hasText, withKey(tr("Find the text further down"), Qt::Key_F3),
        tr("Type the text to find first"));
    setEnabledWithHelp(ui->previousButton, hasText, withKey(tr("Find the text further up"), Qt::SHIFT | Qt::Key_F3),
        tr("Type the text to find first"));
    showState();
}

void LogWindow::showState()
{
    if (m_isFoundNowhere)
        ui->stateLabel->setText(tr("\u201c%1\u201d was not found in the shown lines.").arg(ui->findEdit->text()));
    else if (!m_tail)
        ui->stateLabel->setText(tr("Choose a log file. The console writes one when it is started with --log FILE."));
    else if (!m_problem.isEmpty())
        ui->stateLabel->setText(
            tr("%1 cannot be read: %2. It is shown as soon as it can be read.").arg(m_tail->path(), m_problem));
    else if (m_tail->isGone())
        ui->stateLabel->setText(tr("The file was removed. A new file of this name is shown as soon as it exists."));
    else if (isFollowing())
        ui->stateLabel->setText(tr("Following the file."));
    else if (const qint64 bytes = m_tail->pending(); bytes > 0)
        ui->stateLabel->setText(tr("Paused; %1 more in the file. Follow shows them.").arg(byteCountText(bytes)));
    else
        ui->stateLabel->setText(tr("Paused; nothing new in the file."));
}

bool LogWindow::eventFilter(QObject* object, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (type == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->matches(QKeySequence::MoveToEndOfDocument))
        QMetaObject::invokeMethod(
            ui->followCheck, [this] { ui->followCheck->setChecked(true); }, Qt::QueuedConnection);
    else if (type == QEvent::Wheel || type == QEvent::KeyPress || type == QEvent::MouseButtonRelease)
        QMetaObject::invokeMethod(this, &LogWindow::onScrolled, Qt::QueuedConnection);
    return QDialog::eventFilter(object, event);
}

} // namespace console
