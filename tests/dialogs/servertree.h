// The folders and files of a scripted server.
#pragma once

#include "dialogs/chooser.h"

#include <QTest>

namespace tarnis::testing {

inline Script listing(const QByteArray& lines)
{
    return { Step::text("OK:\n" + lines) };
}

/// /data with two runs and files, /data/run with one file; the server's current folder is /data.
class TreeServer : public ScriptedServer {
public:
    TreeServer()
    {
        answer("pwd", listing("/data\n"));
        answer("ls-F \"/data\"", listing("b.txt\nrun/\nA.TXT\nnotes\nempty/\n"));
        answer("ls-F \"/data/run\"", listing("one.txt\n"));
        answer("ls-F \"/\"", listing("data/\n"));
        answerOthers([](const std::string&) { return Script { Step::text("NG: no such folder\n") }; });
    }
};

inline QByteArray lastRequest(const ScriptedServer& server)
{
    const QList<QByteArray> requests = server.requests();
    return requests.isEmpty() ? QByteArray() : requests.last();
}

} // namespace tarnis::testing
