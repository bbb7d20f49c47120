// tarnis-plot: the widgets of `tarnis plot`, which runs it. Users do not run it directly.
#include "commands.h"
#include "output.h"

#include <QApplication>

int main(int argc, char* argv[])
{
    cli::prepareStreams();
    // Figures look the same with and without a display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    static constexpr const cli::Command* commands[] = { &cli::plotCommand };
    return cli::runProgram(QCoreApplication::arguments().mid(1), commands);
}
