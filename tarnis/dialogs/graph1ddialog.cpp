#include "tarnis/dialogs/graph1ddialog.h"

#include "tarnis/client/histogramwire_p.h"
#include "tarnis/dialogs/livewindow_p.h"
#include "tarnis/foundation/checkedconnect_p.h"
#include "tarnis/foundation/trace_p.h"
#include "tarnis/plots/multivectorgraphwidget.h"
#include "tarnis/server/tarnissession.h"

#include "ui_graph1ddialog.h"

#include <QCloseEvent>
#include <QTimer>

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace {

bool countsAsZero(double value)
{
    return std::abs(value) <= DBL_EPSILON * std::max(1.0, std::abs(value));
}

// In the row format: the sum over all rows.
double expectedValues(double xMin, double xMax, int resolution, int rows)
{
    const double samples = std::abs(xMax - xMin) / std::max(resolution, 1);
    return std::isfinite(samples) ? samples * std::max(rows, 1) : 0.0;
}

} // namespace

const bool Graph1DDialog::initialAutoUpdate = true;

Graph1DDialog::Graph1DDialog(TarnisSession* session_, QString const& title, QString const& xLabel, double xMin,
    double xMax, int resolution, int decimalX, QString const& desc, QList<QString> const& initCmds, QString const& cmd_,
    int start_, int end_, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::Graph1DDialog>())
    , cmd(cmd_)
    , start(start_)
    , end(end_)
    , pairMode(countsAsZero(xMin) && countsAsZero(xMax))
    , live(new tarnis::LiveWindow(*this, session, expectedValues(xMin, xMax, resolution, end_ - start_ + 1)))
{
    ui->setupUi(this);
    ui->progressBar->hide();
    setInfoText(QString());
    ui->graphWidget->m_doubleBuffered = true;
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(title);
    ui->autoUpdateCheckBox->setChecked(initialAutoUpdate);
    setUpDescription(desc);
    setUpPlot(title, xLabel, xMin, xMax, resolution, decimalX, desc);

    tarnis::checkedConnect(ui->autoUpdateCheckBox, SIGNAL(toggled(bool)), this, SLOT(onAutoUpdateToggled(bool)));
    connect(ui->typeComboBox, &QComboBox::currentIndexChanged, this,
        [this](int index) { onTypeChanged(ui->typeComboBox->itemText(index)); });
    tarnis::checkedConnect(ui->toolButton, SIGNAL(clicked()), ui->graphWidget, SLOT(onSelectVisibles()));

    if (!session_) {
        showDemonstration(resolution);
        return;
    }
    tarnis::checkedConnect(ui->updatePushButton, SIGNAL(clicked()), this, SLOT(update()));
    live->start(*this, { session_->m_host, session_->m_port, session_->GetPrompt() }, initCmds);
    timer = tarnis::newPollTimer(this);
}

// The session created here only carries the address and is destroyed when the window has read it.
Graph1DDialog::Graph1DDialog(tarnis::ServerAddress const& server, QString const& title, QString const& xLabel,
    double xMin, double xMax, int resolution, int decimalX, QString const& desc, QList<QString> const& initCmds,
    QString const& cmd_, int start_, int end_, QWidget* parent)
    : Graph1DDialog(std::make_unique<TarnisSession>(server.host, server.port, server.prompt, nullptr).get(), title,
        xLabel, xMin, xMax, resolution, decimalX, desc, initCmds, cmd_, start_, end_, parent)
{
}

Graph1DDialog::~Graph1DDialog()
{
    delete timer;
    live->end();
}

