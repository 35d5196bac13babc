#include "uploadsink.h"

#include <QTcpSocket>

UploadSink::UploadSink(QObject *parent) : QObject(parent)
{
    connect(&server, &QTcpServer::newConnection, this, &UploadSink::accept);
}

bool UploadSink::listen()
{
    return server.listen(QHostAddress::LocalHost, 0);
}

QList<UploadSink::Connection> UploadSink::uploads() const
{
    QList<Connection> posts;
    for (const Connection &c : connections) {
        if (c.received.startsWith("POST "))
            posts << c;
    }
    return posts;
}

void UploadSink::accept()
{
    while (QTcpSocket *socket = server.nextPendingConnection()) {
        const int index = connections.size();
        connections << Connection();
        connect(socket, &QTcpSocket::readyRead, this,
                [this, socket, index] { read(socket, index); });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket, index] {
            read(socket, index);
            connections[index].closed = true;
            socket->deleteLater();
        });
    }
}

void UploadSink::read(QTcpSocket *socket, int index)
{
    Connection &c = connections[index];
    if (socket->isOpen())
        c.received += socket->readAll();
    if (c.received.startsWith("GET ") && c.received.contains("\r\n\r\n")) {
        const QByteArray body =
            "var sdstatus=\"Ready\";var sdtotalspace=\"1024\";var sdfreespace=\"512\";";
        socket->write("HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\nContent-Length: " +
                      QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body);
        socket->disconnectFromHost();
    } else if (hangUpAfter > 0 && c.received.size() >= hangUpAfter && !c.closed) {
        c.closed = true;
        socket->abort();
        socket->deleteLater();
    }
}
