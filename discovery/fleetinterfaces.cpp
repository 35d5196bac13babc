#include "discovery/fleetsearch.h"

#include <QNetworkInterface>

namespace veltor {

namespace {

template <typename Keep> QVector<SearchInterface> ipv4Interfaces(Keep keep)
{
    QVector<SearchInterface> found;
    const auto all = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface &interface : all) {
        if (!interface.flags().testFlag(QNetworkInterface::IsUp))
            continue;
        for (const QNetworkAddressEntry &entry : interface.addressEntries()) {
            if (entry.ip().protocol() != QAbstractSocket::IPv4Protocol)
                continue;
            const SearchInterface candidate{interface.name(), entry.ip(), entry.netmask(),
                                            entry.broadcast(), interface.index()};
            if (keep(interface, candidate))
                found << candidate;
        }
    }
    return found;
}

} // namespace

bool SearchInterface::contains(const QHostAddress &host) const
{
    if (host.protocol() != QAbstractSocket::IPv4Protocol)
        return false;
    const quint32 mask = netmask.isNull() ? ~0u : netmask.toIPv4Address();
    return (host.toIPv4Address() & mask) == (address.toIPv4Address() & mask);
}

QVector<SearchInterface> broadcastInterfaces()
{
    return ipv4Interfaces([](const QNetworkInterface &interface, const SearchInterface &candidate) {
        const auto flags = interface.flags();
        return flags.testFlag(QNetworkInterface::CanBroadcast) &&
               !flags.testFlag(QNetworkInterface::IsLoopBack) && !candidate.broadcast.isNull();
    });
}

std::optional<SearchInterface> interfaceWithAddress(const QHostAddress &address)
{
    const QVector<SearchInterface> found =
        ipv4Interfaces([&](const QNetworkInterface &, const SearchInterface &candidate) {
            return candidate.address == address;
        });
    if (found.isEmpty())
        return std::nullopt;
    return found.first();
}

} // namespace veltor
