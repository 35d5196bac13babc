#include "camsim/httpexchange.h"

#include <QIODevice>
#include <QTcpSocket>
#include <QTimer>

namespace veltor::camsim {

namespace {

constexpr qint64 kMaxGatheredBody = 64 * 1024 * 1024;

QByteArray reason(int status)
{
    switch (status) {
    case 200:
        return "OK";
    case 400:
        return "Bad Request";
    case 401:
        return "Unauthorized";
    case 403:
        return "Forbidden";
    case 404:
        return "Not Found";
    case 500:
        return "Internal Server Error";
    default:
        return "Status";
    }
}

} // namespace

HttpExchange::HttpExchange(const HttpRequest &request, QTcpSocket *socket)
    : QObject(socket), req(request), sock(socket)
{
    const qint64 expected = req.contentLength();
    // Without a length only a POST or PUT has a body, read up to the peer's close.
    if (expected == 0 || (expected < 0 && req.method != "POST" && req.method != "PUT")) {
        bodyArrived = true;
        bodyComplete = true;
    }
}

QHostAddress HttpExchange::peerAddress() const
{
    return sock->peerAddress();
}

QByteArray HttpExchange::statusHead(int status, qint64 contentLength, const QByteArray &contentType,
                                    const HttpHeaders &extra)
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + ' ' + reason(status) + "\r\n";
    head += "Content-Type: " + contentType + "\r\n";
    if (contentLength >= 0)
        head += "Content-Length: " + QByteArray::number(contentLength) + "\r\n";
    for (const auto &header : extra)
        head += header.first + ": " + header.second + "\r\n";
    return head + "Connection: close\r\n\r\n";
}

void HttpExchange::respond(int status, const QByteArray &body, const QByteArray &contentType,
                           const HttpHeaders &extra)
{
    answered = true;
    sock->write(statusHead(status, body.size(), contentType, extra) + body);
    closeWhenWritten();
}

void HttpExchange::streamDevice(int status, QIODevice *device, const QByteArray &contentType,
                                int chunkSize)
{
    answered = true;
    source = device;
    device->setParent(this);
    chunk = chunkSize;
    sock->write(statusHead(status, device->size(), contentType));
    connect(sock, &QTcpSocket::bytesWritten, this, [this] {
        if (sock->bytesToWrite() == 0)
            sendNextChunk();
    });
}

void HttpExchange::sendNextChunk()
{
    if (!source)
        return;
    const QByteArray piece = source->read(chunk);
    if (piece.isEmpty()) {
        source->deleteLater();
        source = nullptr;
        closeWhenWritten();
        return;
    }
    sock->write(piece);
}

void HttpExchange::drip(int status, const QByteArray &body, int bytesPerTick, int intervalMs,
                        const QByteArray &contentType)
{
    answered = true;
    dripping = statusHead(status, body.size(), contentType) + body;
    auto *timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, [this, timer, bytesPerTick] {
        sock->write(dripping.left(bytesPerTick));
        dripping.remove(0, bytesPerTick);
        if (dripping.isEmpty()) {
            timer->stop();
            closeWhenWritten();
        }
    });
    timer->start(intervalMs);
}

void HttpExchange::closeMidBody(int status, const QByteArray &body, int sentBytes)
{
    answered = true;
    sock->write(statusHead(status, body.size(), "application/octet-stream") + body.left(sentBytes));
    sock->flush();
    closeWhenWritten();
}

void HttpExchange::writeRaw(const QByteArray &bytes)
{
    answered = true;
    sock->write(bytes);
}

void HttpExchange::close()
{
    answered = true;
    closeWhenWritten();
}

void HttpExchange::closeWhenWritten()
{
    if (sock->bytesToWrite() == 0) {
        sock->disconnectFromHost();
        return;
    }
    connect(sock, &QTcpSocket::bytesWritten, this, [this] {
        if (sock->bytesToWrite() == 0 && !source)
            sock->disconnectFromHost();
    });
}

void HttpExchange::readBody(std::function<void(HttpExchange &)> complete)
{
    onComplete = std::move(complete);
    deliverBodyEnd();
}

void HttpExchange::streamBody(std::function<void(const QByteArray &)> piece,
                              std::function<void(bool)> end)
{
    onPiece = std::move(piece);
    onEnd = std::move(end);
    if (!bodyBytes.isEmpty())
        onPiece(bodyBytes); // what came before the handler asked
    bodyBytes.clear();
    deliverBodyEnd();
}

void HttpExchange::feedBody(const QByteArray &bytes)
{
    if (bodyArrived || bytes.isEmpty())
        return;
    const qint64 expected = req.contentLength();
    const QByteArray piece = expected >= 0 ? bytes.left(int(expected - received)) : bytes;
    received += piece.size();
    if (onPiece)
        onPiece(piece);
    else if (bodyBytes.size() + piece.size() <= kMaxGatheredBody)
        bodyBytes += piece;
    if (expected >= 0 && received >= expected) {
        bodyArrived = true;
        bodyComplete = true;
    }
    deliverBodyEnd();
}

void HttpExchange::peerClosed()
{
    if (!bodyArrived) {
        bodyArrived = true;
        bodyComplete = req.contentLength() < 0;
    }
    deliverBodyEnd();
}

void HttpExchange::deliverBodyEnd()
{
    if (!bodyArrived || bodyDelivered || (!onComplete && !onEnd))
        return;
    bodyDelivered = true;
    if (onEnd)
        onEnd(bodyComplete);
    else
        onComplete(*this);
}

} // namespace veltor::camsim
