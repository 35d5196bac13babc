#include "cli/discoverreport.h"

#include "discovery/searchsummary.h"

#include <QTextStream>

namespace veltor::cli {

void reportInterfaces(QTextStream &err, const QVector<SearchInterface> &interfaces)
{
    err << "Interfaces probed:";
    for (const SearchInterface &each : interfaces) {
        err << ' ' << interfaceText(each);
        if (!each.broadcast.isNull())
            err << " (broadcast " << each.broadcast.toString() << ')';
        if (&each != &interfaces.last())
            err << ',';
    }
    err << '\n';
    err.flush();
}

void reportSearch(QTextStream &err, const FleetSearchResult &result)
{
    for (const QString &error : result.errors)
        err << "veltor-cli discover: " << error << '\n';
    const SearchStats &stats = result.stats;
    err << "Searches sent: binary (UDP 10000): " << stats.binarySent
        << "; HDS/1.0 (239.255.250.150:8002): " << stats.hdsSent << '\n'
        << "Replies received: " << stats.replies << "; cameras: " << result.cameras.size()
        << "; duplicates merged: " << stats.duplicates
        << "; malformed dropped: " << stats.malformed;
    if (stats.ignored > 0)
        err << "; on interfaces not searched, ignored: " << stats.ignored;
    err << '\n';
    if (result.cameras.isEmpty()) {
        err << "No camera answered. Usual causes:\n"
               "  - a firewall dropping UDP ports 10000 or 8002 (the replies come back as\n"
               "    broadcasts and multicasts, which stateful firewalls do not match to the "
               "search);\n"
               "  - the wrong interface: list them with \"ip -4 addr\" and pick one with "
               "--interface;\n"
               "  - cameras on another subnet behind a router: searches do not cross routers.\n";
    }
    err.flush();
}

} // namespace veltor::cli
