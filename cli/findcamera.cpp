#include "cli/findcamera.h"

#include "cli/targets.h"

#include <QTextStream>

namespace veltor::cli {

std::optional<SeenCamera> findCamera(const QString &target, int waitMs, const QString &command,
                                     Io io)
{
    FleetSearchOptions options;
    options.interfaces = broadcastInterfaces();
    options.waitMs = waitMs;
    if (options.interfaces.isEmpty()) {
        io.err << "veltor-cli " << command << ": no network interface that can broadcast\n";
        return std::nullopt;
    }
    const FleetSearchResult result = searchFleet(options);
    QStringList missing;
    const QVector<SeenCamera> chosen = selectTargets(result.cameras, {target}, &missing);
    if (!chosen.isEmpty()) {
        // E.g. other-subnet: the requests that follow may fail for that reason.
        const SeenCamera &camera = chosen.first();
        if (!camera.findings.isEmpty())
            io.err << "veltor-cli " << command << ": note: " << camera.record.ip << ": "
                   << camera.findings.join(QLatin1String(", ")) << '\n';
        return camera;
    }
    for (const QString &error : result.errors)
        io.err << "veltor-cli " << command << ": " << error << '\n';
    io.err << "veltor-cli " << command << ": no camera answered as " << target << '\n';
    return std::nullopt;
}

} // namespace veltor::cli
