#include "cli/findcamera.h"

#include "cli/search.h"
#include "cli/targets.h"

#include <QTextStream>

namespace veltor::cli {

std::optional<SeenCamera> findCamera(const QString &target, int waitMs, const QString &command,
                                     Io io)
{
    const FleetSearchResult result =
        searchAllInterfaces(command, FleetSearchOptions().rounds, waitMs, io);
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
    io.err << "veltor-cli " << command << ": no camera answered as " << target << '\n';
    return std::nullopt;
}

} // namespace veltor::cli
