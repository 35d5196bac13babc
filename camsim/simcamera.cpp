#include "camsim/simcamera.h"

#include "camsim/searchreplies.h"
#include "discovery/protocolconstants.h"

#include <QDateTime>
#include <QJsonArray>
#include <QTimer>
#include <QUdpSocket>

namespace veltor::camsim {

void drainDatagrams(QUdpSocket *socket, quint16 localPort,
                    const std::function<void(const SimDatagram &)> &take)
{
    while (socket->hasPendingDatagrams()) {
        SimDatagram datagram;
        datagram.data.resize(int(socket->pendingDatagramSize()));
        socket->readDatagram(datagram.data.data(), datagram.data.size(), &datagram.sender,
                             &datagram.senderPort);
        datagram.localPort = localPort;
        take(datagram);
    }
}

namespace {

constexpr int kMaxLogEntries = 500;

quint16 searchPort(Family protocol)
{
    return protocol == Family::Winbond ? kBinarySearchPort : kHdsPort;
}

QHostAddress groupOrBroadcast(Family protocol)
{
    return QHostAddress(QLatin1String(protocol == Family::Winbond ? kBroadcastAddress : kHdsGroup));
}

} // namespace

SimCamera::SimCamera(const CameraSettings &settings, QObject *parent)
    : QObject(parent), config(settings), server(new HttpServer(this))
{
    connect(server, &HttpServer::requestReceived, this, [this](const HttpRequest &request) {
        log(QStringLiteral("http"), QString::fromLatin1(request.method + ' ' + request.target));
    });
}

bool SimCamera::startHttp(const QHostAddress &address, quint16 port, QString *error)
{
    if (server->listen(address, port ? port : config.httpPort)) {
        // Port 0 asks for a free one; the camera then answers and checks as on it.
        if (!config.httpPort)
            config.httpPort = server->serverPort();
        return true;
    }
    *error = QStringLiteral("camera %1: HTTP on %2:%3: %4")
                 .arg(config.name, address.toString())
                 .arg(port ? port : config.httpPort)
                 .arg(server->errorString());
    return false;
}

QUdpSocket *SimCamera::openSocket(quint16 port, bool ownAddress, QString *error)
{
    auto *socket = new QUdpSocket(this);
    const bool hostOnly = config.behaviour.hostOnly;
    // A loopback source address cannot be sent to a group on another interface.
    const bool own = ownAddress && !(hostOnly && port == kHdsPort);
    const bool bound = own ? socket->bind(QHostAddress(config.ip), port,
                                          QUdpSocket::ShareAddress | QUdpSocket::ReuseAddressHint)
                           : socket->bind(QHostAddress(QHostAddress::AnyIPv4), 0);
    if (!bound) {
        *error = QStringLiteral("camera %1: UDP on %2:%3: %4")
                     .arg(config.name, own ? config.ip : QStringLiteral("any address"))
                     .arg(own ? port : 0)
                     .arg(socket->errorString());
        return nullptr;
    }
    // Group replies normally must not loop back into our own responder; host
    // only, they must loop back (to the tool) and go no further (TTL 0).
    socket->setSocketOption(QAbstractSocket::MulticastLoopbackOption, hostOnly ? 1 : 0);
    socket->setSocketOption(QAbstractSocket::MulticastTtlOption, hostOnly ? 0 : 1);
    // Unicast datagrams to the camera's own address land here.
    connect(socket, &QUdpSocket::readyRead, this, [this, socket, port] {
        drainDatagrams(socket, port, [this](const SimDatagram &d) { handleDatagram(d); });
    });
    return socket;
}

bool SimCamera::openReplySockets(bool ownAddress, QString *error)
{
    if (answers(Family::Winbond) &&
        !(winbondSocket = openSocket(kBinarySearchPort, ownAddress, error)))
        return false;
    if (answers(Family::Haisi) && !(hdsSocket = openSocket(kHdsPort, ownAddress, error)))
        return false;
    return true;
}

bool SimCamera::answers(Family protocol) const
{
    return config.family == protocol || config.behaviour.bothProtocols;
}

void SimCamera::restartFor(int ms)
{
    silentUntil = QDateTime::currentMSecsSinceEpoch() + ms;
}

void SimCamera::answerSearch(Family protocol, const SimDatagram &search)
{
    if (!answers(protocol) || QDateTime::currentMSecsSinceEpoch() < silentUntil)
        return;
    const ReplyBehaviour &how = config.behaviour;
    QHostAddress to = groupOrBroadcast(protocol);
    quint16 port = searchPort(protocol);
    if (how.hostOnly && protocol == Family::Winbond) {
        // Loopback's broadcast reaches every socket on the port, the tool's
        // dual-stack receiver too; a unicast would go to one socket only.
        to = QHostAddress(QStringLiteral("127.255.255.255"));
    } else if (how.unicast) {
        to = search.sender;
        port = search.senderPort;
    }
    log(QStringLiteral("search"), QStringLiteral("%1 search from %2:%3")
                                      .arg(familyName(protocol), search.sender.toString())
                                      .arg(search.senderPort));
    for (int copy = 0; copy < how.repeat; ++copy) {
        const int delay = how.delayMs + copy * how.repeatIntervalMs;
        QTimer::singleShot(delay, this,
                           [this, protocol, to, port] { sendReply(protocol, to, port); });
    }
}

void SimCamera::sendReply(Family protocol, const QHostAddress &to, quint16 port)
{
    QUdpSocket *socket = protocol == Family::Winbond ? winbondSocket : hdsSocket;
    if (!socket)
        return;
    if (config.behaviour.claimedIp.isEmpty()) {
        socket->writeDatagram(searchReply(config, protocol), to, port);
    } else {
        CameraSettings claimed = config;
        claimed.ip = config.behaviour.claimedIp;
        socket->writeDatagram(searchReply(claimed, protocol), to, port);
    }
    emit replySent(QDateTime::currentMSecsSinceEpoch());
}

void SimCamera::addDatagramHandler(DatagramHandler handler)
{
    datagramHandlers.append(std::move(handler));
}

bool SimCamera::handleDatagram(const SimDatagram &datagram)
{
    for (const DatagramHandler &handler : qAsConst(datagramHandlers)) {
        if (handler(datagram)) {
            log(QStringLiteral("datagram"), QStringLiteral("%1 bytes from %2 to port %3")
                                                .arg(datagram.data.size())
                                                .arg(datagram.sender.toString())
                                                .arg(datagram.localPort));
            return true;
        }
    }
    return false;
}

void SimCamera::log(const QString &kind, const QString &text)
{
    const CameraLogEntry entry{QDateTime::currentMSecsSinceEpoch(), kind, text};
    if (entries.size() >= kMaxLogEntries)
        entries.removeFirst();
    entries.append(entry);
    emit logged(entry);
}

QJsonObject SimCamera::toJson(bool withLog) const
{
    QJsonObject json{
        {QStringLiteral("index"), config.index},
        {QStringLiteral("family"), familyName(config.family)},
        {QStringLiteral("name"), config.name},
        {QStringLiteral("mac"), config.mac},
        {QStringLiteral("ip"), config.ip},
        {QStringLiteral("mask"), config.mask},
        {QStringLiteral("gateway"), config.gateway},
        {QStringLiteral("dns"), config.dns},
        {QStringLiteral("httpPort"),
         int(server->serverPort() ? server->serverPort() : config.httpPort)},
        {QStringLiteral("dhcp"), config.dhcp},
        {QStringLiteral("firmwareVersion"), config.firmwareVersion},
        {QStringLiteral("webVersion"), config.webVersion},
        {QStringLiteral("deviceId"), config.deviceId},
        {QStringLiteral("user"), config.user},
        {QStringLiteral("password"), config.password},
        {QStringLiteral("bothProtocols"), config.behaviour.bothProtocols},
        {QStringLiteral("malformed"), config.behaviour.malformed != Malformed::None},
        {QStringLiteral("claimedIp"), config.behaviour.claimedIp},
    };
    if (withLog) {
        QJsonArray log;
        for (const CameraLogEntry &entry : entries)
            log.append(QJsonObject{{QStringLiteral("ms"), entry.msecsSinceEpoch},
                                   {QStringLiteral("kind"), entry.kind},
                                   {QStringLiteral("text"), entry.text}});
        json.insert(QStringLiteral("log"), log);
    }
    return json;
}

} // namespace veltor::camsim
