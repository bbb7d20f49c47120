// A command for the readout modules: to all, to a family, to one, or to several in turn, and what each answered.
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

/// A row for each answer, with a column for each value that came. Sends on a session of its own, and goes on asking for
/// nothing by itself. GUI thread.
class ModulesWindow : public NameValueListDialog {
    Q_OBJECT
public:
    /// Whom a command goes to, in the order of the box.
    enum class Target { All, Family, One, Several };

    ModulesWindow(ServerController& controller, QWidget* parent);
    ~ModulesWindow() override;

public Q_SLOTS:
    void send();
    void giveUp();

protected:
    using Commands = std::vector<std::unique_ptr<TarnisCmd>>;

    void changeEvent(QEvent* event) override;
    void setUp();
    void setTexts();
    Target target() const;
    /// The commands as they would go out now; none, and the reason, if something is missing.
    Commands commands(QString& problem) const;
    QString addressee(const TarnisCmd& command) const;
    void onReplied(const PTarnisCmd& command, const QByteArray& reply);
    void onEnded(const tarnis::TranslatedText& sentence, const QString& answer);
    void takeAnswer(int row, const ModuleAnswer& answer);
    void showAnswers();
    /// Fills the table and says the sentence below it.
    void tell(const tarnis::TranslatedText& sentence);
    void updateControls();

    ServerController& m_controller;
    std::unique_ptr<Ui::ModulesForm> m_form;
    CommandChannel* m_link;
    QLabel* m_stateLabel;
    QPushButton* m_sendButton;
    QPushButton* m_giveUpButton;
    QList<ModuleAnswer> m_answers; ///< a row each; without a text while it is waited for
    QStringList m_names; ///< of the values that came, in order: a column each
    qsizetype m_waiting = 0; ///< commands without a reply
    QTimer m_showTimer; ///< while replies come: filling the table for each would take longer with each module
};

} // namespace console
