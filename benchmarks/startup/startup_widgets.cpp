// A program with Tarnis::Tarnis that is ready to show a plot.
#include <tarnis/client/client.h>
#include <tarnis/plots/vectorgraphwidget.h>

#include <QApplication>

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    const tarnis::Client client;
    const VectorGraphWidget plot(nullptr);
    return client.isConnected() || plot.isVisible() ? 1 : 0;
}
