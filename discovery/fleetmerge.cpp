#include "discovery/fleetmerge.h"

#include "discovery/hdsreply.h"
#include "discovery/protocolconstants.h"
#include "discovery/searchmessages.h"
#include "discovery/winbondreply.h"
#include "netconf/validators.h"

#include <algorithm>

namespace veltor {

namespace {

// A MAC in either case and with ":" or "-" is the same camera. A reply
// without one cannot be merged with anything but its own repeats.
QString mergeKey(const ReceivedReply &reply, const DeviceRecord &record)
{
    if (record.mac.isEmpty())
        return QLatin1Char('|') + reply.source.toString() + QLatin1Char('|') + record.ip;
    return record.mac.toUpper().replace(QLatin1Char('-'), QLatin1Char(':'));
}

bool isOwnSearch(const ReceivedReply &reply)
{
    static const QByteArray binary = binarySearchDatagram();
    static const QByteArray hds = hdsSearchRequest();
    return reply.data == (reply.port == kBinarySearchPort ? binary : hds);
}

std::optional<SeenCamera> parse(const ReceivedReply &reply)
{
    const bool winbond = reply.port == kBinarySearchPort;
    std::optional<DeviceRecord> record =
        winbond ? parseWinbondReply(reply.data) : parseHdsReply(reply.data);
    if (!record)
        return std::nullopt;
    if (record->name.isEmpty())
        record->name = QStringLiteral("Unnamed"); // as the window shows it, untranslated
    const QString family = QLatin1String(winbond ? kWinbondFamily : kHaisiFamily);
    return SeenCamera{*record, family, reply.interfaceAddress, reply.source, {}, {}};
}

std::optional<SearchInterface> findInterface(const QVector<SearchInterface> &interfaces,
                                             const QHostAddress &address)
{
    for (const SearchInterface &each : interfaces) {
        if (each.address == address)
            return each;
    }
    return std::nullopt;
}

bool reachableFrom(const SeenCamera &camera, const QHostAddress &interfaceAddress,
                   const QVector<SearchInterface> &interfaces)
{
    const std::optional<SearchInterface> found = findInterface(interfaces, interfaceAddress);
    return found && found->contains(QHostAddress(camera.record.ip));
}

// Moves the first receiving interface whose subnet holds the camera to the front.
bool preferReachableInterface(SeenCamera &camera, const QVector<SearchInterface> &interfaces)
{
    QVector<QHostAddress> &list = camera.receivedOn;
    const auto reachable = std::find_if(list.begin(), list.end(), [&](const QHostAddress &address) {
        return reachableFrom(camera, address, interfaces);
    });
    if (reachable == list.end())
        return false;
    std::rotate(list.begin(), reachable, reachable + 1);
    camera.interfaceAddress = list.first();
    return true;
}

} // namespace

FleetMerge::Outcome FleetMerge::add(const ReceivedReply &reply)
{
    if (isOwnSearch(reply))
        return OwnSearch;
    std::optional<SeenCamera> camera = parse(reply);
    if (!camera)
        return Malformed;
    const QString key = mergeKey(reply, camera->record);
    const auto known = byKey.constFind(key);
    if (known == byKey.constEnd()) {
        camera->receivedOn = {reply.interfaceAddress};
        byKey.insert(key, seen.size());
        seen.append(*camera);
        return NewCamera;
    }
    QVector<QHostAddress> &receivedOn = seen[*known].receivedOn;
    if (!receivedOn.contains(reply.interfaceAddress))
        receivedOn.append(reply.interfaceAddress);
    return Duplicate;
}

QVector<SeenCamera> FleetMerge::cameras() const
{
    QVector<SeenCamera> ordered(seen.crbegin(), seen.crend());
    std::stable_sort(ordered.begin(), ordered.end(), [](const SeenCamera &a, const SeenCamera &b) {
        return ipToKey(a.record.ip) < ipToKey(b.record.ip);
    });
    return ordered;
}

void flagFindings(QVector<SeenCamera> *cameras, const QVector<SearchInterface> &interfaces)
{
    QHash<QString, QSet<QString>> macsByIp;
    for (const SeenCamera &camera : qAsConst(*cameras))
        macsByIp[camera.record.ip].insert(camera.record.mac.toUpper());
    for (SeenCamera &camera : *cameras) {
        camera.findings.clear();
        if (!camera.record.ip.isEmpty() && macsByIp.value(camera.record.ip).size() > 1)
            camera.findings << QLatin1String(kFindingIpConflict);
        if (!preferReachableInterface(camera, interfaces))
            camera.findings << QLatin1String(kFindingOtherSubnet);
        if (QHostAddress(camera.record.ip) != camera.source)
            camera.findings << QLatin1String(kFindingSourceDiffers);
    }
}

} // namespace veltor
