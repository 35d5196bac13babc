#include "camsim/httpserver.h"

#include <QTcpServer>
#include <QTcpSocket>

namespace veltor::camsim {

namespace {

const char kExchangeProperty[] = "camsimExchange";

HttpExchange *exchangeOf(QTcpSocket *socket)
{
    return socket->property(kExchangeProperty).value<HttpExchange *>();
}

} // namespace

HttpServer::HttpServer(QObject *parent) : QObject(parent), server(new QTcpServer(this))
{
    connect(server, &QTcpServer::newConnection, this, &HttpServer::accept);
}

bool HttpServer::listen(const QHostAddress &address, quint16 port)
{
    return server->listen(address, port);
}

void HttpServer::close()
{
    server->close();
}

QHostAddress HttpServer::serverAddress() const
{
    return server->serverAddress();
}

quint16 HttpServer::serverPort() const
{
    return server->serverPort();
}

QString HttpServer::errorString() const
{
    return server->errorString();
}

void HttpServer::route(const QString &pathPrefix, RouteHandler handler)
{
    auto at = routes.begin();
    while (at != routes.end() && at->prefix.size() >= pathPrefix.size())
        ++at;
    routes.insert(at, Route{pathPrefix, std::move(handler)});
}

void HttpServer::accept()
{
    while (QTcpSocket *socket = server->nextPendingConnection()) {
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
            if (HttpExchange *exchange = exchangeOf(socket))
                exchange->feedBody(socket->readAll());
            else
                readHead(socket);
        });
        connect(socket, &QTcpSocket::disconnected, this, [socket] {
            if (HttpExchange *exchange = exchangeOf(socket))
                exchange->peerClosed();
            socket->deleteLater();
        });
    }
}

void HttpServer::readHead(QTcpSocket *socket)
{
    // Bytes wait in the socket until the whole head is there.
    const QByteArray buffered = socket->peek(socket->bytesAvailable());
    const HttpRequestParse parse = parseHttpRequest(buffered);
    if (parse.status == HttpRequestParse::Incomplete)
        return;
    if (parse.status == HttpRequestParse::Bad) {
        socket->write(HttpExchange::statusHead(400, parse.error.size(), "text/plain") +
                      parse.error.toUtf8());
        socket->disconnectFromHost();
        return;
    }
    socket->read(parse.headSize);
    auto *exchange = new HttpExchange(parse.request, socket);
    socket->setProperty(kExchangeProperty, QVariant::fromValue(exchange));
    emit requestReceived(parse.request);
    dispatch(*exchange);
    if (socket->bytesAvailable() > 0)
        exchange->feedBody(socket->readAll());
}

void HttpServer::dispatch(HttpExchange &exchange)
{
    for (const Route &route : qAsConst(routes)) {
        if (exchange.request().path.startsWith(route.prefix) && route.handler(exchange))
            return;
    }
    exchange.respond(404, "no such page\n");
}

} // namespace veltor::camsim
