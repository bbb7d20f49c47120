// The settings half of the main window: the table with download and save, the base path and the readout addresses.
#pragma once

#include "app/commandline.h"
#include <tarnis/foundation/retranslator.h>

#include <QStringList>
#include <QWidget>

#include <memory>
#include <optional>

namespace Ui {
class SettingsPanel;
}

namespace console {

class ServerController;
class SettingsModel;

/// Sends on the manager's session "control" and takes the replies from Tarnis::onCmdReply. GUI thread.
class SettingsPanel : public QWidget {
    Q_OBJECT
public:
    SettingsPanel(ServerController& controller, QWidget* parent);
    ~SettingsPanel() override;

    SettingsModel& model() { return *m_model; }
    /// Gives the keyboard to the table.
    void focusTable();
    /// True while settings can be sent: a server is connected and nothing is on its way.
    bool canDownload() const;
    /// True while that would change something on the server.
    bool hasChangesToSend() const;

public Q_SLOTS:
    /// Asks the server for its settings.
    void read();
    /// Sends all settings, after a look at what the server has now: what was not edited here goes back as it is there.
    /// With `save` the server is told to store them too.
    void download(bool save);

    /// Asks again if the server may have other settings after this command, which it has accepted.
    void onCommandAccepted(const QString& command);

Q_SIGNALS:
    void controlsChanged();
    /// A folder of the server is to be chosen as the base path.
    void basePathWanted();

protected:
    void changeEvent(QEvent* event) override;
    void onCmdReply(const QString& name, const QString& command, const QByteArray& result);
    void onSettingReply(const QString& reply);
    void onDownloadReply(const QString& command, const QString& reply);
    void onServerState();
    void showState();
    QString stateText() const;
    void sendRead();
    void takeValues(const QString& reply);
    void sendAll();
    void onEdited();
    void addSetting();
    void removeSetting();
    void setBasePath();
    void setReadoutAddress();
    void showReadoutAddress();
    void tell(const tarnis::TranslatedText& words);
    void updateControls();

    ServerController& m_controller;
    std::unique_ptr<Ui::SettingsPanel> ui;
    SettingsModel* m_model;
    int m_linesPending = 0; ///< replies to a download that have not come yet
    int m_linesSent = 0;
    QStringList m_refusals; ///< of the download under way
    bool m_wasUp = false;
    bool m_hasRead = false; ///< the server's values have come once
    std::optional<bool> m_downloadAsked; ///< waits for the server's values; true: to be saved too
    bool m_isFresh = false; ///< the local server has restarted and was not read yet
    ServerChoice m_choice; ///< the server that the settings were sent to
    QString m_shownPath; ///< what the fields were last filled with
    QString m_shownAddress;
};

} // namespace console
