// "/camsim/status": the camera's settings and what it has received, as JSON,
// for tests that run in the tool's network namespace.
#include "camsim/features.h"
#include "camsim/simcamera.h"

#include <QJsonDocument>

namespace veltor::camsim {

static void installStatus(SimCamera &camera)
{
    camera.http().route(QStringLiteral("/camsim/status"), [&camera](HttpExchange &exchange) {
        exchange.respond(200, QJsonDocument(camera.toJson(true)).toJson(), "application/json");
        return true;
    });
}

VELTOR_CAMSIM_FEATURE(status, installStatus);

} // namespace veltor::camsim
