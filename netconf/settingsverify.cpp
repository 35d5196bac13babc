#include "netconf/settingsverify.h"

#include "discovery/hdsreply.h"
#include "discovery/protocolconstants.h"
#include "discovery/winbondreply.h"

#include <optional>

namespace veltor {

NetworkSettings expectedSettings(const NetworkSettings &sent, const QString &family)
{
    NetworkSettings expected = sent;
    if (family == QLatin1String(kHaisiFamily) && !sent.dhcp)
        expected.gateway = adjustGateway(sent.ip, sent.gateway);
    return expected;
}

QStringList settingsDifferences(const DeviceRecord &seen, const NetworkSettings &expected)
{
    QStringList differences;
    const auto compare = [&](const char *what, const QString &now, const QString &wanted) {
        if (now != wanted)
            differences << QStringLiteral("%1 %2 (wanted %3)")
                               .arg(QLatin1String(what), now.isEmpty() ? QStringLiteral("-") : now,
                                    wanted);
    };
    compare("dhcp", seen.dhcp, expected.dhcp ? QStringLiteral("on") : QStringLiteral("off"));
    if (!expected.dhcp) {
        compare("ip", seen.ip, expected.ip);
        compare("mask", seen.subnet, expected.subnet);
        compare("gateway", seen.gateway, expected.gateway);
        compare("dns", seen.dns, expected.dns);
    }
    if (!expected.port.isEmpty())
        compare("port", seen.port, expected.port);
    return differences;
}

ChangeWatch::ChangeWatch(const QString &mac, const QString &family, const NetworkSettings &expected)
    : mac(mac), family(family), expected(expected)
{
}

bool ChangeWatch::look(const QStringList &winbondReplies, const QStringList &hdsReplies)
{
    const bool winbond = family == QLatin1String(kWinbondFamily);
    const QStringList &replies = ownReplies(winbondReplies, hdsReplies);
    if (replies.size() < read)
        read = 0;
    for (; read < replies.size() && !seenAsWanted; ++read) {
        const std::optional<DeviceRecord> record =
            winbond ? winbondRecordFromHex(replies.at(read)) : hdsRecordFromText(replies.at(read));
        if (record && record->mac == mac)
            judge(*record);
    }
    return seenAsWanted;
}

void ChangeWatch::skipStored(const QStringList &winbondReplies, const QStringList &hdsReplies)
{
    read = ownReplies(winbondReplies, hdsReplies).size();
}

const QStringList &ChangeWatch::ownReplies(const QStringList &winbondReplies,
                                           const QStringList &hdsReplies) const
{
    return family == QLatin1String(kWinbondFamily) ? winbondReplies : hdsReplies;
}

void ChangeWatch::judge(const DeviceRecord &record)
{
    seenAtAll = true;
    lastDifferences = settingsDifferences(record, expected);
    seenAsWanted = lastDifferences.isEmpty();
}

} // namespace veltor
