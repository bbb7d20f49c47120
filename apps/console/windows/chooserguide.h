// What a path chooser says below its lists: why OK cannot be pressed now, or what it takes.
#pragma once

#include <tarnis/server/tarniscmd.h>

#include <QObject>
#include <QString>

#include <functional>

class QDialog;
class QLabel;
class QListWidget;
class QPushButton;

namespace console {

/// Decides about the OK of one chooser and says why in a line of its own. GUI thread.
class ChooserGuide : public QObject {
    Q_OBJECT
public:
    /// What the chooser knows itself, as asked whenever something changes.
    struct Choice {
        QString problem; ///< why nothing is chosen, in words; empty if something is
        QString path; ///< what is chosen
    };

    ChooserGuide(QDialog& chooser, std::function<Choice()> choice);

    /// To be called with each reply after the chooser has read it.
    void onReply(const PTarnisCmd& command, const QByteArray& reply);
    /// The connection is gone; or there again, and the chooser asks again.
    void setLost(bool isLost);
    void update();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    QString problem(const Choice& choice) const;

    QDialog& m_chooser;
    std::function<Choice()> m_choice;
    QLabel* m_label;
    QPushButton* m_ok;
    QListWidget* m_list;
    QString m_refusal; ///< of a folder that the server does not list
    bool m_isRefusalFresh = false; ///< the chooser goes elsewhere by itself: the refusal stays on show
    bool m_isListed = false; ///< the last folder that was asked for
    bool m_isLost = false;
    bool m_isUpdating = false;
};

} // namespace console
