#include "camsim/discoveryresponder.h"

#include "camsim/searchreplies.h"
#include "discovery/protocolconstants.h"

#include <QNetworkInterface>
#include <QUdpSocket>

namespace veltor::camsim {

DiscoveryResponder::DiscoveryResponder(QObject *parent) : QObject(parent) {}

QUdpSocket *DiscoveryResponder::openShared(quint16 port, QString *error)
{
    auto *socket = new QUdpSocket(this);
    // AnyIPv4, not Any: a dual-stack socket shows senders as ::ffff:a.b.c.d.
    if (!socket->bind(QHostAddress::AnyIPv4, port,
                      QUdpSocket::ShareAddress | QUdpSocket::ReuseAddressHint)) {
        *error = QStringLiteral("UDP port %1: %2").arg(port).arg(socket->errorString());
        return nullptr;
    }
    connect(socket, &QUdpSocket::readyRead, this, [this, socket, port] {
        drainDatagrams(socket, port, [this](const SimDatagram &d) { dispatch(d); });
    });
    return socket;
}

bool DiscoveryResponder::joinGroup(QUdpSocket *socket, bool everyLink)
{
    const QHostAddress group{QLatin1String(kHdsGroup)};
    bool joined = socket->joinMulticastGroup(group);
    if (!everyLink)
        return joined;
    const auto links = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface &link : links) {
        const auto flags = link.flags();
        // The default link is joined already; joining it again fails harmlessly.
        if (flags.testFlag(QNetworkInterface::IsUp) &&
            flags.testFlag(QNetworkInterface::CanMulticast) &&
            !flags.testFlag(QNetworkInterface::IsLoopBack))
            joined = socket->joinMulticastGroup(group, link) || joined;
    }
    return joined;
}

bool DiscoveryResponder::start(bool everyLink, QString *error)
{
    QUdpSocket *binary = openShared(kBinarySearchPort, error);
    QUdpSocket *hds = binary ? openShared(kHdsPort, error) : nullptr;
    if (!hds)
        return false;
    // Without a multicast route (no network at all) only the binary search is
    // answered; that is worth a warning, not a refusal to start.
    if (!joinGroup(hds, everyLink))
        qWarning("veltor-camsim: cannot join %s (%s): Haisi cameras will not hear searches",
                 kHdsGroup, qPrintable(hds->errorString()));
    return true;
}

void DiscoveryResponder::addCamera(SimCamera *camera)
{
    cameras.append(camera);
}

void DiscoveryResponder::dispatch(const SimDatagram &datagram)
{
    if (ownAddresses.contains(datagram.sender))
        return;
    Family protocol;
    if (datagram.localPort == kBinarySearchPort && isBinarySearch(datagram.data))
        protocol = Family::Winbond;
    else if (datagram.localPort == kHdsPort && isHdsSearch(datagram.data))
        protocol = Family::Haisi;
    else {
        for (SimCamera *camera : qAsConst(cameras)) {
            if (camera->handleDatagram(datagram))
                return;
        }
        emit unhandledDatagram(datagram);
        return;
    }
    emit searchReceived(protocol);
    for (SimCamera *camera : qAsConst(cameras))
        camera->answerSearch(protocol, datagram);
}

} // namespace veltor::camsim
