// The console with helpers for its settings.
#pragma once

#include "console/consolefixture.h"
#include "settings/settingsmodel.h"
#include "settings/settingspanel.h"
#include "support/wait.h"

#include <QString>

namespace tarnis::testing {

/// A console with helpers for its settings.
class SettingsConsole : public ConsoleFixture {
public:
    SettingsConsole() = default;
    /// The settings of this server have been read.
    explicit SettingsConsole(const ScriptedServer& server) { connectTo(server); }
    /// The same with a local program that prints the server's port.
    SettingsConsole(const FakeServer& program, const ScriptedServer& server)
    {
        use(program);
        waitForSettings(server);
    }
    void connectTo(const ScriptedServer& server)
    {
        use(server);
        waitForSettings(server);
    }
    console::SettingsModel& model() { return window->settingsPanel().model(); }
    QString here(const QString& name) { return window->controller().tarnis().GetSettingValue(name, QString()); }
    QString onServer(const QString& name)
    {
        return model().index(model().rowOf(name), console::SettingsModel::OnServer).data().toString();
    }
    bool edit(const QString& name, const QString& value)
    {
        return model().setData(model().index(model().rowOf(name), console::SettingsModel::Value), value, Qt::EditRole);
    }
    /// Clicks a button and waits until everything that it sent is answered.
    bool pressed(const char* button)
    {
        press(button);
        return eventually([this] { return window->settingsPanel().canSend(); });
    }
    bool isNotConnected() { return settingsState().startsWith(QStringLiteral("Not connected")); }
    bool sends(const QString& name, const QString& value) { return edit(name, value) && pressed("sendSettingsButton"); }

private:
    void waitForSettings(const ScriptedServer& server)
    {
        if (!eventually([&] { return server.requests().contains("setting") && model().rowCount() > 0; }))
            qFatal("the settings are not read");
    }
};

inline Script okReply(const QByteArray& values)
{
    return { Step::text("OK:\n" + values) };
}

} // namespace tarnis::testing
