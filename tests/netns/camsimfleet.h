#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QVector>

// The fleet that with-cameras.sh started, as tests in the tool's namespace see it.
namespace camsimfleet {

struct Camera
{
    int index = 0;
    QString family; // "Winbond" or "Haisi"
    QString name, mac, ip, mask, gateway, dns;
    int httpPort = 0;
    bool dhcp = false;
    QString firmwareVersion, webVersion, deviceId, user, password;
    bool bothProtocols = false;
    bool malformed = false;
    QString claimedIp; // what its replies claim, when not its own address
};

// Reads $VELTOR_CAMSIM_STATUS; empty, with `why` set, outside the harness.
QVector<Camera> load(QString *why);

// GET http://ip:port/<path> of one camera, parsed as JSON; empty on failure.
QJsonObject fetchJson(const Camera &camera, const QString &path, int timeoutMs = 5000);

// The simulated SD card of a Haisi camera through "/camsim/sdcard?" + query
// (reset=1, cut=PATH, fail=PATH ...): its files after the change.
QJsonArray sdCardControl(const Camera &camera, const QString &query);

// SHA-256 (hex) of every file on that card below `prefix`, by the path after it.
QMap<QString, QByteArray> sdCardHashes(const Camera &camera, const QString &prefix);

} // namespace camsimfleet

// In a test function or initTestCase(): fills `cameras` or skips with the reason.
#define CAMSIM_FLEET_OR_SKIP(cameras)                                                              \
    do {                                                                                           \
        QString why_;                                                                              \
        if ((cameras = camsimfleet::load(&why_)).isEmpty())                                        \
            QSKIP(qPrintable(why_));                                                               \
    } while (false)
