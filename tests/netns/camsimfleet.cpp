#include "camsimfleet.h"

#include <QEventLoop>
#include <QFile>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>

namespace camsimfleet {

QVector<Camera> load(QString *why)
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

QJsonObject fetchJson(const Camera &camera, const QString &path, int timeoutMs)
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

QJsonArray sdCardControl(const Camera &camera, const QString &query)
{
    return fetchJson(camera, "/camsim/sdcard?" + query)["files"].toArray();
}

QMap<QString, QByteArray> sdCardHashes(const Camera &camera, const QString &prefix)
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
