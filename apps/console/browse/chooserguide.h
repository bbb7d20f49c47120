// The line below the lists of a path chooser: why OK is disabled, or what OK selects.
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

/// Enables or disables OK of one chooser and shows the reason. GUI thread.
class ChooserGuide : public QObject {
    Q_OBJECT
public:
    /// The chooser's state, requested on each change.
    struct Choice {
        QString problem; ///< why nothing is chosen, as a text for users; empty if something is
        QString path; ///< the chosen path
    };

    ChooserGuide(QDialog& chooser, std::function<Choice()> choice);

    /// Call it with each reply after the chooser has read it.
    void onReply(const PTarnisCmd& command, const QByteArray& reply);
    /// The connection is lost, or restored and the chooser repeats its request.
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
    QString m_refusal; ///< refusal for a folder that the server does not list
    bool m_isRefusalFresh = false; ///< the chooser changes to another folder itself: keep showing the refusal
    bool m_isListed = false; ///< the last requested folder was listed
    bool m_isLost = false;
    bool m_isUpdating = false;
};

} // namespace console
