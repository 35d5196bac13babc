#pragma once

#include "camsim/httprequest.h"

#include <QHostAddress>
#include <QObject>
#include <functional>

class QIODevice;
class QTcpSocket;
class QTimer;

namespace veltor::camsim {

using HttpHeaders = QList<QPair<QByteArray, QByteArray>>;

// One request on one connection, from its head to the end of the answer. A
// route handler gets it as soon as the head is in; the body follows through
// readBody() or streamBody(). Every answer ends with "Connection: close".
// Lives as a child of its socket and goes with it.
class HttpExchange : public QObject
{
    Q_OBJECT

public:
    HttpExchange(const HttpRequest &request, QTcpSocket *socket);

    const HttpRequest &request() const { return req; }
    QTcpSocket *socket() const { return sock; }
    QHostAddress peerAddress() const;

    // Whole answers.
    void respond(int status, const QByteArray &body, const QByteArray &contentType = "text/plain",
                 const HttpHeaders &extra = {});
    // Sends `device` (taken over) in chunks, each one only after the socket
    // has written the last, so memory stays bounded whatever the size.
    void streamDevice(int status, QIODevice *device, const QByteArray &contentType,
                      int chunkSize = 16 * 1024);
    // Sends the answer `bytesPerTick` bytes every `intervalMs`.
    void drip(int status, const QByteArray &body, int bytesPerTick, int intervalMs,
              const QByteArray &contentType = "text/plain");
    // Announces the whole body, sends `sentBytes` of it and drops the connection.
    void closeMidBody(int status, const QByteArray &body, int sentBytes);
    // Keeps the connection open and never answers.
    void neverAnswer() { answered = true; }
    // Anything at all; the connection closes after close().
    void writeRaw(const QByteArray &bytes);
    void close();

    // The body. readBody() gathers it (Content-Length, else up to the peer's
    // close) and calls `complete` once; streamBody() hands over each piece as it
    // arrives and calls `end` with whether all announced bytes came.
    void readBody(std::function<void(HttpExchange &)> complete);
    void streamBody(std::function<void(const QByteArray &)> piece, std::function<void(bool)> end);
    const QByteArray &body() const { return bodyBytes; }
    qint64 bodyBytesReceived() const { return received; }
    bool isAnswered() const { return answered; }

    // Fed by the connection.
    void feedBody(const QByteArray &bytes);
    void peerClosed();

    static QByteArray statusHead(int status, qint64 contentLength, const QByteArray &contentType,
                                 const HttpHeaders &extra = {});

private:
    void sendNextChunk();
    void deliverBodyEnd();
    void closeWhenWritten();

    HttpRequest req;
    QTcpSocket *sock;
    bool answered = false;
    bool bodyArrived = false;   // all announced bytes in, or the peer closed
    bool bodyComplete = false;  // and nothing was missing
    bool bodyDelivered = false; // the handler has been told
    qint64 received = 0;
    QByteArray bodyBytes;
    std::function<void(HttpExchange &)> onComplete;
    std::function<void(const QByteArray &)> onPiece;
    std::function<void(bool)> onEnd;
    QIODevice *source = nullptr;
    int chunk = 0;
    QByteArray dripping;
};

} // namespace veltor::camsim
