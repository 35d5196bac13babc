#include "camsimfleet.h"

#include <QEventLoop>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>

namespace camsimfleet {

namespace {

// The fleet file's keys are the field names.
Camera fromJson(const QJsonObject &json)
{
    Camera c;
    c.index = json.value("index").toInt();
    c.httpPort = json.value("httpPort").toInt();
    c.dhcp = json.value("dhcp").toBool();
    c.bothProtocols = json.value("bothProtocols").toBool();
    c.malformed = json.value("malformed").toBool();
#define TEXT(name) std::make_pair(#name, &c.name)
    for (const auto &[key, field] :
         {TEXT(family), TEXT(name), TEXT(mac), TEXT(ip), TEXT(mask), TEXT(gateway), TEXT(dns),
          TEXT(firmwareVersion), TEXT(webVersion), TEXT(deviceId), TEXT(user), TEXT(password),
          TEXT(claimedIp)})
        *field = json.value(QLatin1String(key)).toString();
#undef TEXT
    return c;
}

} // namespace

QVector<Camera> load(QString *why)
{
    const QString path = qEnvironmentVariable("VELTOR_CAMSIM_STATUS");
    if (path.isEmpty()) {
        *why =
            QStringLiteral("not run under tests/netns/with-cameras.sh (no VELTOR_CAMSIM_STATUS)");
        return {};
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *why = QStringLiteral("cannot read the fleet file %1: %2").arg(path, file.errorString());
        return {};
    }
    QVector<Camera> cameras;
    for (const QJsonValue &value : QJsonDocument::fromJson(file.readAll())["cameras"].toArray())
        cameras.append(fromJson(value.toObject()));
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
    return fetchJson(camera, QStringLiteral("/camsim/sdcard?") + query)
        .value(QStringLiteral("files"))
        .toArray();
}

QMap<QString, QByteArray> sdCardHashes(const Camera &camera, const QString &prefix)
{
    QMap<QString, QByteArray> hashes;
    for (const QJsonValue &file : sdCardControl(camera, QStringLiteral("hashes=1"))) {
        const QString path = file[QLatin1String("path")].toString();
        if (path.startsWith(prefix))
            hashes.insert(path.mid(prefix.size()),
                          file[QLatin1String("sha256")].toString().toLatin1());
    }
    return hashes;
}

} // namespace camsimfleet
