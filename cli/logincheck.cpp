#include "cli/logincheck.h"

#include "auth/credentialcheck.h"
#include "discovery/protocolconstants.h"

#include <QEventLoop>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QTimer>

namespace veltor::cli {

LoginCheck::LoginCheck(QObject *parent) : QObject(parent)
{
    // Cameras sit on the local network; a proxy from the environment would
    // see the password in the query.
    manager.setProxy(QNetworkProxy::NoProxy);
}

void LoginCheck::start(const SeenCamera &camera, const Credentials &credentials)
{
    const QString ip = camera.record.ip;
    if (!sameSubnet24(ip, camera.interfaceAddress.toString())) {
        // Queued, so that a caller connecting after start() still hears it.
        QTimer::singleShot(0, this, [this] { emit finished(LoginVerdict::CannotCheck); });
        return;
    }
    QNetworkRequest request(credentialCheckUrl(ip, camera.record.port, camera.family,
                                               credentials.user, credentials.password));
    request.setTransferTimeout(kCredentialCheckTimeoutMs);
    QNetworkReply *reply = getOutcomeOnly(&manager, request);
    // Only the error code is read: its text would carry the URL, password and all.
    connect(reply, &QNetworkReply::finished, this, [this, reply] {
        reply->deleteLater();
        switch (reply->error()) {
        case QNetworkReply::NoError:
            emit finished(LoginVerdict::Accepted);
            break;
        case QNetworkReply::TimeoutError:
        case QNetworkReply::OperationCanceledError: // how a transfer timeout ends
            emit finished(LoginVerdict::TimedOut);
            break;
        default:
            emit finished(LoginVerdict::Refused);
        }
    });
}

LoginVerdict checkLogin(const SeenCamera &camera, const Credentials &credentials)
{
    LoginCheck check;
    QEventLoop loop;
    LoginVerdict verdict = LoginVerdict::Refused;
    QObject::connect(&check, &LoginCheck::finished, &loop, [&](LoginVerdict v) {
        verdict = v;
        loop.quit();
    });
    check.start(camera, credentials);
    loop.exec();
    return verdict;
}

QNetworkReply::NetworkError getFromCamera(const QUrl &url)
{
    QNetworkAccessManager manager;
    manager.setProxy(QNetworkProxy::NoProxy);
    QNetworkRequest request(url);
    request.setTransferTimeout(kCredentialCheckTimeoutMs);
    QNetworkReply *reply = getOutcomeOnly(&manager, request);
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    reply->deleteLater();
    return reply->error();
}

QString loginMessage(LoginVerdict verdict, const SeenCamera &camera)
{
    switch (verdict) {
    case LoginVerdict::Accepted:
        break;
    case LoginVerdict::Refused:
        return QStringLiteral("Your username or password is not correct!");
    case LoginVerdict::TimedOut:
        return QStringLiteral("Timeout, username and password could not be checked");
    case LoginVerdict::CannotCheck:
        return QStringLiteral("Username and password can not be checked, changes might be "
                              "invalid (the camera %1 is not on the /24 of this computer's "
                              "interface %2)")
            .arg(camera.record.ip, camera.interfaceAddress.toString());
    }
    return QString();
}

} // namespace veltor::cli
