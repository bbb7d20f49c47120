// The peer: a program with Qt Core and Network that does nothing.
#include <QCoreApplication>
#include <QTcpSocket>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QTcpSocket socket;
    return socket.isOpen() ? 1 : 0;
}
