#include "discovery/fleetsearch.h"

#include "discovery/fleetmerge.h"
#include "discovery/protocolconstants.h"
#include "discovery/searchmessages.h"

#include <QEventLoop>
#include <QNetworkDatagram>
#include <QNetworkInterface>
#include <QSet>
#include <QTimer>
#include <QUdpSocket>
#include <QVariant>

namespace veltor {

namespace {

const QHostAddress &hdsGroup()
{
    static const QHostAddress group{QLatin1String(kHdsGroup)};
    return group;
}

// Replies come back to the search ports as broadcasts and multicasts (read on
// the shared sockets bound to any address), or, from cameras that answer the
// sender, to the sockets the searches left from (one pair per interface).
class FleetSearch : public QObject
{
public:
    explicit FleetSearch(const FleetSearchOptions &options);

    FleetSearchResult run();

private:
    struct Sender
    {
        const SearchInterface *interface;
        QUdpSocket *binary;
        QUdpSocket *hds;
    };

    QUdpSocket *openReceiver(quint16 port);
    void openSenders(const SearchInterface &interface);
    QUdpSocket *openSender(const SearchInterface &interface, quint16 port);
    void joinGroup(QUdpSocket *receiver, const SearchInterface &interface);
    void sendRound();
    bool send(QUdpSocket *socket, const QByteArray &data, const QHostAddress &to, quint16 port);
    void drain(QUdpSocket *socket, quint16 port, const SearchInterface *fixed);
    const SearchInterface *receivedBy(const QNetworkDatagram &datagram) const;
    void take(const ReceivedReply &reply);
    void wait(int ms);
    void error(const QString &text);

