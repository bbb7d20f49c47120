// Common code of the path chooser tests: a chooser with accessors for its parts.
#pragma once

#include "support/scriptedserver.h"
#include "support/wait.h"

#include <tarnis/dialogs/selectdirectorydialog.h>
#include <tarnis/dialogs/selectpathdialog.h>
#include <tarnis/server/tarnissession.h>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>

#include <memory>

namespace tarnis::testing {

template <typename Dialog> class Chooser {
public:
    Chooser(const ScriptedServer& server, const QString& dir)
        : Chooser(server.port(), dir)
    {
    }
    Chooser(quint16 port, const QString& dir)
        : model(ScriptedServer::host(), port, &prompt, nullptr)
        , dialog(std::make_unique<Dialog>(dir, &model, nullptr))
        , accepted(dialog.get(), SIGNAL(accepted(QString)))
    {
        dialog->show();
    }

    QComboBox& combo() { return *dialog->template findChild<QComboBox*>(QStringLiteral("dirComboBox")); }
    QListWidget& list() { return *dialog->template findChild<QListWidget*>(QStringLiteral("curDirListWidget")); }
    QLineEdit& edit() { return *dialog->template findChild<QLineEdit*>(QStringLiteral("fileNameLineEdit")); }
    QPushButton& ok()
    {
        return *dialog->template findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"))
                    ->button(QDialogButtonBox::Ok);
    }

    QStringList ancestors()
    {
        QStringList texts;
        for (int i = 0; i < combo().count(); ++i)
            texts.append(combo().itemText(i));
        return texts;
    }
    QStringList names()
    {
        QStringList texts;
        for (int i = 0; i < list().count(); ++i)
            texts.append(list().item(i)->text());
        return texts;
    }
    /// The request has been answered: the lists are enabled again.
    bool settles()
    {
        return eventually([this] { return list().isEnabled() && combo().isEnabled(); });
    }
    bool shows(const QStringList& expected)
    {
        return eventually([&] { return list().isEnabled() && names() == expected; });
    }
    QListWidgetItem* item(const QString& text) { return list().findItems(text, Qt::MatchExactly).value(0); }
    void doubleClick(const QString& text) { Q_EMIT list().itemDoubleClicked(item(text)); }

    QByteArray prompt = "> ";
    TarnisSession model;
    std::unique_ptr<Dialog> dialog;
    QSignalSpy accepted;
};

using PathChooser = Chooser<SelectPathDialog>;
using DirectoryChooser = Chooser<SelectDirectoryDialog>;

} // namespace tarnis::testing
