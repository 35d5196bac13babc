#pragma once

#include "camsim/httpexchange.h"

#include <QHostAddress>
#include <QObject>
#include <QVector>
#include <functional>

class QTcpServer;
class QTcpSocket;

namespace veltor::camsim {

// Answers one request, or returns false to let the next route try: several
// features share a path ("/param.cgi?cmd=...") and each takes its own commands.
using RouteHandler = std::function<bool(HttpExchange &)>;

// A camera's small web server: one request per connection, routes chosen by
// path prefix (longest first, then in the order registered); 404 when no
// route takes the request.
class HttpServer : public QObject
{
    Q_OBJECT

public:
    explicit HttpServer(QObject *parent = nullptr);

    bool listen(const QHostAddress &address, quint16 port);
    // Stops accepting, so that a camera given a new address or port can listen again.
    void close();
    QHostAddress serverAddress() const;
    quint16 serverPort() const;
    QString errorString() const;

    void route(const QString &pathPrefix, RouteHandler handler);

signals:
    // Every request head, before its route runs.
    void requestReceived(const veltor::camsim::HttpRequest &request);

private:
    struct Route
    {
        QString prefix;
        RouteHandler handler;
    };

    void accept();
    void readHead(QTcpSocket *socket);
    void dispatch(HttpExchange &exchange);

    QTcpServer *server;
    QVector<Route> routes; // longest prefix first
};

} // namespace veltor::camsim
