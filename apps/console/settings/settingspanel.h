// The settings part of the main window: the table with send and save, the base path and the readout addresses.
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

/// Sends on the manager's session "control" and receives the replies from Tarnis::onCmdReply. GUI thread.
class SettingsPanel : public QWidget {
    Q_OBJECT
public:
    SettingsPanel(ServerController& controller, QWidget* parent);
    ~SettingsPanel() override;

    SettingsModel& model() { return *m_model; }
    /// Gives the focus to the table.
    void focusTable();
    /// True while settings can be sent: a server is connected and no request is under way.
    bool canSend() const;
    /// True if sending would change the server's settings.
    bool hasChangesToSend() const;

public Q_SLOTS:
    /// Requests the server's settings.
    void read();
    /// Sends all settings, after reading the server's current ones: unedited settings are sent back unchanged. With
    /// `save` the server also stores them.
    void send(bool save);

    /// Reads the settings again if this accepted command may have changed them.
    void onCommandAccepted(const QString& command);

Q_SIGNALS:
    void controlsChanged();
    /// The user wants to choose a folder of the server as the base path.
    void basePathWanted();

protected:
    void onCmdReply(const QString& name, const QString& command, const QByteArray& result);
    void onSettingReply(const QString& reply);
    void onSendReply(const QString& command, const QString& reply);
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
    void setStateText(const tarnis::TranslatedText& translated);
    void updateControls();

    ServerController& m_controller;
    std::unique_ptr<Ui::SettingsPanel> ui;
    SettingsModel* m_model;
    int m_linesPending = 0; ///< outstanding replies to the settings
    int m_linesSent = 0;
    QStringList m_refusals; ///< refusals of the settings that are being sent
    bool m_isSaving = false; ///< the server saves the settings that were sent last
    bool m_isAccepted = false; ///< the settings were accepted; the values are read
    bool m_wasUp = false;
    bool m_hasRead = false; ///< the server's values have been received
    std::optional<bool> m_sendAsked; ///< sending waits for the server's values; true: with save
    bool m_isFresh = false; ///< the local server has restarted and its settings were not read yet
    ServerChoice m_choice; ///< the server that the settings were sent to
    QString m_shownPath; ///< last text set in the field
    QString m_shownAddress;
};

} // namespace console
