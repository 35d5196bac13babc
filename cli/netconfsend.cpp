#include "cli/netconfsend.h"

#include "discovery/protocolconstants.h"

#include <QNetworkInterface>
#include <QUdpSocket>

namespace veltor::cli {

namespace {

QString orCurrent(const QString &given, const QString &current)
{
    return given.isEmpty() ? current : given;
}

// Bound to the interface's address, so the broadcast and the group datagram
// leave where the camera answered, not wherever the default route points.
QString sendFrom(const QHostAddress &interfaceAddress, const QList<QByteArray> &datagrams,
                 const QHostAddress &to, quint16 port)
{
    QUdpSocket socket;
    if (!socket.bind(interfaceAddress, 0))
        return QStringLiteral("cannot send from %1: %2")
            .arg(interfaceAddress.toString(), socket.errorString());
    for (const QNetworkInterface &iface : QNetworkInterface::allInterfaces()) {
        for (const QNetworkAddressEntry &entry : iface.addressEntries()) {
            if (entry.ip() == interfaceAddress)
                socket.setMulticastInterface(iface);
        }
    }
    for (const QByteArray &datagram : datagrams) {
        if (socket.writeDatagram(datagram, to, port) != datagram.size())
            return QStringLiteral("cannot send to %1:%2: %3")
                .arg(to.toString())
                .arg(port)
                .arg(socket.errorString());
    }
    return QString();
}

} // namespace

bool addressGiven(const SettingsChange &change)
{
    return !change.ip.isEmpty() || !change.subnet.isEmpty() || !change.gateway.isEmpty() ||
           !change.dns.isEmpty();
}

NetworkSettings settingsFor(const DeviceRecord &current, const SettingsChange &change)
{
    NetworkSettings settings;
    // Without an address the camera keeps its DHCP flag, as the window's box would.
    settings.dhcp = change.dhcp || (!addressGiven(change) && current.dhcp == QLatin1String("on"));
    settings.ip = orCurrent(change.ip, current.ip);
    settings.subnet = orCurrent(change.subnet, current.subnet);
    settings.gateway = orCurrent(change.gateway, current.gateway);
    settings.dns = orCurrent(change.dns, current.dns);
    settings.port = orCurrent(change.port, current.port);
    return settings;
}

QString sendSettings(const SeenCamera &camera, const Credentials &credentials,
                     const NetworkSettings &settings, quint32 *cseq)
{
    const QString &mac = camera.record.mac;
    if (camera.family == QLatin1String(kWinbondFamily)) {
        const QByteArray datagram =
            winbondConfigDatagram(mac, credentials.user, credentials.password, settings);
        return sendFrom(camera.interfaceAddress, {datagram},
                        QHostAddress(QLatin1String(kBroadcastAddress)), kBinarySearchPort);
    }
    if (camera.family != QLatin1String(kHaisiFamily))
        return QStringLiteral("the camera's family \"%1\" takes no settings").arg(camera.family);
    const auto request = [&](const QByteArray &body) {
        return hdsCmdRequest((*cseq)++, credentials.user, credentials.password,
                             camera.record.deviceId, body);
    };
    QList<QByteArray> datagrams{request(netconfBody(settings, mac))};
    if (!settings.port.isEmpty())
        datagrams << request(httpPortBody(settings.port));
    return sendFrom(camera.interfaceAddress, datagrams, QHostAddress(QLatin1String(kHdsGroup)),
                    kHdsPort);
}

} // namespace veltor::cli
