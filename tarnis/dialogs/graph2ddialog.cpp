#include "tarnis/dialogs/graph2ddialog.h"

#include "tarnis/client/histogramwire_p.h"
#include "tarnis/dialogs/graph2dkernel_p.h"
#include "tarnis/dialogs/livewindow_p.h"
#include "tarnis/foundation/checkedconnect_p.h"
#include "tarnis/foundation/trace_p.h"
#include "tarnis/plots/xy2dgraphwidget.h"
#include "tarnis/server/tarnissession.h"

#include "ui_graph2ddialog.h"

#include <QCloseEvent>
#include <QPointer>
#include <QTimer>

namespace {

double rowPeak(const QList<double>& row)
{
    return row.isEmpty() ? 0.0 : tarnis::largest(row, row.first());
}

} // namespace

const bool Graph2DDialog::initialAutoUpdate = true;

Graph2DDialog::Graph2DDialog(TarnisSession* session_, QString const& title, QString const& nameX, int binsX_,
    double minX, double maxX, int resolutionX, int decimalX, QString const& nameY, int binsY_, double minY, double maxY,
    int resolutionY, int decimalY, QList<QString> const& initCmds, QString const& cmd_, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::Graph2DDialog>())
    , binsX(binsX_)
    , binsY(binsY_)
    , cmd(cmd_)
    , live(new tarnis::LiveWindow(*this, session, double(binsX_) * binsY_))
{
    ui->setupUi(this);
    ui->progressBar->hide();
    setInfoText(QString());
    ui->graphWidget->m_doubleBuffered = true;
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(title);
    ui->autoUpdateCheckBox->setChecked(initialAutoUpdate);
    tarnis::checkedConnect(ui->filterPushButton, SIGNAL(clicked()), this, SLOT(onFilter()));

    XY2DGraphWidget& plot = *ui->graphWidget;
    plot.init(nameX, nameY, binsX, binsY, true, true);
    plot.initManualX(minX, maxX);
    plot.initManualY(minY, maxY);
    plot.setResolution(static_cast<unsigned int>(resolutionX), static_cast<unsigned int>(resolutionY));
    plot.setDecimalX(decimalX);
    plot.setDecimalY(decimalY);
    plot.setTitle(title);
    plot.onMaxZChanged(10.0);
    plot.onAutoScaleZToggled(true);

    if (session_) {
        startPolling(*session_, initCmds);
    } else {
        ui->updatePushButton->hide();
        ui->autoUpdateCheckBox->hide();
    }
}

Graph2DDialog::~Graph2DDialog()
{
    delete timer;
    live->end();
}

// The session created here only carries the address and is destroyed when the window has read it.
Graph2DDialog::Graph2DDialog(tarnis::ServerAddress const& server, QString const& title, QString const& nameX,
    int binsX_, double minX, double maxX, int resolutionX, int decimalX, QString const& nameY, int binsY_, double minY,
    double maxY, int resolutionY, int decimalY, QList<QString> const& initCmds, QString const& cmd_, QWidget* parent)
    : Graph2DDialog(std::make_unique<TarnisSession>(server.host, server.port, server.prompt, nullptr).get(), title,
        nameX, binsX_, minX, maxX, resolutionX, decimalX, nameY, binsY_, minY, maxY, resolutionY, decimalY, initCmds,
        cmd_, parent)
{
}

void Graph2DDialog::startPolling(TarnisSession& model, QList<QString> const& initCmds)
{
    tarnis::checkedConnect(ui->updatePushButton, SIGNAL(clicked()), this, SLOT(update()));
    tarnis::checkedConnect(ui->autoUpdateCheckBox, SIGNAL(toggled(bool)), this, SLOT(onAutoUpdateToggled(bool)));
    live->start(*this, { model.m_host, model.m_port, model.GetPrompt() }, initCmds);
    timer = tarnis::newPollTimer(this);
}

void Graph2DDialog::setCmd(QString const& text)
{
    if (text == cmd)
        return;
    cmd = text;
    update();
}