    FleetSearchOptions options;
    FleetSearchResult result;
    FleetMerge merge;
    QVector<Sender> senders;
};

// Interfaces written by hand (address and mask only) get the system's index,
// which tells on which interface a broadcast or group reply arrived.
FleetSearch::FleetSearch(const FleetSearchOptions &options) : options(options)
{
    for (SearchInterface &interface : this->options.interfaces) {
        const std::optional<SearchInterface> known = interfaceWithAddress(interface.address);
        if (interface.index == 0 && known)
            interface.index = known->index;
    }
}

void FleetSearch::error(const QString &text)
{
    if (!result.errors.contains(text))
        result.errors << text;
}

QUdpSocket *FleetSearch::openReceiver(quint16 port)
{
    auto *socket = new QUdpSocket(this);
    // AnyIPv4, not Any: a dual-stack socket shows sources as ::ffff:a.b.c.d.
    if (!socket->bind(QHostAddress::AnyIPv4, port,
                      QUdpSocket::ShareAddress | QUdpSocket::ReuseAddressHint)) {
        error(QStringLiteral("cannot listen on UDP port %1: %2")
                  .arg(port)
                  .arg(socket->errorString()));
        return nullptr;
    }
    // Thousands of replies to one round wait here while earlier ones are parsed.
    socket->setSocketOption(QAbstractSocket::ReceiveBufferSizeSocketOption, kReceiveBufferBytes);
    connect(socket, &QUdpSocket::readyRead, this, [=] { drain(socket, port, nullptr); });
    return socket;
}

// Bound to the interface's address, so that 255.255.255.255 leaves through
// that interface and no other.
QUdpSocket *FleetSearch::openSender(const SearchInterface &interface, quint16 port)
{
    auto *socket = new QUdpSocket(this);
    if (!socket->bind(interface.address, 0)) {
        error(QStringLiteral("cannot send from %1: %2")
                  .arg(interface.address.toString(), socket->errorString()));
        return nullptr;
    }
    socket->setSocketOption(QAbstractSocket::MulticastLoopbackOption, 0);
    socket->setSocketOption(QAbstractSocket::ReceiveBufferSizeSocketOption, kReceiveBufferBytes);
    // Without its interface a group search would follow the default route,
    // perhaps onto a network the user did not choose.
    socket->setMulticastInterface(QNetworkInterface::interfaceFromIndex(interface.index));
    if (port == kHdsPort &&
        (interface.index <= 0 || socket->multicastInterface().index() != interface.index)) {
        error(QStringLiteral("cannot send HDS/1.0 searches through %1").arg(interface.name));
        return nullptr;
    }
    connect(socket, &QUdpSocket::readyRead, this, [=] { drain(socket, port, &interface); });
    return socket;
}

void FleetSearch::openSenders(const SearchInterface &interface)
{
    QUdpSocket *binary = openSender(interface, kBinarySearchPort);
    QUdpSocket *hds = binary ? openSender(interface, kHdsPort) : nullptr;
    if (hds)
        senders << Sender{&interface, binary, hds};
}

void FleetSearch::joinGroup(QUdpSocket *receiver, const SearchInterface &interface)
{
    const QNetworkInterface link = QNetworkInterface::interfaceFromIndex(interface.index);
    if (!receiver->joinMulticastGroup(hdsGroup(), link))
        error(QStringLiteral("cannot join %1 on %2: Haisi replies there will be missed (%3)")
                  .arg(QLatin1String(kHdsGroup), interface.name, receiver->errorString()));
}

bool FleetSearch::send(QUdpSocket *socket, const QByteArray &data, const QHostAddress &to,
                       quint16 port)
{
    if (socket->writeDatagram(data, to, port) == data.size())
        return true;
    error(QStringLiteral("cannot send from %1 to %2:%3: %4")
              .arg(socket->localAddress().toString(), to.toString())
              .arg(port)
              .arg(socket->errorString()));
    return false;
}

void FleetSearch::sendRound()
{
    static const QByteArray binary = binarySearchDatagram();
    static const QByteArray hds = hdsSearchRequest();
    const QHostAddress everyone{QLatin1String(kBroadcastAddress)};
    for (const Sender &sender : qAsConst(senders)) {
        const QHostAddress directed = sender.interface->broadcast;
        if (!directed.isNull() && directed != everyone)
            result.stats.binarySent += send(sender.binary, binary, directed, kBinarySearchPort);
        result.stats.binarySent += send(sender.binary, binary, everyone, kBinarySearchPort);
        result.stats.hdsSent += send(sender.hds, hds, hdsGroup(), kHdsPort);
    }
}

// Of the searched interfaces with the datagram's interface index, the one
// whose subnet holds the source (an interface may carry several addresses).
const SearchInterface *FleetSearch::receivedBy(const QNetworkDatagram &datagram) const
{
    const SearchInterface *first = nullptr;
    for (const SearchInterface &each : options.interfaces) {
        if (each.index != int(datagram.interfaceIndex()))
            continue;
        if (each.contains(datagram.senderAddress()))
            return &each;
        if (!first)
            first = &each;
    }
    return first;
}

// A batch at a time: under a flood of replies the socket never runs dry, and
// the timer that ends the wait must still get its turn.
void FleetSearch::drain(QUdpSocket *socket, quint16 port, const SearchInterface *fixed)
{
    constexpr int kDatagramsPerTurn = 256;
    for (int turn = 0; turn < kDatagramsPerTurn && socket->hasPendingDatagrams(); ++turn) {
        const QNetworkDatagram datagram = socket->receiveDatagram();
        if (!datagram.isValid())
            break;
        const SearchInterface *interface = fixed ? fixed : receivedBy(datagram);
        if (interface) {
            take(
                ReceivedReply{datagram.data(), port, datagram.senderAddress(), interface->address});
        } else {
            ++result.stats.replies;
            ++result.stats.ignored;
        }
    }
}

void FleetSearch::take(const ReceivedReply &reply)
{
    const FleetMerge::Outcome outcome = merge.add(reply);
    if (outcome != FleetMerge::OwnSearch)
        ++result.stats.replies;
    switch (outcome) {
    case FleetMerge::OwnSearch:
        break;
    case FleetMerge::Duplicate:
        ++result.stats.duplicates;
        break;
    case FleetMerge::Malformed:
        ++result.stats.malformed;
        break;
    case FleetMerge::NewCamera:
        break;
    }
}

void FleetSearch::wait(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

FleetSearchResult FleetSearch::run()
{
    result.stats.interfaces = options.interfaces.size();
    QUdpSocket *binaryReceiver = openReceiver(kBinarySearchPort);
    QUdpSocket *hdsReceiver = openReceiver(kHdsPort);
    QSet<int> joined; // membership is per link, and a link may carry several addresses
    for (const SearchInterface &interface : qAsConst(options.interfaces)) {
        openSenders(interface);
        if (hdsReceiver && !joined.contains(interface.index)) {
            joinGroup(hdsReceiver, interface);
            joined.insert(interface.index);
        }
    }
    if (!binaryReceiver || !hdsReceiver || senders.isEmpty())
        return result;
    for (int round = 0; round < options.rounds; ++round) {
        sendRound();
        wait(options.waitMs);
    }
    drain(binaryReceiver, kBinarySearchPort, nullptr);
    drain(hdsReceiver, kHdsPort, nullptr);
    for (const Sender &sender : qAsConst(senders)) {
        drain(sender.binary, kBinarySearchPort, sender.interface);
        drain(sender.hds, kHdsPort, sender.interface);
    }
    result.cameras = merge.cameras();
    flagFindings(&result.cameras, options.interfaces);
    return result;
}

} // namespace

FleetSearchResult searchFleet(const FleetSearchOptions &options)
{
    return FleetSearch(options).run();
}

} // namespace veltor
