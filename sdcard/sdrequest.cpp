#include "sdcard/sdrequest.h"

#include "auth/cameraurl.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

namespace veltor {

QUrl SdCamera::statusUrl() const
{
    return cameraUrl(ip, port, QStringLiteral("/param.cgi?cmd=getserverinfo&usr="), user,
                     QStringLiteral("&pwd="), password);
}

QUrl SdCamera::formatUrl() const
{
    return cameraUrl(ip, port, QStringLiteral("/param.cgi?cmd=sdfrmt&usr="), user,
                     QStringLiteral("&pwd="), password);
}

QUrl SdCamera::sdUrl(const QString &path) const
{
    return cameraUrl(ip, port, QLatin1String("/sd/") + path + QLatin1String("?&usr="), user,
                     QStringLiteral("&pwd="), password);
}

QNetworkReply *sdGet(QNetworkAccessManager *manager, const QUrl &url, int timeoutMs,
                     qint64 maxBytes)
{
    QNetworkRequest request(url);
    request.setTransferTimeout(timeoutMs);
    QNetworkReply *reply = manager->get(request);
    if (maxBytes > 0) {
        // Held back beyond the limit, so that a long answer cannot arrive whole
        // before the check below sees it and is then taken as complete.
        reply->setReadBufferSize(maxBytes + 1);
        QObject::connect(reply, &QNetworkReply::downloadProgress, reply,
                         [reply, maxBytes](qint64 received, qint64) {
                             if (received > maxBytes) {
                                 reply->setProperty(kSdTooLongProperty, true);
                                 reply->abort();
                             }
                         });
    }
    return reply;
}

} // namespace veltor
