#include "camsim/fleet.h"

#include "camsim/discoveryresponder.h"
#include "camsim/features.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QSaveFile>

namespace veltor::camsim {

Fleet::Fleet(const FleetOptions &options, QObject *parent)
    : QObject(parent), options(options), searches(new DiscoveryResponder(this))
{
    connect(searches, &DiscoveryResponder::searchReceived, this, [this] { ++searchesSeen; });
}

bool Fleet::start(QString *error)
{
    QVector<CameraSettings> settings;
    if (!makeCameraSettings(options, &settings, error))
        return false;
    QSet<QHostAddress> own;
    for (const CameraSettings &setting : qAsConst(settings)) {
        auto *camera = new SimCamera(setting, this);
        members.append(camera);
        installFeatures(*camera);
        installFleetRoute(*camera);
        connect(camera, &SimCamera::replySent, this, [this](qint64 at) {
            ++repliesSent;
            lastReplyMs = at;
        });
        const QHostAddress address(options.bindEachIp ? setting.ip : options.listenAddress);
        if (!camera->startHttp(address, 0, error) ||
            !camera->openReplySockets(options.bindEachIp, error))
            return false;
        if (options.bindEachIp)
            own.insert(address);
        searches->addCamera(camera);
    }
    searches->ignoreSenders(own);
    return searches->start(error);
}

void Fleet::installFleetRoute(SimCamera &camera)
{
    camera.http().route(QStringLiteral("/camsim/fleet"), [this](HttpExchange &exchange) {
        exchange.respond(200, describe(false).toJson(), "application/json");
        return true;
    });
}

QJsonDocument Fleet::describe(bool withLogs) const
{
    QJsonArray cameras;
    for (const SimCamera *camera : members)
        cameras.append(camera->toJson(withLogs));
    return QJsonDocument(QJsonObject{{QStringLiteral("cameras"), cameras},
                                     {QStringLiteral("searchesSeen"), searchesSeen},
                                     {QStringLiteral("repliesSent"), repliesSent},
                                     {QStringLiteral("lastReplyMs"), lastReplyMs}});
}

bool Fleet::writeStatusFile(const QString &path, QString *error) const
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(describe(false).toJson()) < 0 ||
        !file.commit()) {
        *error = QStringLiteral("%1: %2").arg(path, file.errorString());
        return false;
    }
    return true;
}

} // namespace veltor::camsim
