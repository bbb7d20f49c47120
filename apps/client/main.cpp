// tarnis: a command-line client of the server. It needs no display and links no widgets.
#include "commands.h"
#include "output.h"

#include <QCoreApplication>

int main(int argc, char* argv[])
{
    cli::prepareStreams();
    const QCoreApplication application(argc, argv);
    return cli::runProgram(QCoreApplication::arguments().mid(1), cli::allCommands());
}
