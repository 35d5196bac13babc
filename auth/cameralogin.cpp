#include "auth/cameralogin.h"

namespace veltor {

void storeLogin(QMultiMap<QString, QString> *store, const QString &ip,
                const QStringList &userPasswordPortFamily)
{
    for (int i = 0; i < 4; ++i)
        store->insert(ip, userPasswordPortFamily.value(i));
}

CameraLogin newestLogin(const QMultiMap<QString, QString> &store, const QString &ip)
{
    const QStringList newestFirst = store.values(ip);
    return CameraLogin{newestFirst.value(3), newestFirst.value(2), newestFirst.value(1),
                       newestFirst.value(0)};
}

} // namespace veltor
