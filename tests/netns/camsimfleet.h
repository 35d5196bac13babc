#pragma once

#include <QEventLoop>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkReply>
#include <QString>
#include <QVector>

// The fleet that with-cameras.sh started, as tests in the tool's namespace see it.
namespace camsimfleet {

// family is "Winbond" or "Haisi"; claimedIp what its replies claim, when not its own address.
struct Camera
{
    int index = 0, httpPort = 0;
    bool dhcp = false, bothProtocols = false, malformed = false;
    QString family, name, mac, ip, mask, gateway, dns, firmwareVersion, webVersion, deviceId, user,
        password, claimedIp;
};

// Reads $VELTOR_CAMSIM_STATUS; empty, with `why` set, outside the harness.
inline QVector<Camera> load(QString *why)
{
    const QString path = qEnvironmentVariable("VELTOR_CAMSIM_STATUS");
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly)) {
        *why = path.isEmpty() ? "not run under tests/netns/with-cameras.sh" : file.errorString();
        return {};
    }
    QVector<Camera> cameras;
    for (const QJsonValue &value : QJsonDocument::fromJson(file.readAll())["cameras"].toArray()) {
        const QJsonObject json = value.toObject();
        Camera c;
        c.index = json["index"].toInt();
        c.httpPort = json["httpPort"].toInt();
        c.dhcp = json["dhcp"].toBool();
        c.bothProtocols = json["bothProtocols"].toBool();
        c.malformed = json["malformed"].toBool();
        // The fleet file's keys are the field names.
#define TEXT(name) std::make_pair(#name, &c.name)
        for (const auto &[key, field] :
             {TEXT(family), TEXT(name), TEXT(mac), TEXT(ip), TEXT(mask), TEXT(gateway), TEXT(dns),
              TEXT(firmwareVersion), TEXT(webVersion), TEXT(deviceId), TEXT(user), TEXT(password),
              TEXT(claimedIp)})
            *field = json[QLatin1String(key)].toString();
#undef TEXT
        cameras.append(c);
    }
    if (cameras.isEmpty())
        *why = QStringLiteral("the fleet file %1 lists no cameras").arg(path);
    return cameras;
}
// GET http://ip:port/<path> of one camera, parsed as JSON; empty on failure.
inline QJsonObject fetchJson(const Camera &camera, const QString &path, int timeoutMs = 5000)
{
    QNetworkAccessManager manager;
    QNetworkRequest request(
        QUrl(QStringLiteral("http://%1:%2%3").arg(camera.ip).arg(camera.httpPort).arg(path)));
    request.setTransferTimeout(timeoutMs);
    QNetworkReply *reply = manager.get(request);
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    reply->deleteLater();
    return QJsonDocument::fromJson(reply->readAll()).object();
}
// The simulated SD card of a Haisi camera through "/camsim/sdcard?" + query
// (reset=1, cut=PATH, fail=PATH ...): its files after the change.
inline QJsonArray sdCardControl(const Camera &camera, const QString &query)
{
    return fetchJson(camera, "/camsim/sdcard?" + query)["files"].toArray();
}
// SHA-256 (hex) of every file on that card below `prefix`, by the path after it.
inline QMap<QString, QByteArray> sdCardHashes(const Camera &camera, const QString &prefix)
{
    QMap<QString, QByteArray> hashes;
    for (const QJsonValue &file : sdCardControl(camera, QStringLiteral("hashes=1"))) {
        const QString path = file["path"].toString();
        if (path.startsWith(prefix))
            hashes.insert(path.mid(prefix.size()), file["sha256"].toString().toLatin1());
    }
    return hashes;
}

} // namespace camsimfleet

// In a test function or initTestCase(): fills `cameras` or skips with the reason.
#define CAMSIM_FLEET_OR_SKIP(cameras)                                                              \
    do {                                                                                           \
        QString why_;                                                                              \
        if ((cameras = camsimfleet::load(&why_)).isEmpty())                                        \
            QSKIP(qPrintable(why_));                                                               \
    } while (false)
