// The public functions of the client. The state machine is in client_machine.cpp.
#include "tarnis/client/client_p.h"

#include <QTimerEvent>

namespace tarnis {

Client::Client(ClientOptions options, QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>(*this, std::move(options)))
{
}

Client::~Client()
{
    // A slot would be called with a partly destroyed client, and often owner. The requests still end.
    blockSignals(true);
    d->isEnding = true;
    d->disconnectAs(tr("The client was closed."), true);
}

void Client::connectTo(const QString& host, quint16 port)
{
    d->connectTo(host, port);
}

void Client::reconnectNow()
{
    d->reconnectNow();
}

void Client::close(const QString& reason)
{
    d->disconnectAs(reason.isEmpty() ? tr("The connection was closed by this program.") : reason, true);
}

void Client::abort()
{
    d->disconnectAs(tr("The connection was aborted by this program."), false);
}

void Client::cancelAll()
{
    d->cancelAll();
}

QFuture<Reply> Client::request(const QString& text, const RequestOptions& options)
{
    return d->request(text, options);
}

QFuture<Reply> Client::requestBinary(const QString& text, RequestOptions options)
{
    options.form = RequestOptions::Form::Binary;
    return d->request(text, options);
}

QFuture<Reply> Client::upload(const QString& name, const QByteArray& content, const RequestOptions& options)
{
    if (name.isEmpty() || name.contains(QLatin1Char('\n')))
        return endedFuture(
            endedAs(Reply::Outcome::Refused, tr("The name of the uploaded file is empty or contains a line feed.")));
    return d->request(QLatin1String("txfile ") + name + QLatin1Char('\n') + QString::fromLatin1(content), options);
}

Client::State Client::state() const
{
    return d->state;
}

QString Client::reason() const
{
    return d->reason;
}

QString Client::host() const
{
    return d->host;
}

quint16 Client::port() const
{
    return d->port;
}

bool Client::isConnected() const
{
    return d->state == State::Ready || d->state == State::Busy;
}

qsizetype Client::pending() const
{
    return d->queue.size() + (d->underWay && d->underWay->request.promise ? 1 : 0);
}

const ClientOptions& Client::options() const
{
    return d->options;
}

QByteArray Client::greeting() const
{
    return d->greeting;
}

void Client::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == d->timer.timerId())
        d->onTimer();
    else
        QObject::timerEvent(event);
}

} // namespace tarnis
