#pragma once

#include "cli/password.h"
#include "discovery/fleetsearch.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>

// The camera's own check of user name and password, asked before anything is
// changed, as the window's credential dialog does.
namespace veltor::cli {

enum class LoginVerdict {
    Accepted,
    Refused,
    TimedOut,    // the change goes ahead unchecked, as in the window
    CannotCheck, // not on the /24 of the interface that saw it: not asked
};

// Asks one camera; `finished` follows exactly once. Several may run at once.
class LoginCheck : public QObject
{
    Q_OBJECT

public:
    explicit LoginCheck(QObject *parent = nullptr);
    void start(const SeenCamera &camera, const Credentials &credentials);

signals:
    void finished(veltor::cli::LoginVerdict verdict);

private:
    QNetworkAccessManager manager;
};

// Waits for the verdict in a local event loop.
LoginVerdict checkLogin(const SeenCamera &camera, const Credentials &credentials);

// GETs `url` (a camera CGI) and waits; the reply's error code only.
QNetworkReply::NetworkError getFromCamera(const QUrl &url);

// The window's words for the verdict, with what the user needs to know beside
// them; empty for Accepted.
QString loginMessage(LoginVerdict verdict, const SeenCamera &camera);

} // namespace veltor::cli
