#include "discovery/heardcameras.h"

#include "discovery/fleetmerge.h"

#include <QSet>

namespace veltor {

void HeardCameras::add(const SeenCamera &camera)
{
    const QString &mac = camera.record.mac;
    if (byMac.contains(mac))
        return;
    byMac.insert(mac, camera);
    macsByIp[camera.record.ip] << mac;
    fresh << mac;
}

void HeardCameras::clear()
{
    byMac.clear();
    macsByIp.clear();
    fresh.clear();
    flaggedOn.clear();
}

QVector<SeenCamera> HeardCameras::listed(const QStringList &rowMacs) const
{
    QVector<SeenCamera> cameras;
    cameras.reserve(rowMacs.size());
    for (const QString &mac : rowMacs) {
        const auto found = byMac.constFind(mac);
        if (found != byMac.constEnd())
            cameras << *found;
    }
    return cameras;
}

// The cameras of `macs` and every camera claiming one of their IPs.
QVector<SeenCamera> HeardCameras::affectedBy(const QStringList &macs) const
{
    QSet<QString> ips;
    QVector<SeenCamera> cameras;
    for (const QString &mac : macs) {
        const QString ip = byMac.value(mac).record.ip;
        if (ips.contains(ip))
            continue;
        ips.insert(ip);
        for (const QString &sharing : macsByIp.value(ip))
            cameras << byMac.value(sharing);
    }
    return cameras;
}

QVector<SeenCamera> HeardCameras::reflag(const SearchInterface &interface)
{
    QVector<SeenCamera> cameras = affectedBy(interface.address == flaggedOn ? fresh : byMac.keys());
    fresh.clear();
    flaggedOn = interface.address;
    for (SeenCamera &camera : cameras) {
        camera.interfaceAddress = interface.address;
        camera.receivedOn = {interface.address};
    }
    flagFindings(&cameras, {interface});
    QVector<SeenCamera> changed;
    for (const SeenCamera &now : qAsConst(cameras)) {
        SeenCamera &kept = byMac[now.record.mac];
        // A marker's tooltip names the interface's subnet: redone when it changed.
        if (kept.findings != now.findings ||
            (!kept.findings.isEmpty() && kept.interfaceAddress != now.interfaceAddress))
            changed << now;
        kept.interfaceAddress = now.interfaceAddress;
        kept.receivedOn = now.receivedOn;
        kept.findings = now.findings;
    }
    return changed;
}

} // namespace veltor
