// Keeps the data of a lost server on the screen until the next server has data.
#pragma once

#include <QFrame>
#include <QTime>

#include <functional>

QT_BEGIN_NAMESPACE
class QLabel;
class QPushButton;
QT_END_NAMESPACE

class XYGraphWidget;

namespace console {

class ServerController;

/// A bar that shows this and offers to save the picture and the values. It is hidden unless data are kept. GUI thread.
class LastDataBar : public QFrame {
    Q_OBJECT
public:
    /// `dataTime` returns the time of the shown data; invalid: there is nothing to keep.
    LastDataBar(ServerController& controller, XYGraphWidget& plot, const std::function<QTime()>& dataTime);

    /// True if the reply must not be shown, because all its counts are 0 and there are data to keep. False stops
    /// keeping them.
    bool holds(bool isReplyEmpty);

Q_SIGNALS:
    /// The user has requested the new data.
    void released();

protected:
    void onServerState();
    void release();
    void setTexts();

    ServerController& m_controller;
    std::function<QTime()> m_dataTime;
    QLabel* m_label;
    QPushButton* m_pictureButton;
    QPushButton* m_valuesButton;
    QPushButton* m_releaseButton;
    QTime m_keptTime; ///< time of the data
    bool m_isKeeping = false;
    bool m_wasUp;
};

/// True if every double of the payload is 0, or every second one for pairs.
bool isAllZero(const QByteArray& payload, bool arePairs);

} // namespace console
