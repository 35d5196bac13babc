#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QString>

class QTcpServer;
class QTcpSocket;

// A camera's CGI in miniature, on a free loopback port: records each request
// line and its decoded query, and answers with a fixed status or never.
class LoopbackHttpServer : public QObject
{
    Q_OBJECT

public:
    explicit LoopbackHttpServer(QObject *parent = nullptr);

    bool start();
    quint16 port() const;

    int status = 200;        // 0: keep the connection open and never answer
    qint64 bodyBytes = 0;    // garbage after the headers, written as the client takes it
    QList<QByteArray> paths; // request targets as sent
    QHash<QString, QString> lastQuery;

private:
    void readRequest(QTcpSocket *socket);
    void streamBody(QTcpSocket *socket);

    QTcpServer *server;
};
