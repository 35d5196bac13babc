#pragma once

#include <QByteArray>
#include <QStringList>
#include <QTcpServer>
#include <functional>

// A camera's HTTP CGI on a free loopback port, answering from a handler.
class FakeCamera : public QTcpServer
{
    Q_OBJECT

public:
    struct Answer
    {
        int status = 200;
        QByteArray body;
        int cutAfter = -1;   // close after this many body bytes (Content-Length stays full)
        bool silent = false; // read the request, never answer
    };
    using Handler = std::function<Answer(const QString &pathAndQuery)>;

    explicit FakeCamera(Handler handler, QObject *parent = nullptr);
    bool start();
    QString port() const { return QString::number(serverPort()); }
    QStringList requests; // decoded path and query of every request, in order

private:
    void answer(QTcpSocket *socket);

    Handler handler;
};
