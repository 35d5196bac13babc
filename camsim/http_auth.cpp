// The credential check of both families and the restart:
//   Winbond  "/check_user.cgi?user=&pwd="
//   Haisi    "/param.cgi?cmd=getuserinfo&usr=&pwd="
//   both     "/reboot.cgi?user=&pwd=", which also takes on new network settings
// 200 for the camera's user name and password (percent-escapes decoded as a
// web server does), 401 otherwise. For the tool's timeout path:
//   VELTOR_CAMSIM_AUTH_DELAY_MS  answer credential checks this late
//   VELTOR_CAMSIM_AUTH_SILENT    "all" or fleet indexes ("0,3") never answered
#include "camsim/features.h"
#include "camsim/networkchanger.h"
#include "camsim/simcamera.h"

#include <QPointer>
#include <QTimer>

namespace veltor::camsim {

namespace {

constexpr int kRebootAfterAnswerMs = 100;

bool silent(int index)
{
    const QString setting = qEnvironmentVariable("VELTOR_CAMSIM_AUTH_SILENT");
    return setting == QLatin1String("all") ||
           setting.split(QLatin1Char(',')).contains(QString::number(index));
}

bool accepted(const SimCamera &camera, const HttpRequest &request, const char *userKey)
{
    return request.queryValue(QLatin1String(userKey)) == camera.settings().user &&
           request.queryValue(QStringLiteral("pwd")) == camera.settings().password;
}

void answerCheck(SimCamera &camera, HttpExchange &exchange, bool ok)
{
    if (silent(camera.settings().index)) {
        exchange.neverAnswer();
        return;
    }
    const int status = ok ? 200 : 401;
    const QByteArray body = ok ? "ok\n" : "unauthorized\n";
    const int delay = qEnvironmentVariableIntValue("VELTOR_CAMSIM_AUTH_DELAY_MS");
    if (delay <= 0) {
        exchange.respond(status, body);
        return;
    }
    // The client may give up first; its exchange goes with the connection.
    QPointer<HttpExchange> later(&exchange);
    exchange.neverAnswer();
    QTimer::singleShot(delay, &camera, [later, status, body] {
        if (later)
            later->respond(status, body);
    });
}

void installAuth(SimCamera &camera)
{
    if (camera.settings().family == Family::Winbond) {
        camera.http().route(QStringLiteral("/check_user.cgi"), [&camera](HttpExchange &exchange) {
            answerCheck(camera, exchange, accepted(camera, exchange.request(), "user"));
            return true;
        });
    } else {
        camera.http().route(QStringLiteral("/param.cgi"), [&camera](HttpExchange &exchange) {
            if (exchange.request().queryValue(QStringLiteral("cmd")) !=
                QLatin1String("getuserinfo"))
                return false;
            answerCheck(camera, exchange, accepted(camera, exchange.request(), "usr"));
            return true;
        });
    }
    camera.http().route(QStringLiteral("/reboot.cgi"), [&camera](HttpExchange &exchange) {
        if (!accepted(camera, exchange.request(), "user")) {
            exchange.respond(401, "unauthorized\n");
            return true;
        }
        exchange.respond(200, "rebooting\n");
        camera.log(QStringLiteral("config"), QStringLiteral("reboot"));
        QTimer::singleShot(kRebootAfterAnswerMs, &camera,
                           [&camera] { NetworkChanger::of(camera)->restartNow(); });
        return true;
    });
}

} // namespace

VELTOR_CAMSIM_FEATURE(auth, installAuth);

} // namespace veltor::camsim
