#pragma once

#include <QString>
#include <QUrl>

// How a camera's user name and password are checked over HTTP.
class QNetworkAccessManager;
class QNetworkReply;
class QNetworkRequest;

namespace veltor {

// The CGI that answers 200 for valid credentials and 401 otherwise:
// "/check_user.cgi" for "Winbond", "/param.cgi?cmd=getuserinfo" for "Haisi".
// Any other family gives an empty URL, whose request fails at once.
QUrl credentialCheckUrl(const QString &ip, const QString &port, const QString &family,
                        const QString &user, const QString &password);

// True when parts 0 to 2 of both dotted addresses are the same text: only a
// camera on the PC's own /24 can be asked over HTTP.
// GET for a request judged on its outcome alone: the body is dropped as it
// arrives, so a camera answering with a huge or endless one cannot fill the
// memory.
QNetworkReply *getOutcomeOnly(QNetworkAccessManager *manager, QNetworkRequest request);

bool sameSubnet24(const QString &a, const QString &b);

} // namespace veltor
