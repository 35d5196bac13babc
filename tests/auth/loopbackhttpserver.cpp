#include "loopbackhttpserver.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <memory>

namespace {

// As a CGI web server decodes a query: "+" is a blank, escapes are UTF-8.
QHash<QString, QString> decodeQuery(const QByteArray &query)
{
    QHash<QString, QString> items;
    for (const QByteArray &pair : query.split('&')) {
        const int eq = pair.indexOf('=');
        const auto decode = [](QByteArray text) {
            return QString::fromUtf8(QByteArray::fromPercentEncoding(text.replace('+', ' ')));
        };
        items.insert(decode(pair.left(eq)), eq < 0 ? QString() : decode(pair.mid(eq + 1)));
    }
    return items;
}

} // namespace

LoopbackHttpServer::LoopbackHttpServer(QObject *parent)
    : QObject(parent), server(new QTcpServer(this))
{
    connect(server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = server->nextPendingConnection()) {
            socket->setParent(this);
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { readRequest(socket); });
        }
    });
}

bool LoopbackHttpServer::start()
{
    return server->listen(QHostAddress::LocalHost, 0);
}

quint16 LoopbackHttpServer::port() const
{
    return server->serverPort();
}

void LoopbackHttpServer::readRequest(QTcpSocket *socket)
{
    if (!socket->canReadLine())
        return;
    const QList<QByteArray> requestLine = socket->readLine().trimmed().split(' ');
    socket->readAll();
    const QByteArray target = requestLine.value(1);
    paths << target;
    const int mark = target.indexOf('?');
    lastQuery = decodeQuery(mark < 0 ? QByteArray() : target.mid(mark + 1));
    if (status == 0)
        return;
    const QByteArray reason = status == 200 ? "OK" : "Unauthorized";
    socket->write("HTTP/1.1 " + QByteArray::number(status) + ' ' + reason + "\r\nContent-Length: " +
                  QByteArray::number(bodyBytes) + "\r\nConnection: close\r\n\r\n");
    streamBody(socket);
}

void LoopbackHttpServer::streamBody(QTcpSocket *socket)
{
    static constexpr qint64 kPiece = 1024 * 1024;
    const auto left = std::make_shared<qint64>(bodyBytes);
    const auto more = [socket, left] {
        while (*left > 0 && socket->bytesToWrite() < kPiece) {
            const qint64 piece = qMin(*left, kPiece);
            socket->write(QByteArray(int(piece), 'x'));
            *left -= piece;
        }
        if (*left == 0)
            socket->disconnectFromHost();
    };
    connect(socket, &QTcpSocket::bytesWritten, socket, more);
    more();
}
