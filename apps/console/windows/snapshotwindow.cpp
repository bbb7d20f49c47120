#include "windows/snapshotwindow.h"

#include "availability.h"
#include "replytext.h"
#include "servercontroller.h"
#include "sessionlink.h"
#include "ui_snapshotwindow.h"

#include <QEvent>
#include <QHeaderView>

namespace console {

SnapshotWindow::SnapshotWindow(ServerController& controller, const Source& source, QWidget* parent)
    : QDialog(parent)
    , m_controller(controller)
    , m_source(source)
    , ui(std::make_unique<Ui::SnapshotWindow>())
    , m_link(new SessionLink(controller.tarnis(), QStringLiteral("snapshot"), this))
{
    ui->setupUi(this);
    ui->table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    ui->table->verticalHeader()->setDefaultSectionSize(ui->table->fontMetrics().height() + 6);
    addKey(ui->refreshButton, Qt::Key_F5);
    connect(ui->refreshButton, &QPushButton::clicked, this, &SnapshotWindow::refresh);
    connect(ui->closeButton, &QPushButton::clicked, this, &SnapshotWindow::close);
    connect(ui->filterEdit, &QLineEdit::textChanged, this, &SnapshotWindow::fill);
    connect(m_link, &SessionLink::replied, this, &SnapshotWindow::onReplied);
    connect(m_link, &SessionLink::waitingChanged, this, &SnapshotWindow::updateControls);
    connect(m_link, &SessionLink::failed, this, [this](int, const QString& message) {
        ui->stateLabel->setText(tr("No reply: %1. Refresh to ask again.").arg(message));
        m_controller.checkServer();
    });
    connect(&controller, &ServerController::aboutToStop, this, [this] {
        if (!m_link->drop().isEmpty())
            ui->stateLabel->setText(tr("No reply: the server was stopped."));
    });
    connect(&controller, &ServerController::stateChanged, this, &SnapshotWindow::updateControls);
    refresh();
}

SnapshotWindow::~SnapshotWindow() = default;

void SnapshotWindow::refresh()
{
    if (m_controller.state() != ServerState::Up || !m_link->waiting().isEmpty())
        return;
    ui->stateLabel->setText(tr("Asking the server..."));
    m_link->send(m_source.make());
}

void SnapshotWindow::onReplied(const PTarnisCmd& command, const QByteArray& reply)
{
    const QString text = QString::fromUtf8(reply);
    if (replyKind(text) == ReplyKind::Refused) {
        ui->stateLabel->setText(text.trimmed());
        return;
    }
    m_values = m_source.read(*command, reply);
    m_time = QTime::currentTime();
    fill();
}

void SnapshotWindow::fill()
{
    const QString part = ui->filterEdit->text().trimmed();
    ui->table->setRowCount(0);
    for (auto value = m_values.cbegin(); value != m_values.cend(); ++value) {
        if (!value.key().contains(part, Qt::CaseInsensitive))
            continue;
        const int row = ui->table->rowCount();
        ui->table->insertRow(row);
        ui->table->setItem(row, 0, new QTableWidgetItem(value.key()));
        ui->table->setItem(row, 1, new QTableWidgetItem(value.value()));
    }
    if (!m_time.isValid())
        return;
    const int all = int(m_values.size());
    const int shown = ui->table->rowCount();
    const QString count =
        shown == all ? tr("%Ln value(s)", nullptr, all) : tr("%L1 of %Ln value(s)", nullptr, all).arg(shown);
    ui->stateLabel->setText(tr("%1, as of %2").arg(count, m_time.toString(u"HH:mm:ss")));
}

void SnapshotWindow::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() != QEvent::LanguageChange)
        return;
    const QString title = windowTitle();
    ui->retranslateUi(this);
    setWindowTitle(title);
    fill();
    updateControls();
}

void SnapshotWindow::updateControls()
{
    const bool isUp = m_controller.state() == ServerState::Up;
    const bool isAsking = !m_link->waiting().isEmpty();
    setAvailable(ui->refreshButton, isUp && !isAsking, withKey(tr("Ask the server again"), Qt::Key_F5),
        isUp ? tr("Wait for the reply") : tr("Needs a connected server. The values of before stay here."));
}

} // namespace console
