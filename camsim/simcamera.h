#pragma once

#include "camsim/camerasettings.h"
#include "camsim/httpserver.h"

#include <QHostAddress>
#include <QJsonObject>
#include <QList>
#include <QObject>
#include <functional>

class QUdpSocket;

namespace veltor::camsim {

// One datagram as a camera received it.
struct SimDatagram
{
    QByteArray data;
    QHostAddress sender;
    quint16 senderPort = 0;
    quint16 localPort = 0; // 10000 or 8002
};

// Reads every pending datagram of `socket` (bound to `localPort`) and hands
// each to `take`.
void drainDatagrams(QUdpSocket *socket, quint16 localPort,
                    const std::function<void(const SimDatagram &)> &take);

// Returns true when the datagram was meant for this camera and was handled.
using DatagramHandler = std::function<bool(const SimDatagram &)>;

struct CameraLogEntry
{
    qint64 msecsSinceEpoch = 0;
    QString kind; // "http", "search", "datagram", or a feature's own word
    QString text;
};

// One simulated camera: its settings, its web server and its log. Features add
// HTTP routes and datagram handlers to it (see camsim/features.h).
class SimCamera : public QObject
{
    Q_OBJECT

public:
    explicit SimCamera(const CameraSettings &settings, QObject *parent = nullptr);

    CameraSettings &settings() { return config; }
    const CameraSettings &settings() const { return config; }
    HttpServer &http() { return *server; }

    // Listens for HTTP on `address` and the camera's port (or `port` when not 0).
    bool startHttp(const QHostAddress &address, quint16 port, QString *error);
    // Sockets the replies leave from: the camera's own address and the search
    // port when `ownAddress`, else whatever the system picks.
    bool openReplySockets(bool ownAddress, QString *error);

    bool answers(Family protocol) const;
    // Searches go unanswered for `ms`, as while the camera restarts.
    void restartFor(int ms);
    // Sends this camera's reply to a search received through `protocol`.
    void answerSearch(Family protocol, const SimDatagram &search);

    void addDatagramHandler(DatagramHandler handler);
    bool handleDatagram(const SimDatagram &datagram);

    void log(const QString &kind, const QString &text);
    const QList<CameraLogEntry> &logEntries() const { return entries; }
    QJsonObject toJson(bool withLog) const;

signals:
    void logged(const veltor::camsim::CameraLogEntry &entry);
    void replySent(qint64 msecsSinceEpoch);

private:
    void sendReply(Family protocol, const QHostAddress &to, quint16 port);
    QUdpSocket *openSocket(quint16 port, bool ownAddress, QString *error);

    CameraSettings config;
    HttpServer *server;
    QUdpSocket *winbondSocket = nullptr;
    QUdpSocket *hdsSocket = nullptr;
    QList<DatagramHandler> datagramHandlers;
    QList<CameraLogEntry> entries;
    qint64 silentUntil = 0; // msecs since the epoch
};

} // namespace veltor::camsim

Q_DECLARE_METATYPE(veltor::camsim::SimDatagram)