QString Graph2DDialog::getCmd() const
{
    return cmd;
}

XY2DGraphWidget* Graph2DDialog::getGraphWidget() const
{
    return ui->graphWidget;
}

bool Graph2DDialog::isAutoUpdate() const
{
    return ui->autoUpdateCheckBox->isChecked();
}

void Graph2DDialog::setAutoUpdate(bool on)
{
    ui->autoUpdateCheckBox->setChecked(on);
    if (on)
        update();
}

void Graph2DDialog::setVisibleUpdateControls(bool visible)
{
    ui->updatePushButton->setVisible(visible);
    ui->autoUpdateCheckBox->setVisible(visible);
}

void Graph2DDialog::setEnabledUpdateControls(bool enabled)
{
    ui->updatePushButton->setEnabled(enabled);
    ui->autoUpdateCheckBox->setEnabled(enabled);
}

void Graph2DDialog::setProgressInfo(bool visible, unsigned long long value, unsigned long long maximum)
{
    tarnis::showProgress(*ui->progressBar, visible, value, maximum);
}

void Graph2DDialog::setInfoText(QString const& text)
{
    tarnis::showInfo(*ui->infoLabel, text);
}

void Graph2DDialog::setStep(double x, double y)
{
    ui->graphWidget->setStepX(x);
    ui->graphWidget->setStepY(y);
}

void Graph2DDialog::setColorBarTicks(int ticks)
{
    ui->graphWidget->setColorBarTicks(ticks);
}

void Graph2DDialog::renewSession(tarnis::ServerAddress const& server)
{
    if (timer)
        live->start(*this, server, QStringList(live->initialCommands()));
}

QString Graph2DDialog::stopReason() const
{
    return live->stopReason();
}

void Graph2DDialog::update()
{
    if (session)
        live->poll(*this, getCmd());
}

void Graph2DDialog::onTimeout()
{
    if (isAutoUpdate())
        update();
}

void Graph2DDialog::onAutoUpdateToggled(bool checked)
{
    if (!checked) {
        if (timer)
            timer->stop();
        if (session)
            session->cancel();
    } else if (isAutoUpdate()) {
        update();
    }
}

bool Graph2DDialog::onResultExInfo(QList<QString> const& lines)
{
    setInfoText(tarnis::complaints(lines));
    return true;
}

void Graph2DDialog::error(int socketError, QString message)
{
    if (timer && !session)
        return; // closed; the session had queued the reply before
    if (timer)
        live->setFailed(message);
    const QPointer<Graph2DDialog> guard(this);
    TarnisSession::showErrorMessage(socketError, message);
    if (guard)
        close();
}

void Graph2DDialog::result(PTarnisCmd command, QByteArray payload)
{
    if (!live->bringsPayload(*this, timer, *command, payload, tr(">>> %1\n<<< %2")))
        return;
    const tarnis::BinCounts previous { binsX, binsY };
    if (const auto counts = tarnis::exportedCounts(command->m_replyText)) {
        binsX = counts->x;
        binsY = counts->y;
    }
    const qint64 values = tarnis::doubleCount(payload);
    if (!payload.isEmpty() && (live->isTooLarge(values) || !fits(payload))) {
        refuseReply(command->m_replyText, payload, previous.x, previous.y);
        return;
    }
    if (payload.isEmpty()) {
        ui->graphWidget->clearData();
        TARNIS_TRACE(QStringLiteral("graph deata is empty."));
    } else {
        showRows(payload);
    }
    if (hooks.onDrawn)
        hooks.onDrawn({ values, tarnis::countNotFinite(payload), payload.size() % qsizetype(sizeof(double)) });
    ui->graphWidget->refreshPixmap();
    pollLater();
}

