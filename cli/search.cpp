#include "cli/search.h"

#include "cli/targets.h"

#include <QTextStream>

namespace veltor::cli {

FleetSearchResult searchAllInterfaces(const QString &command, int rounds, int waitMs, Io io)
{
    FleetSearchOptions options;
    options.interfaces = broadcastInterfaces();
    options.rounds = rounds;
    options.waitMs = waitMs;
    if (options.interfaces.isEmpty()) {
        io.err << "veltor-cli " << command << ": no network interface that can broadcast\n";
        return FleetSearchResult();
    }
    FleetSearchResult result = searchFleet(options);
    for (const QString &error : qAsConst(result.errors))
        io.err << "veltor-cli " << command << ": " << error << '\n';
    io.err.flush();
    return result;
}

const SeenCamera *findByMac(const QVector<SeenCamera> &cameras, const QString &mac)
{
    const QString wanted = normalizedMac(mac);
    for (const SeenCamera &camera : cameras) {
        if (!wanted.isEmpty() && normalizedMac(camera.record.mac) == wanted)
            return &camera;
    }
    return nullptr;
}

} // namespace veltor::cli
