#include "discovery/searchsummary.h"

#include "discovery/protocolconstants.h"

namespace veltor {

FleetSummary summarizeFleet(const QVector<SeenCamera> &cameras)
{
    FleetSummary summary;
    for (const SeenCamera &camera : cameras) {
        ++(camera.family == QLatin1String(kWinbondFamily) ? summary.winbond : summary.haisi);
        summary.needAttention += camera.findings.isEmpty() ? 0 : 1;
    }
    return summary;
}

int prefixLength(const QHostAddress &netmask)
{
    return netmask.isNull() ? 32 : qPopulationCount(netmask.toIPv4Address());
}

QString interfaceText(const SearchInterface &interface)
{
    return interface.name % QLatin1Char(' ') % interface.address.toString() % QLatin1Char('/') %
           QString::number(prefixLength(interface.netmask));
}

} // namespace veltor
