// instrument [PROGRAM | HOST:PORT]: operates a server. Without an argument it starts tarnis-simserver.
#include "instrument.h"

#include <QApplication>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    Instrument window;
    window.resize(1200, 800);
    window.show();
    window.open(argc > 1 ? application.arguments().at(1) : QStringLiteral("tarnis-simserver"));
    return application.exec(); // a local server exits when the window is destroyed
}
