// tarnis: a command-line client of the server. It needs no display and links no widgets.
#include "commands.h"

#include <QCoreApplication>

#include <csignal>

int main(int argc, char* argv[])
{
    // A closed pipe is an error of the write, with a message and an exit code of its own.
    std::signal(SIGPIPE, SIG_IGN);
    const QCoreApplication application(argc, argv);
    return cli::runProgram(QCoreApplication::arguments().mid(1), cli::allCommands());
}
