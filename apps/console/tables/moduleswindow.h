// Sends a command to the readout modules (all, a family, one, or several in turn) and shows their answers.
#pragma once

#include "tables/moduleanswers.h"
#include <tarnis/foundation/retranslator.h>

#include <tarnis/dialogs/namevalue.h>
#include <tarnis/dialogs/namevaluelistdialog.h>
#include <tarnis/server/tarniscmd.h>

#include <QTimer>

#include <memory>
#include <vector>

class QLabel;
class QPushButton;
namespace Ui {
class ModulesForm;
}

namespace console {

class CommandChannel;
class ServerController;

/// A row for each answer, with a column for each value. Sends on its own connection, and only on request. GUI thread.
class ModulesWindow : public NameValueListDialog {
    Q_OBJECT
public:
    /// The recipients of a command, in the order of the combo box.
    enum class Target { All, Family, One, Several };

    ModulesWindow(ServerController& controller, QWidget* parent);
    ~ModulesWindow() override;

public Q_SLOTS:
    void send();
    void giveUp();

protected:
    using Commands = std::vector<std::unique_ptr<TarnisCmd>>;

    void setUp();
    void setTexts();
    Target target() const;
    /// The commands to send; empty, with the reason in `problem`, if something is missing.
    Commands commands(QString& problem) const;
    QString addressee(const TarnisCmd& command) const;
    void onReplied(const PTarnisCmd& command, const QByteArray& reply);
    void onEnded(const tarnis::TranslatedText& translated, const QString& answer);
    void takeAnswer(int row, const ModuleAnswer& answer);
    void showAnswers();
    /// Fills the table and shows the translated below it.
    void setStateText(const tarnis::TranslatedText& translated);
    void updateControls();

    ServerController& m_controller;
    std::unique_ptr<Ui::ModulesForm> m_form;
    CommandChannel* m_channel;
    QLabel* m_stateLabel;
    QPushButton* m_sendButton;
    QPushButton* m_giveUpButton;
    QList<ModuleAnswer> m_answers; ///< one per row; without a text while pending
    QStringList m_names; ///< names of the received values, in order, one column each
    qsizetype m_waiting = 0; ///< number of commands without a reply
    QTimer m_showTimer; ///< delays filling the table, because filling it for each reply would be quadratic in the
                        ///< number of modules
};

} // namespace console
