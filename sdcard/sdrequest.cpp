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
    // As in Qt 5: a redirect is the answer, not a road to another one (Qt 6 follows by default).
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    QNetworkReply *reply = manager->get(request);
    if (maxBytes > 0) {
        // Qt reports progress at most every 100 ms, so a quick answer may be
        // in whole before the first report: an announced length is judged as
        // soon as the headers are in, an unannounced one is held back at the
        // limit until a report sees it.
        reply->setReadBufferSize(maxBytes + 1);
        const auto refuseLong = [reply, maxBytes](qint64 received, qint64 total) {
            if (received > maxBytes || total > maxBytes) {
                reply->setProperty(kSdTooLongProperty, true);
                reply->abort();
            }
        };
        QObject::connect(reply, &QNetworkReply::metaDataChanged, reply, [reply, refuseLong] {
            const QVariant length = reply->header(QNetworkRequest::ContentLengthHeader);
            refuseLong(0, length.isValid() ? length.toLongLong() : -1);
        });
        QObject::connect(reply, &QNetworkReply::downloadProgress, reply, refuseLong);
    }
    return reply;
}

} // namespace veltor
