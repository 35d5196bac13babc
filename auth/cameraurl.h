#pragma once

#include <QString>
#include <QUrl>

namespace veltor {

// The address of a camera CGI: "http://" ip ":" port, then `pathAndQuery` as
// given (for example "/param.cgi?cmd=getserverinfo&usr=" or "/sd/?&usr="),
// then the user name, `passwordKey` (such as "&pwd=") and the password.
// User name and password are percent-encoded so that "&", "#", "+", "%",
// blanks and non-ASCII characters reach the camera intact.
QUrl cameraUrl(const QString &ip, const QString &port, const QString &pathAndQuery,
               const QString &user, const QString &passwordKey, const QString &password);

} // namespace veltor
