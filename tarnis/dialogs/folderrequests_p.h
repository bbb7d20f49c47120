// The requests of the path choosers to the server. GUI thread only.
#pragma once

#include "tarnis/server/tarniscmd.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

class TarnisSession;

namespace tarnis {

class FolderLists;

/// Requests the server's own directory and the entries of a folder, and reads the replies. The lists are disabled while
/// a request is under way. Session failures are not reported: the lists then stay disabled.
class FolderRequests : public QObject {
public:
    /// The names of the commands, by which the dialog's slot `result` identifies the replies.
    struct Names {
        QLatin1String directory;
        QLatin1String listing;
    };
    /// Callbacks of the dialog.
    struct Actions {
        std::function<QString()> currentFolder; ///< returns the folder to list
        std::function<void(const QString& folder)> goTo; ///< the server's own directory is known; lists it
        std::function<void(QStringList& names)> show; ///< the entries, sorted by locale
    };

    /// A child of the dialog. `session` is the dialog's pointer; nothing is sent while it is null.
    FolderRequests(TarnisSession*& session, FolderLists* lists, Names names, Actions actions, QObject* dialog);

    /// Starts the dialog's own session, to the server of `model`, whose replies reach the dialog's slot `result`.
    void start(TarnisSession& model);

    /// Begins a new request of the user or the host: a failed listing may fall back again.
    void begin() { m_hasFallenBack = false; }
    void requestDirectory();
    /// If the listing fails, the dialog changes once to the server's own directory.
    void requestListing();
    /// As requestListing(), as a step of a request that is under way.
    void continueListing();

    /// Reads a reply to one of the commands and ignores any other.
    void read(const TarnisCmd& command, const QByteArray& payload);

private:
    void continueDirectory();
    void send(const QString& text, QLatin1String name);
    void readDirectory(const QString& reply);
    void readListing(const QString& reply);

    TarnisSession*& m_session;
    FolderLists* m_lists;
    Names m_names;
    Actions m_actions;
    bool m_hasFallenBack = false; ///< a listing failed and the own directory was requested; a second failure ends the
                                  ///< request
};

} // namespace tarnis
