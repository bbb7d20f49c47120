#include "histograms/lastdatabar.h"

#include "server/servercontroller.h"

#include <tarnis/foundation/retranslator.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <cstring>
#include <utility>

namespace console {

namespace {

void saveValues(XYGraphWidget& plot)
{
    if (auto* const curves = qobject_cast<MultiVectorGraphWidget*>(&plot))
        curves->onSaveCsv();
    else if (auto* const map = qobject_cast<XY2DGraphWidget*>(&plot))
        map->onSaveCsv();
}

} // namespace

bool isAllZero(const QByteArray& payload, bool arePairs)
{
    constexpr qsizetype width = sizeof(double);
    const qsizetype step = arePairs ? 2 * width : width;
    for (qsizetype at = step - width; at + width <= payload.size(); at += step) {
        double value = 0.0;
        std::memcpy(&value, payload.constData() + at, sizeof(value));
        if (value != 0.0)
            return false;
    }
    return true;
}

LastDataBar::LastDataBar(ServerController& controller, XYGraphWidget& plot, const std::function<QTime()>& dataTime)
    : QFrame(plot.window())
    , m_controller(controller)
    , m_dataTime(dataTime)
    , m_label(new QLabel(this))
    , m_pictureButton(new QPushButton(this))
    , m_valuesButton(new QPushButton(this))
    , m_releaseButton(new QPushButton(this))
    , m_wasUp(controller.state() == ServerState::Up)
{
    tarnis::onLanguageChange(*this, [this] { setTexts(); });
    setObjectName(QStringLiteral("keptDataBar"));
    setFrameShape(QFrame::StyledPanel);
    m_label->setTextFormat(Qt::PlainText);
    m_label->setWordWrap(true);
    m_pictureButton->setObjectName(QStringLiteral("keptPictureButton"));
    m_valuesButton->setObjectName(QStringLiteral("keptValuesButton"));
    m_releaseButton->setObjectName(QStringLiteral("keptReleaseButton"));
    auto* const row = new QHBoxLayout;
    for (QPushButton* const button : { m_pictureButton, m_valuesButton, m_releaseButton }) {
        button->setAutoDefault(false);
        row->addWidget(button);
    }
    row->addStretch();
    auto* const box = new QVBoxLayout(this);
    box->addWidget(m_label);
    box->addLayout(row);
    connect(m_pictureButton, &QPushButton::clicked, &plot, &XYGraphWidget::onSave);
    connect(m_valuesButton, &QPushButton::clicked, &plot, [&plot] { saveValues(plot); });
    connect(m_releaseButton, &QPushButton::clicked, this, [this] {
        release();
        Q_EMIT released();
    });
    connect(&controller, &ServerController::stateChanged, this, &LastDataBar::onServerState);
    setTexts();
    hide();
}

void LastDataBar::onServerState()
{
    const bool isUp = m_controller.state() == ServerState::Up;
    if (isUp == std::exchange(m_wasUp, isUp))
        return;
    const QTime time = m_dataTime();
    if (!isUp && !m_isKeeping && time.isValid()) {
        m_isKeeping = true;
        m_keptTime = time;
        setTexts();
        show();
    }
    m_releaseButton->setVisible(isUp);
}

bool LastDataBar::holds(bool isReplyEmpty)
{
    if (m_isKeeping && !isReplyEmpty)
        release();
    return m_isKeeping;
}

void LastDataBar::release()
{
    m_isKeeping = false;
    hide();
}

void LastDataBar::setTexts()
{
    m_label->setText(
        tr("These data are from %1, when the server was last connected. They are kept until it has new data.")
            .arg(m_keptTime.toString(u"HH:mm:ss")));
    m_pictureButton->setText(tr("Save &Picture..."));
    m_pictureButton->setToolTip(tr("Save what is shown as a picture"));
    m_valuesButton->setText(tr("Save &Values..."));
    m_valuesButton->setToolTip(tr("Save what is shown as comma-separated values"));
    m_releaseButton->setText(tr("Show the &New Data"));
    m_releaseButton->setToolTip(tr("Discard these data; the server has none yet"));
}

} // namespace console
