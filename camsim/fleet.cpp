#include "camsim/fleet.h"

#include "camsim/discoveryresponder.h"
#include "camsim/features.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QSaveFile>
#include <sys/resource.h>

namespace veltor::camsim {

Fleet::Fleet(const FleetOptions &options, QObject *parent)
    : QObject(parent), options(options), searches(new DiscoveryResponder(this))
{
    connect(searches, &DiscoveryResponder::searchReceived, this, &Fleet::searchArrived);
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
        connect(camera, &SimCamera::replySent, this, &Fleet::replyLeft);
        const QHostAddress address(options.bindEachIp ? setting.ip : options.listenAddress);
        if (!camera->startHttp(address, 0, error) ||
            !camera->openReplySockets(options.bindEachIp, error))
            return false;
        if (options.bindEachIp)
            own.insert(address);
        searches->addCamera(camera);
    }
    searches->ignoreSenders(own);
    return searches->start(options.everyLink, error);
}

void Fleet::installFleetRoute(SimCamera &camera)
{
    camera.http().route(QStringLiteral("/camsim/fleet"), [this](HttpExchange &exchange) {
        exchange.respond(200, describe(false).toJson(), "application/json");
        return true;
    });
}

void Fleet::searchArrived()
{
    constexpr qint64 kRoundGapMs = 500;
    ++searchesSeen;
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (rounds.isEmpty() || now - rounds.last().firstSearchMs > kRoundGapMs)
        rounds.append(Round{now, 0, 0});
}

void Fleet::replyLeft(qint64 at)
{
    ++repliesSent;
    if (rounds.isEmpty())
        rounds.append(Round{at, 0, 0});
    rounds.last().lastReplyMs = at;
    ++rounds.last().replies;
}

QJsonDocument Fleet::describe(bool withLogs) const
{
    QJsonArray cameras;
    for (const SimCamera *camera : members)
        cameras.append(camera->toJson(withLogs));
    QJsonArray roundList;
    for (const Round &round : rounds)
        roundList.append(QJsonObject{{QStringLiteral("firstSearchMs"), round.firstSearchMs},
                                     {QStringLiteral("lastReplyMs"), round.lastReplyMs},
                                     {QStringLiteral("replies"), round.replies}});
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return QJsonDocument(QJsonObject{{QStringLiteral("cameras"), cameras},
                                     {QStringLiteral("searchesSeen"), searchesSeen},
                                     {QStringLiteral("repliesSent"), repliesSent},
                                     {QStringLiteral("rounds"), roundList},
                                     {QStringLiteral("peakRssKb"), qint64(usage.ru_maxrss)}});
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
