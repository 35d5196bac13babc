// The SD card of a Haisi camera: "/param.cgi?cmd=getserverinfo" (status and
// sizes), "/sd/" listings and files, "/param.cgi?cmd=sdfrmt", and
// "/camsim/sdcard" for tests to reshape the card or make it misbehave:
//   layout=D,P,R1:R2:...  D day folders, P pictures each, recordings of R1, R2... bytes
//   fail=PATH  cut=PATH   (repeatable) answer PATH with 500 / close half-way; "/" is the root
//   slowms=N              wait N ms before every SD answer
//   reset=1               the default card and no failures
// It answers JSON with every file's path and size, and its SHA-256 with hashes=1.
#include "camsim/features.h"
#include "camsim/sdcard.h"
#include "camsim/simcamera.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>
#include <QTimer>

namespace veltor::camsim {

namespace {

constexpr int kStreamChunk = 256 * 1024;

struct SdState
{
    SdCard card;
    QStringList failing;
    QStringList cut;
    int slowMs = 0;
};

bool authorized(const SimCamera &camera, const HttpRequest &request)
{
    return request.queryValue(QStringLiteral("usr")) == camera.settings().user &&
           request.queryValue(QStringLiteral("pwd")) == camera.settings().password;
}

// Runs `answer` now, or after the configured delay while the connection lasts.
void later(const SdState &state, HttpExchange &exchange, std::function<void(HttpExchange &)> answer)
{
    if (state.slowMs <= 0) {
        answer(exchange);
        return;
    }
    QPointer<HttpExchange> guard(&exchange);
    exchange.neverAnswer();
    QTimer::singleShot(state.slowMs, &exchange, [guard, answer] {
        if (guard)
            answer(*guard);
    });
}

void serveStatus(SimCamera &camera, const SdState &state, HttpExchange &exchange)
{
    const SdCardSlot &slot = *camera.settings().sdCard;
    const qint64 usedKb = state.card.usedBytes() / 1024;
    const QString status = slot.present ? slot.status : QStringLiteral("NoCard");
    const QByteArray body =
        "var sdstatus=\"" + status.toLatin1() + "\";var sdtotalspace=\"" +
        QByteArray::number(slot.present ? slot.totalKb : 0) + "\";var sdfreespace=\"" +
        QByteArray::number(slot.present ? qMax<qint64>(0, slot.freeKb - usedKb) : 0) + "\";";
    later(state, exchange, [body](HttpExchange &e) { e.respond(200, body); });
}

bool serveParam(SimCamera &camera, SdState &state, HttpExchange &exchange)
{
    const QString cmd = exchange.request().queryValue(QStringLiteral("cmd"));
    if (cmd != QLatin1String("getserverinfo") && cmd != QLatin1String("sdfrmt"))
        return false;
    if (camera.settings().family != Family::Haisi)
        return false;
    if (!authorized(camera, exchange.request())) {
        exchange.respond(401, "Unauthorized");
        return true;
    }
    if (cmd == QLatin1String("getserverinfo")) {
        serveStatus(camera, state, exchange);
        return true;
    }
    state.card.format();
    camera.log(QStringLiteral("sdcard"), QStringLiteral("formatted"));
    later(state, exchange, [](HttpExchange &e) { e.respond(200, "var result=\"ok\";"); });
    return true;
}

void serveSd(SimCamera &camera, SdState &state, HttpExchange &exchange)
{
    if (!authorized(camera, exchange.request())) {
        exchange.respond(401, "Unauthorized");
        return;
    }
    const QString path = exchange.request().path.mid(4); // below "/sd/"
    const QString key = path.isEmpty() ? QStringLiteral("/") : path;
    if (state.failing.contains(key)) {
        later(state, exchange, [](HttpExchange &e) { e.respond(500, "Internal Server Error"); });
        return;
    }
    if (const SdFile *file = state.card.file(path)) {
        const SdFile copy = *file;
        const bool cut = state.cut.contains(key);
        later(state, exchange, [copy, cut](HttpExchange &e) {
            if (cut && !copy.picture.isEmpty())
                e.closeMidBody(200, copy.picture, copy.picture.size() / 2);
            else
                e.streamDevice(200, SdCard::open(copy, cut ? copy.size / 2 : -1),
                               copy.picture.isEmpty() ? "application/octet-stream" : "image/jpeg",
                               kStreamChunk);
        });
        return;
    }
    if (!state.card.isFolder(path)) {
        exchange.respond(404, "Not Found");
        return;
    }
    const QByteArray page = state.card.listing(path);
    later(state, exchange, [page](HttpExchange &e) { e.respond(200, page, "text/html"); });
}

SdLayout parseLayout(const QString &text, bool *ok)
{
    SdLayout layout;
    const QStringList parts = text.split(QLatin1Char(','));
    *ok = parts.size() == 3;
    if (!*ok)
        return layout;
    layout.days = parts.at(0).toInt();
    layout.pictures = parts.at(1).toInt();
    layout.recordBytes.clear();
    for (const QString &size : parts.at(2).split(QLatin1Char(':'), Qt::SkipEmptyParts))
        layout.recordBytes.append(size.toLongLong());
    return layout;
}

void serveControl(SdState &state, HttpExchange &exchange)
{
    const HttpRequest &request = exchange.request();
    if (request.queryValue(QStringLiteral("reset")) == QLatin1String("1"))
        state = SdState();
    if (request.hasQueryItem(QStringLiteral("layout"))) {
        bool ok = false;
        const SdLayout layout = parseLayout(request.queryValue(QStringLiteral("layout")), &ok);
        if (!ok) {
            exchange.respond(400, "layout=DAYS,PICTURES,BYTES:BYTES...");
            return;
        }
        state.card = SdCard(layout);
    }
    for (const auto &item : request.query) {
        if (item.first == QLatin1String("fail"))
            state.failing << item.second;
        else if (item.first == QLatin1String("cut"))
            state.cut << item.second;
        else if (item.first == QLatin1String("slowms"))
            state.slowMs = item.second.toInt();
    }
    const bool hashes = request.queryValue(QStringLiteral("hashes")) == QLatin1String("1");
    QJsonArray files;
    for (const SdFile &file : state.card.allFiles()) {
        QJsonObject entry{{"path", file.path}, {"size", double(file.size)}};
        if (hashes)
            entry.insert("sha256", QString::fromLatin1(SdCard::sha256(file)));
        files.append(entry);
    }
    exchange.respond(200, QJsonDocument(QJsonObject{{"files", files}}).toJson(),
                     "application/json");
}

void installSdCard(SimCamera &camera)
{
    if (camera.settings().family != Family::Haisi)
        return;
    auto state = std::make_shared<SdState>();
    camera.http().route(QStringLiteral("/param.cgi"), [&camera, state](HttpExchange &exchange) {
        return serveParam(camera, *state, exchange);
    });
    camera.http().route(QStringLiteral("/sd/"), [&camera, state](HttpExchange &exchange) {
        serveSd(camera, *state, exchange);
        return true;
    });
    camera.http().route(QStringLiteral("/camsim/sdcard"), [state](HttpExchange &exchange) {
        serveControl(*state, exchange);
        return true;
    });
}

} // namespace

VELTOR_CAMSIM_FEATURE(sdcard, installSdCard);

} // namespace veltor::camsim
