#include "auth/cameraurl.h"

namespace veltor {

QUrl cameraUrl(const QString &ip, const QString &port, const QString &pathAndQuery,
               const QString &user, const QString &passwordKey, const QString &password)
{
    const QByteArray encoded = "http://" + ip.toUtf8() + ':' + port.toUtf8() +
                               QUrl::toPercentEncoding(pathAndQuery, "/?&=:;.,-_~!$'()*+") +
                               QUrl::toPercentEncoding(user) + passwordKey.toUtf8() +
                               QUrl::toPercentEncoding(password);
    return QUrl::fromEncoded(encoded, QUrl::StrictMode);
}

} // namespace veltor
