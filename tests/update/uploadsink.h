#pragma once

#include <QByteArray>
#include <QList>
#include <QTcpServer>

class QTcpSocket;

// A camera stand-in on a free loopback port: keeps every byte of each
// connection, answers an HTTP GET (the SD card status the tab asks for) with
// a mounted card, and can hang up on an upload after a number of bytes.
class UploadSink : public QObject
{
    Q_OBJECT

public:
    struct Connection
    {
        QByteArray received;
        bool closed = false;
    };

    explicit UploadSink(QObject *parent = nullptr);
    bool listen();
    quint16 port() const { return server.serverPort(); }
    // Hang up (reset) an upload once this many bytes have come; 0: never.
    void setHangUpAfter(qint64 bytes) { hangUpAfter = bytes; }
    // The connections that began with "POST ", in order of arrival.
    QList<Connection> uploads() const;

private:
    void accept();
    void read(QTcpSocket *socket, int index);

    QList<Connection> connections;
    qint64 hangUpAfter = 0;
    // Last, so its sockets go while the records they report into still exist.
    QTcpServer server;
};
