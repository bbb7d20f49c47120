#include "server/statustext.h"

#include <QCoreApplication>

namespace console {

namespace {

struct Status {
    Q_DECLARE_TR_FUNCTIONS(Status)
};

} // namespace

QString statusText(Tarnis::SERVER_STATUS status)
{
    switch (status) {
    case Tarnis::IDLE:
        return Status::tr("Not connected");
    case Tarnis::SERVER_CONNECTED:
        return Status::tr("Connected");
    case Tarnis::SERVER_ERROR:
        return Status::tr("Connection lost");
    case Tarnis::READOUT_CONNECTED:
        return Status::tr("Readout connected");
    case Tarnis::READOUT_ERROR:
        return Status::tr("Readout error");
    case Tarnis::HARDWARE_BUSY:
        return Status::tr("Hardware busy");
    case Tarnis::STARTING:
        return Status::tr("Starting");
    case Tarnis::RUNNING:
        return Status::tr("Running");
    case Tarnis::LOADING:
        return Status::tr("Loading");
    case Tarnis::SHUTTING_DOWN:
        return Status::tr("Shutting down");
    }
    return QLatin1String(Tarnis::GetStatusName(status));
}

} // namespace console
