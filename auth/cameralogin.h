#pragma once

#include <QMultiMap>
#include <QString>
#include <QStringList>

namespace veltor {

// The credentials a camera accepted, with the HTTP port and family the
// credential dialog was opened for.
struct CameraLogin
{
    QString user;
    QString password;
    QString port;
    QString family;
};

// Files the dialog's list [user, password, port, family] under the camera's
// address, one value after the other, so the multi-map reads them back newest
// first as family, port, password, user. Earlier logins stay behind them.
void storeLogin(QMultiMap<QString, QString> *store, const QString &ip,
                const QStringList &userPasswordPortFamily);

// The newest login filed for `ip`; empty fields when there is none.
CameraLogin newestLogin(const QMultiMap<QString, QString> &store, const QString &ip);

} // namespace veltor
