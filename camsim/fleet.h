#pragma once

#include "camsim/fleetoptions.h"
#include "camsim/simcamera.h"

#include <QJsonDocument>
#include <QObject>
#include <QVector>

namespace veltor::camsim {

class DiscoveryResponder;

// All cameras of one simulator process and the responder they share.
class Fleet : public QObject
{
    Q_OBJECT

public:
    explicit Fleet(const FleetOptions &options, QObject *parent = nullptr);

    // Makes the cameras, installs every feature, opens every socket.
    bool start(QString *error);

    const QVector<SimCamera *> &cameras() const { return members; }
    DiscoveryResponder &responder() { return *searches; }
    // {"cameras": [...], "searchesSeen": n, "repliesSent": n, "rounds": [...], "peakRssKb": n}
    QJsonDocument describe(bool withLogs) const;
    bool writeStatusFile(const QString &path, QString *error) const;

private:
    void installFleetRoute(SimCamera &camera);

    FleetOptions options;
    DiscoveryResponder *searches;
    QVector<SimCamera *> members;
    // Searches arriving within a short time form one round (both protocols).
    struct Round
    {
        qint64 firstSearchMs = 0;
        qint64 lastReplyMs = 0;
        qint64 replies = 0;
    };
    void searchArrived();
    void replyLeft(qint64 at);

    qint64 repliesSent = 0;
    qint64 searchesSeen = 0;
    QVector<Round> rounds;
};

} // namespace veltor::camsim