// If a hook handles the reply, the window keeps the bins of the displayed data.
void Graph2DDialog::refuseReply(QString const& replyText, QByteArray const& payload, int oldBinsX, int oldBinsY)
{
    const qint64 values = tarnis::doubleCount(payload);
    tarnis::UndrawnReply reply { tarnis::UndrawnReply::Reason::SizeMismatch,
        tr("graph data size mismatched! %1 != %2 ( %3 * %4 )")
            .arg(payload.size() / 4) // 4 rather than the 8 bytes of a value: hosts expect this number
            .arg(qint64(binsX) * binsY)
            .arg(binsX)
            .arg(binsY),
        replyText, values };
    if (fits(payload))
        reply = live->tooLarge(values);
    reply.binsX = binsX;
    reply.binsY = binsY;
    if (tarnis::LiveWindow::isAnswered(hooks, reply, timer)) {
        binsX = oldBinsX;
        binsY = oldBinsY;
        return;
    }
    live->showUndrawn(reply, QMessageBox::Information);
}

void Graph2DDialog::pollLater()
{
    if (timer)
        timer->start();
}

bool Graph2DDialog::fits(QByteArray const& payload) const
{
    const qsizetype values = tarnis::doubleCount(payload);
    return binsX >= 0 && binsY >= 0 && values > 0 && values == qint64(binsX) * binsY;
}

void Graph2DDialog::showRows(QByteArray const& payload)
{
    for (int r = 0; r < binsY; ++r) {
        const QList<double> row = tarnis::stridedDoubles(payload, qsizetype(binsX) * r, 1, binsX);
        ui->graphWidget->setData(r, row, rowPeak(row), r == binsY - 1);
    }
}

void Graph2DDialog::onFilter()
{
    if (QWidget* const open = filterDialogs.map.value(this)) {
        open->show();
        open->activateWindow();
        return;
    }
    auto* const dialog = new Graph2DFilterDialog(this);
    filterDialogs.map.insert(this, dialog);
    tarnis::checkedConnect(dialog, SIGNAL(destroyed(QObject*)), &filterDialogs, SLOT(onDestroyed(QObject*)));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->show();
    tarnis::checkedConnect(dialog, SIGNAL(accepted(Graph2DFilter)), this, SLOT(onFilterAccepted(Graph2DFilter)));
}

void Graph2DDialog::onFilterAccepted(const Graph2DFilter& filter)
{
    XY2DGraphWidget& plot = *ui->graphWidget;
    QList<QList<double>> source;
    plot.getData(source);
    if (source.isEmpty())
        return;
    const QList<QList<double>> target = tarnis::filtered(source, filter);
    double minX = 0.0;
    double maxX = 0.0;
    plot.getInitMinMaxX(minX, maxX);
    // The Y range of the new window is the X range of this one, because the same function is called twice.
    double minY = 0.0;
    double maxY = 0.0;
    plot.getInitMinMaxX(minY, maxY);
    auto* const window = new Graph2DDialog(nullptr, windowTitle(), plot.getNameX(), binsX, minX, maxX, 1,
        plot.getDecimalX(), plot.getNameY(), binsY, minY, maxY, 1, plot.getDecimalY(), {}, QString(), this);
    const bool hasColumns = !target.first().isEmpty(); // determined by row 0 only
    for (qsizetype r = 0; r < target.size(); ++r) {
        const QList<double>& row = target.at(r);
        window->getGraphWidget()->setData(
            static_cast<int>(r), row, hasColumns ? rowPeak(row) : 0.0, r == target.size() - 1);
    }
    window->show();
}

void Graph2DDialog::moveEvent(QMoveEvent* event)
{
    ui->graphWidget->onParentMoved();
    QDialog::moveEvent(event);
}

void Graph2DDialog::resizeEvent(QResizeEvent* event)
{
    ui->graphWidget->onParentMoved();
    QDialog::resizeEvent(event);
}

void Graph2DDialog::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        ui->retranslateUi(this);
        live->retranslate();
    } else if (event->type() == QEvent::ActivationChange && isActiveWindow())
        ui->graphWidget->onParentActivate();
}

void Graph2DDialog::closeEvent(QCloseEvent* event)
{
    TARNIS_TRACE(objectName() + QStringLiteral(": closeEvent"));
    hide();
    live->end();
    update();
    QDialog::closeEvent(event);
}
