#include "auth/credentialcheck.h"

#include "auth/cameraurl.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QStringList>

namespace veltor {

QUrl credentialCheckUrl(const QString &ip, const QString &port, const QString &family,
                        const QString &user, const QString &password)
{
    const QString pwdKey = QStringLiteral("&pwd=");
    if (family == QLatin1String("Winbond"))
        return cameraUrl(ip, port, QStringLiteral("/check_user.cgi?user="), user, pwdKey, password);
    if (family == QLatin1String("Haisi"))
        return cameraUrl(ip, port, QStringLiteral("/param.cgi?cmd=getuserinfo&usr="), user, pwdKey,
                         password);
    return QUrl();
}

bool sameSubnet24(const QString &a, const QString &b)
{
    const QStringList left = a.split(QLatin1Char('.'));
    const QStringList right = b.split(QLatin1Char('.'));
    for (int i = 0; i < 3; ++i) {
        if (left.value(i) != right.value(i))
            return false;
    }
    return true;
}

QNetworkReply *getOutcomeOnly(QNetworkAccessManager *manager, QNetworkRequest request)
{
    // A redirect is an answer like any other: Qt 6 would follow it by default, Qt 5 does not.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    QNetworkReply *reply = manager->get(request);
    QObject::connect(reply, &QIODevice::readyRead, reply,
                     [reply] { reply->skip(reply->bytesAvailable()); });
    return reply;
}

} // namespace veltor
