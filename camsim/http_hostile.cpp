// A camera that misbehaves on request, for hardening measurements. Off until
// asked, per camera:
//   /camsim/hostile?mode=M  answer "/param.cgi", "/check_user.cgi" and "/sd/"
//     with M from now on: never, drip (one byte a second), garbage (100 MiB),
//     cut (closes mid-body), 401, 500, redirect (to itself, forever),
//     noequals, noquotes, millionlines, longlines (1 MiB each); off
//     reset: uploads are taken for 256 KiB, then the connection is reset
//   /camsim/hostile?udp=sizes  random datagrams of 0..65507 bytes to the
//     asker's 10000 and 8002, from this camera's address
//   /camsim/hostile?udp=flood&rate=N&seconds=S  N datagrams a second: search
//     replies of a thousand made-up cameras, mixed with garbage
// VELTOR_CAMSIM_HOSTILE=M sets the starting mode of every camera.
// Named to sort before "auth", so that its routes come first on shared paths.
#include "camsim/features.h"
#include "camsim/searchreplies.h"
#include "camsim/simcamera.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>
#include <QRandomGenerator>
#include <QTcpSocket>
#include <QTimer>
#include <QUdpSocket>
#include <memory>
#include <sys/socket.h>

namespace veltor::camsim {

namespace {

constexpr qint64 kGarbageBytes = 100 * 1024 * 1024;
constexpr int kLongLine = 1024 * 1024;
constexpr qint64 kResetAfterBytes = 256 * 1024;

// `head`, then `unit` `count` times, without holding it all.
class RepeatDevice : public QIODevice
{
public:
    RepeatDevice(QByteArray head, QByteArray unit, qint64 count)
        : head(std::move(head)), unit(std::move(unit)), count(count)
    {
        open(QIODevice::ReadOnly);
    }
    qint64 size() const override { return head.size() + unit.size() * count; }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        qint64 done = 0;
        for (qint64 at = pos(); done < maxSize && at < size(); ++at, ++done)
            data[done] =
                at < head.size() ? head[int(at)] : unit[int((at - head.size()) % unit.size())];
        return done;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray head;
    QByteArray unit;
    qint64 count;
};

QByteArray randomBytes(int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (char &byte : bytes)
        byte = char(QRandomGenerator::global()->bounded(256));
    return bytes;
}

QByteArray listingLine(int n)
{
    const QByteArray name = "20261123_" + QByteArray::number(n).rightJustified(7, '0') + ".jpg";
    return "<a href=\"" + name + "\">" + name + "</a>" + QByteArray(20, ' ') + "23-Nov-2026 10:00" +
           QByteArray(20, ' ') + "120k\n";
}

void stream(HttpExchange &exchange, QByteArray head, QByteArray unit, qint64 count)
{
    exchange.streamDevice(200, new RepeatDevice(std::move(head), std::move(unit), count),
                          "text/html");
}

const QByteArray kStatus = "var sdstatus=\"Ready\";var sdtotalspace=\"15557632\";"
                           "var sdfreespace=\"1048576\";";

// Answers by `mode`; false when the camera behaves.
bool misbehave(const QString &mode, HttpExchange &exchange)
{
    if (mode == QLatin1String("never"))
        exchange.neverAnswer();
    else if (mode == QLatin1String("drip"))
        exchange.drip(200, kStatus, 1, 1000);
    else if (mode == QLatin1String("garbage"))
        stream(exchange, {}, randomBytes(64 * 1024), kGarbageBytes / (64 * 1024));
    else if (mode == QLatin1String("cut"))
        exchange.closeMidBody(200, kStatus + QByteArray(4096, 'x'), 40);
    else if (mode == QLatin1String("401") || mode == QLatin1String("500"))
        exchange.respond(mode.toInt(), "no\n");
    else if (mode == QLatin1String("redirect"))
        exchange.respond(302, {}, "text/plain", {{"Location", exchange.request().target}});
    else if (mode == QLatin1String("noequals"))
        exchange.respond(200, QByteArray(kStatus).replace('=', ' '));
    else if (mode == QLatin1String("noquotes"))
        exchange.respond(200, QByteArray(kStatus).replace('"', ""));
    else if (mode == QLatin1String("millionlines"))
        stream(exchange, "<html><pre>\n", listingLine(1), 1000 * 1000);
    else if (mode == QLatin1String("longlines"))
        stream(exchange, "<html><pre>\n", QByteArray(kLongLine, 'a') + '\n', 16);
    else
        return false;
    return true;
}

// Takes the start of an upload, then drops the connection with a reset (RST),
// as a camera does that reboots or runs out of memory mid-transfer.
bool resetUpload(const QString &mode, HttpExchange &exchange)
{
    if (mode != QLatin1String("reset"))
        return false;
    exchange.neverAnswer();
    auto taken = std::make_shared<qint64>(0);
    QPointer<QTcpSocket> socket = exchange.socket();
    exchange.streamBody(
        [taken, socket](const QByteArray &piece) {
            *taken += piece.size();
            if (*taken < kResetAfterBytes || !socket ||
                socket->state() != QTcpSocket::ConnectedState)
                return;
            const linger hard{1, 0};
            setsockopt(int(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
            socket->abort();
        },
        [](bool) {});
    return true;
}

void sendBoth(QUdpSocket *socket, const QHostAddress &to, const QByteArray &datagram, int *sent)
{
    for (const quint16 port : {quint16(10000), quint16(8002)})
        *sent += socket->writeDatagram(datagram, to, port) >= 0 ? 1 : 0;
}

void sendSizes(QUdpSocket *socket, const QHostAddress &to, HttpExchange &exchange)
{
    int sent = 0;
    for (int size = 0; size <= 65507; size = size == 65507 ? 65508 : qMin(size + 997, 65507))
        sendBoth(socket, to, randomBytes(size), &sent);
    exchange.respond(200, QJsonDocument(QJsonObject{{"sent", sent}}).toJson(), "application/json");
}

// One datagram of the flood: every fifth is garbage, the rest replies of
// cameras that share a thousand MACs.
QByteArray floodDatagram(const CameraSettings &camera, int n)
{
    if (n % 5 == 4)
        return randomBytes(int(QRandomGenerator::global()->bounded(1, 1500)));
    CameraSettings fake = camera;
    const int id = n % 1000;
    fake.mac = QStringLiteral("02:56:4C:EE:%1:%2")
                   .arg(id / 256, 2, 16, QLatin1Char('0'))
                   .arg(id % 256, 2, 16, QLatin1Char('0'))
                   .toUpper();
    fake.ip = QStringLiteral("10.78.250.%1").arg(id % 250 + 1);
    return searchReply(fake, n % 2 ? Family::Winbond : Family::Haisi);
}

void sendFlood(SimCamera &camera, QUdpSocket *socket, const QHostAddress &to,
               HttpExchange &exchange)
{
    const int perTick = qMax(1, exchange.request().queryValue("rate").toInt() / 100);
    const int ticks = qMax(1, exchange.request().queryValue("seconds").toInt()) * 100;
    exchange.neverAnswer();
    auto *timer = new QTimer(&exchange);
    auto state = std::make_shared<QPair<int, int>>(0, 0); // ticks done, datagrams sent
    QObject::connect(timer, &QTimer::timeout, &exchange, [=, &camera, &exchange] {
        for (int i = 0; i < perTick; ++i) {
            const QByteArray datagram =
                floodDatagram(camera.settings(), state->first * perTick + i);
            state->second += socket->writeDatagram(datagram, to, i % 2 ? 10000 : 8002) >= 0;
        }
        if (++state->first < ticks)
            return;
        timer->stop();
        exchange.respond(200, QJsonDocument(QJsonObject{{"sent", state->second}}).toJson(),
                         "application/json");
    });
    timer->start(10);
}

bool control(SimCamera &camera, QString *mode, HttpExchange &exchange)
{
    const QString udp = exchange.request().queryValue("udp");
    if (udp.isEmpty()) {
        *mode = exchange.request().queryValue("mode");
        exchange.respond(200, mode->toLatin1() + '\n');
        return true;
    }
    auto *socket = new QUdpSocket(&exchange);
    socket->bind(QHostAddress(camera.settings().ip), 0);
    if (udp == QLatin1String("flood"))
        sendFlood(camera, socket, exchange.peerAddress(), exchange);
    else
        sendSizes(socket, exchange.peerAddress(), exchange);
    return true;
}

void installHostile(SimCamera &camera)
{
    auto mode = std::make_shared<QString>(qEnvironmentVariable("VELTOR_CAMSIM_HOSTILE"));
    camera.http().route(QStringLiteral("/camsim/hostile"), [&camera, mode](HttpExchange &exchange) {
        return control(camera, mode.get(), exchange);
    });
    for (const char *path : {"/param.cgi", "/check_user.cgi", "/sd/"}) {
        camera.http().route(QLatin1String(path),
                            [mode](HttpExchange &exchange) { return misbehave(*mode, exchange); });
    }
    for (const char *path :
         {"/upgrade_firmware.cgi", "/upgrade_htmls.cgi", "/web/cgi-bin/hi3510/upgrade.cgi"}) {
        camera.http().route(QLatin1String(path), [mode](HttpExchange &exchange) {
            return resetUpload(*mode, exchange);
        });
    }
}

} // namespace

VELTOR_CAMSIM_FEATURE(abuse, installHostile);

} // namespace veltor::camsim
