#include "camsim/networkchanger.h"

#include "camsim/simcamera.h"

#include <QNetworkInterface>
#include <QProcess>
#include <QTimer>

namespace veltor::camsim {

namespace {

constexpr int kDefaultApplyDelayMs = 1500;

int applyDelayMs()
{
    bool ok = false;
    const int ms = qEnvironmentVariableIntValue("VELTOR_CAMSIM_APPLY_DELAY_MS", &ok);
    return ok && ms >= 0 ? ms : kDefaultApplyDelayMs;
}

// A camera moving to an address its namespace does not have yet takes it on
// the interface of its old one, as a camera on a LAN would. Failing that, the
// bind below fails and the camera stays where it was.
void ensureLocal(const QHostAddress &wanted, const QHostAddress &old)
{
    if (QNetworkInterface::allAddresses().contains(wanted))
        return;
    for (const QNetworkInterface &iface : QNetworkInterface::allInterfaces()) {
        for (const QNetworkAddressEntry &entry : iface.addressEntries()) {
            if (entry.ip() != old)
                continue;
            QProcess::execute(QStringLiteral("ip"), {QStringLiteral("addr"), QStringLiteral("add"),
                                                     wanted.toString() % QLatin1Char('/') %
                                                         QString::number(entry.prefixLength()),
                                                     QStringLiteral("dev"), iface.name()});
            return;
        }
    }
}

} // namespace

NetworkChanger::NetworkChanger(SimCamera &camera)
    : QObject(&camera), camera(camera), restart(new QTimer(this))
{
    restart->setSingleShot(true);
    connect(restart, &QTimer::timeout, this, &NetworkChanger::apply);
}

NetworkChanger *NetworkChanger::of(SimCamera &camera)
{
    if (auto *changer = camera.findChild<NetworkChanger *>(QString(), Qt::FindDirectChildrenOnly))
        return changer;
    return new NetworkChanger(camera);
}

void NetworkChanger::setAddresses(const NetworkSettings &settings)
{
    addresses = settings;
}

void NetworkChanger::setPort(quint16 newPort)
{
    if (newPort)
        port = newPort;
}

void NetworkChanger::restartSoon()
{
    if (camera.settings().apply == ApplyMode::Instantly)
        restartNow();
    else
        restart->start(applyDelayMs());
}

void NetworkChanger::restartNow()
{
    restart->stop();
    apply();
}

void NetworkChanger::apply()
{
    CameraSettings &config = camera.settings();
    const QString oldIp = config.ip;
    if (addresses) {
        config.dhcp = addresses->dhcp;
        // Under DHCP the camera keeps the address it has: there is no DHCP server here.
        if (!addresses->dhcp) {
            config.ip = addresses->ip;
            config.mask = addresses->subnet;
            config.gateway = addresses->gateway;
            config.dns = addresses->dns;
        }
    }
    if (port)
        config.httpPort = port;
    addresses.reset();
    port = 0;
    camera.log(QStringLiteral("config"),
               QStringLiteral("now %1 mask %2 gateway %3 dns %4 port %5 dhcp %6")
                   .arg(config.ip, config.mask, config.gateway, config.dns)
                   .arg(config.httpPort)
                   .arg(config.dhcp ? QStringLiteral("on") : QStringLiteral("off")));
    rebindHttp(oldIp);
}

bool NetworkChanger::rebindHttp(const QString &oldIp)
{
    HttpServer &http = camera.http();
    const QHostAddress was = http.serverAddress();
    const quint16 wasPort = http.serverPort();
    // With an address per camera the web server follows the camera's address;
    // cameras sharing one address only change port.
    const bool ownAddress = was == QHostAddress(oldIp);
    const QHostAddress address = ownAddress ? QHostAddress(camera.settings().ip) : was;
    const quint16 newPort = camera.settings().httpPort;
    if (address == was && newPort == wasPort)
        return true;
    if (address.isNull()) {
        camera.log(QStringLiteral("config"), QStringLiteral("not an address, web server stays"));
        return false;
    }
    if (ownAddress)
        ensureLocal(address, was);
    http.close();
    QString error;
    if (camera.startHttp(address, newPort, &error))
        return true;
    camera.log(QStringLiteral("config"), error);
    camera.startHttp(was, wasPort, &error);
    return false;
}

} // namespace veltor::camsim
