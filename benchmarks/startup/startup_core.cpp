// A program with Tarnis::Core that is ready to connect.
#include <tarnis/client/client.h>

#include <QCoreApplication>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const tarnis::Client client;
    return client.isConnected() ? 1 : 0;
}
