// A local server for the tests of whatever starts one: a program in a folder of its own that does what a script says.
// The steps are listed in fakeserver_main.cpp.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace tarnis::testing {

class FakeServer {
public:
    /// A program at `name` below a fresh folder; `name` may hold folders and blanks. Nothing is started.
    explicit FakeServer(const QStringList& script, const QString& name = QStringLiteral("server"));

    QString path() const; ///< of the program
    QString folder() const; ///< above `name`
    bool hasNoted(const QString& name) const; ///< the program has passed this note
    QByteArray noted(const QString& name) const; ///< what had come on standard input by then

    /// Announces `port`, ends orderly on "exit" or at the end of its input, and notes "end" then.
    static QStringList wellBehaved(int port);

private:
    QTemporaryDir m_folder;
    QString m_path;
};

} // namespace tarnis::testing
