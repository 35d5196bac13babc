#include "fakecamera.h"

#include <QTcpSocket>
#include <QUrl>

namespace {
const char kPending[] = "pendingRequest";
}

FakeCamera::FakeCamera(Handler handler, QObject *parent)
    : QTcpServer(parent), handler(std::move(handler))
{
    connect(this, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = nextPendingConnection()) {
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { answer(socket); });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
}

bool FakeCamera::start()
{
    return listen(QHostAddress::LocalHost, 0);
}

void FakeCamera::answer(QTcpSocket *socket)
{
    QByteArray buffer = socket->property(kPending).toByteArray() + socket->readAll();
    for (int end = buffer.indexOf("\r\n\r\n"); end >= 0; end = buffer.indexOf("\r\n\r\n")) {
        const QByteArray target = buffer.left(end).split(' ').value(1);
        buffer.remove(0, end + 4);
        const QString pathAndQuery = QUrl::fromPercentEncoding(target);
        requests << pathAndQuery;
        const Answer answer = handler(pathAndQuery);
        if (answer.silent)
            continue;
        const QByteArray head =
            "HTTP/1.1 " + QByteArray::number(answer.status) +
            " Answer\r\nContent-Length: " + QByteArray::number(answer.body.size()) + "\r\n\r\n";
        if (answer.cutAfter >= 0) {
            socket->write(head + answer.body.left(answer.cutAfter));
            socket->disconnectFromHost();
            return;
        }
        socket->write(head + answer.body);
    }
    socket->setProperty(kPending, buffer);
}