void Graph1DDialog::setUpDescription(QString const& desc)
{
    ui->descLabel->setText(
        QStringLiteral("%1 %2-%3").arg(desc, QString::number(start), QString::number(end)).trimmed());
    if (start != end)
        return;
    ui->typeComboBox->hide();
    ui->toolButton->hide();
    const QString text = desc.trimmed();
    ui->descLabel->setText(text);
    ui->descLabel->setVisible(!text.isEmpty());
    if (text.isEmpty())
        ui->horizontalSpacer->changeSize(0, 0, QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void Graph1DDialog::setUpPlot(QString const& title, QString const& xLabel, double xMin, double xMax, int resolution,
    int decimalX, QString const& desc)
{
    MultiVectorGraphWidget& plot = *ui->graphWidget;
    plot.init(xLabel, QStringLiteral("Intensity"), 0.0, 0.0, true, true);
    plot.initManualX(xMin, xMax);
    plot.setResolution(static_cast<unsigned int>(resolution));
    plot.m_groupSize = 1;
    plot.m_firstNumber = start;
    plot.m_groupName = desc;
    plot.setDecimalX(decimalX);
    plot.setTitle(title);
    plot.setAddType(MultiVectorGraphWidget::AddEachGroup);
}

void Graph1DDialog::showDemonstration(int resolution)
{
    const int count = 10000 / (resolution == 0 ? 1 : resolution);
    for (int row = 0; row <= end - start; ++row) {
        QList<double> samples;
        for (int i = 0; i < count; ++i)
            samples.append(static_cast<double>(i) * (row + 1) * 0.111);
        ui->graphWidget->setData(row, samples, tarnis::largest(samples, 0.0));
    }
    ui->graphWidget->refreshPixmap();
}

MultiVectorGraphWidget* Graph1DDialog::getGraphWidget() const
{
    return ui->graphWidget;
}

void Graph1DDialog::setCmd(QString const& text)
{
    if (text == cmd)
        return;
    cmd = text;
    update();
}

bool Graph1DDialog::isAutoUpdate() const
{
    return ui->autoUpdateCheckBox->isChecked();
}

void Graph1DDialog::setAutoUpdate(bool on)
{
    ui->autoUpdateCheckBox->setChecked(on);
    if (on)
        update();
}

void Graph1DDialog::setVisibleUpdateControls(bool visible)
{
    ui->updatePushButton->setVisible(visible);
    ui->autoUpdateCheckBox->setVisible(visible);
}

void Graph1DDialog::setEnabledUpdateControls(bool enabled)
{
    ui->updatePushButton->setEnabled(enabled);
    ui->autoUpdateCheckBox->setEnabled(enabled);
}

void Graph1DDialog::setProgressInfo(bool visible, unsigned long long value, unsigned long long maximum)
{
    tarnis::showProgress(*ui->progressBar, visible, value, maximum);
}

void Graph1DDialog::setInfoText(QString const& text)
{
    tarnis::showInfo(*ui->infoLabel, text);
}

void Graph1DDialog::renewSession(tarnis::ServerAddress const& server)
{
    if (timer)
        live->start(*this, server, QStringList(live->initialCommands()));
}

QString Graph1DDialog::stopReason() const
{
    return live->stopReason();
}

void Graph1DDialog::reportUndrawn(tarnis::UndrawnReply const& reply)
{
    if (!tarnis::LiveWindow::isAnswered(hooks, reply, timer))
        live->showUndrawn(reply, QMessageBox::Information);
}

void Graph1DDialog::update()
{
    if (session)
        live->poll(*this, cmd);
}

void Graph1DDialog::onTimeout()
{
    if (isAutoUpdate())
        update();
}

void Graph1DDialog::onAutoUpdateToggled(bool on)
{
    if (on)
        update();
    else if (session)
        session->cancel();
}

void Graph1DDialog::onTypeChanged(QString const& text)
{
    ui->graphWidget->setAddType(
        text == QLatin1String("Each") ? MultiVectorGraphWidget::AddEachGroup : MultiVectorGraphWidget::AddAll);
}

bool Graph1DDialog::onResultExInfo(QList<QString> const& lines)
{
    setInfoText(tarnis::complaints(lines));
    return true;
}

void Graph1DDialog::error(int code, QString const& text)
{
    if (timer && !session)
        return; // closed; the session had queued the reply before
    if (timer)
        live->setFailed(text);
    TarnisSession::showErrorMessage(code, text);
}

void Graph1DDialog::result(PTarnisCmd command, QByteArray const& payload)
{
    if (!live->bringsPayload(*this, timer, *command, payload, tr(">>> %1\n<<< %2")))
        return;
    if (live->isTooLarge(tarnis::doubleCount(payload))) {
        reportUndrawn(live->tooLarge(tarnis::doubleCount(payload)));
        return;
    }
    const bool shown = pairMode ? showPairs(command->m_replyText, payload) : showRows(payload);
    if (!shown)
        return;
    ui->graphWidget->refreshPixmap();
    Q_EMIT onGraphUpdated();
    pollLater();
}

void Graph1DDialog::pollLater()
{
    if (timer)
        timer->start();
}

bool Graph1DDialog::showRows(QByteArray const& payload)
{
    const int rows = end - start + 1;
    if (rows < 1)
        return true;
    const qsizetype samples = tarnis::doubleCount(payload) / rows;
    for (int row = 0; row < rows; ++row) {
        const QList<double> values = tarnis::stridedDoubles(payload, row, rows, samples);
        ui->graphWidget->setData(row, values, tarnis::largest(values, 0.0));
    }
    ui->graphWidget->resizeData(rows);
    if (hooks.onDrawn) {
        const qsizetype used = samples * rows * qsizetype(sizeof(double));
        hooks.onDrawn({ samples * rows, tarnis::countNotFinite(payload.first(used)), payload.size() - used });
    }
    return true;
}

bool Graph1DDialog::showPairs(QString const& replyText, QByteArray const& payload)
{
    TARNIS_TRACE(replyText);
    QString text = replyText;
    std::optional<tarnis::PairAxis> axis = tarnis::takePairAxis(text);
    const qint64 values = tarnis::doubleCount(payload);
    if (!axis) {
        reportUndrawn({ tarnis::UndrawnReply::Reason::NoAxis, tr("failed to parse information - '%1'").arg(text),
            replyText, values });
        return false;
    }
    if (live->isTooLarge(2 * qint64(axis->bins))) {
        reportUndrawn(live->tooLarge(2 * qint64(axis->bins)));
        return false;
    }
    if (extendLastBin)
        axis->max += (axis->max - axis->min) / (static_cast<double>(axis->bins) - 1.0);
    const std::optional<tarnis::PairSamples> samples = tarnis::pairSamples(payload, *axis);
    const tarnis::UndrawnReply outside { tarnis::UndrawnReply::Reason::OutsideAxis, tr("Invalid index!"), replyText,
        values };
    if (!samples && tarnis::LiveWindow::isAnswered(hooks, outside, timer))
        return false;
    ui->graphWidget->initManualX(axis->min, axis->max);
    ui->graphWidget->setResolution(1);
    if (!samples) {
        live->showUndrawn(outside, QMessageBox::Warning);
        return false;
    }
    ui->graphWidget->setData(0, samples->ys, tarnis::largest(samples->ys, 0.0));
    ui->graphWidget->setManualIndex(samples->xs);
    ui->graphWidget->resizeData(1);
    if (hooks.onDrawn)
        hooks.onDrawn({ samples->ys.size(), tarnis::countNotFinite(samples->ys),
            payload.size() % qsizetype(2 * sizeof(double)) });
    return true;
}

void Graph1DDialog::moveEvent(QMoveEvent* event)
{
    ui->graphWidget->onParentMoved();
    QDialog::moveEvent(event);
}

void Graph1DDialog::resizeEvent(QResizeEvent* event)
{
    ui->graphWidget->onParentMoved();
    QDialog::resizeEvent(event);
}

void Graph1DDialog::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        ui->retranslateUi(this);
        live->retranslate();
    } else if (event->type() == QEvent::ActivationChange && isActiveWindow())
        ui->graphWidget->onParentActivate();
}

void Graph1DDialog::closeEvent(QCloseEvent* event)
{
    TARNIS_TRACE(objectName() + QStringLiteral(": closeEvent"));
    hide();
    live->end();
    QDialog::closeEvent(event);
}
