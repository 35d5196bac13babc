// The upgrade CGIs: "/upgrade_firmware.cgi", "/upgrade_htmls.cgi" (Winbond)
// and "/web/cgi-bin/hi3510/upgrade.cgi" (Haisi). Each upload is checked as the
// camera would (uploadcheck.h), streamed to disk, and judged a second time by
// a standard multipart parser (multipart_check.py). "/camsim/uploads" lists
// the results for tests in the tool's namespace.
#include "camsim/features.h"
#include "camsim/simcamera.h"
#include "camsim/upgradeapply.h"
#include "camsim/uploadcheck.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <memory>

namespace veltor::camsim {

namespace {

const char *const kUploadPaths[] = {"/upgrade_firmware.cgi", "/upgrade_htmls.cgi",
                                    "/web/cgi-bin/hi3510/upgrade.cgi"};

// Under the harness's work folder when there is one: it goes with the run.
QString uploadFolder(const CameraSettings &camera)
{
    static QTemporaryDir fallback(QDir::tempPath() + QStringLiteral("/veltor-camsim-uploads"));
    const QString work = qEnvironmentVariable("VELTOR_NETNS_WORK");
    const QString root = work.isEmpty() ? fallback.path() : work + QStringLiteral("/uploads");
    const QString folder = root + QStringLiteral("/camera%1").arg(camera.index);
    QDir().mkpath(folder);
    return folder;
}

struct UploadLog
{
    QJsonArray uploads;
};

// Compares what python-multipart saw with the camera's own reading.
QString judgeStandardParse(const QJsonObject &parsed, const QJsonObject &record)
{
    if (parsed.value(QStringLiteral("unavailable")).toBool())
        return QStringLiteral("unavailable: ") + parsed.value(QStringLiteral("error")).toString();
    if (!parsed.value(QStringLiteral("ok")).toBool())
        return QStringLiteral("failed: ") + parsed.value(QStringLiteral("error")).toString();
    const QJsonArray parts = parsed.value(QStringLiteral("parts")).toArray();
    if (parts.size() != 1)
        return QStringLiteral("failed: %1 parts").arg(parts.size());
    // Only a file the camera took whole can be compared with its own reading.
    const QJsonObject part = parts.first().toObject();
    if (record.value(QStringLiteral("ok")).toBool() &&
        (part.value(QStringLiteral("sha256")) != record.value(QStringLiteral("sha256")) ||
         part.value(QStringLiteral("size")).toDouble() !=
             record.value(QStringLiteral("fileBytes")).toDouble()))
        return QStringLiteral("failed: the file part differs");
    return QStringLiteral("passed");
}

void runStandardParse(SimCamera &camera, std::shared_ptr<UploadLog> log, int at,
                      const QByteArray &contentType, const QString &bodyPath)
{
    auto *process = new QProcess(&camera);
    const QString python = QFile::exists(QStringLiteral("/usr/bin/python3"))
                               ? QStringLiteral("/usr/bin/python3")
                               : QStringLiteral("python3");
    QObject::connect(
        process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), &camera,
        [&camera, log, at, process, bodyPath](int, QProcess::ExitStatus) {
            QJsonObject record = log->uploads.at(at).toObject();
            const QJsonObject parsed =
                QJsonDocument::fromJson(process->readAllStandardOutput()).object();
            const QString verdict = parsed.isEmpty() ? QStringLiteral("unavailable: no answer")
                                                     : judgeStandardParse(parsed, record);
            record.insert(QStringLiteral("standardCheck"), verdict);
            log->uploads.replace(at, record);
            camera.log(QStringLiteral("upload"), QStringLiteral("standard parser: ") + verdict);
            QFile::remove(bodyPath);
            process->deleteLater();
        });
    process->start(python, {QStringLiteral(VELTOR_CAMSIM_MULTIPART_CHECK),
                            QString::fromLatin1(contentType), bodyPath});
}

// One upload from its head to the verdicts.
struct UploadSession
{
    SimCamera &camera;
    std::shared_ptr<UploadLog> log;
    int at = 0;
    UploadExpectation expected;
    QString headError;
    QString bodyPath;
    std::shared_ptr<UploadReceiver> receiver;

    void finish(HttpExchange &exchange, bool complete) const
    {
        const QString framing = receiver->finish(complete);
        const QString error = headError.isEmpty() ? framing : headError;
        const QString sha = QString::fromLatin1(receiver->sha256Hex());
        QJsonObject record = log->uploads.at(at).toObject();
        record.insert(QStringLiteral("done"), true);
        record.insert(QStringLiteral("ok"), error.isEmpty());
        record.insert(QStringLiteral("error"), error);
        record.insert(QStringLiteral("fileBytes"), receiver->fileBytes());
        record.insert(QStringLiteral("sha256"), sha);
        record.insert(QStringLiteral("standardCheck"), QStringLiteral("pending"));
        log->uploads.replace(at, record);
        camera.log(QStringLiteral("upload"), error.isEmpty()
                                                 ? QStringLiteral("%1: %2 bytes, sha256 %3")
                                                       .arg(exchange.request().path)
                                                       .arg(receiver->fileBytes())
                                                       .arg(sha)
                                                 : QStringLiteral("framing error: ") + error);
        runStandardParse(camera, log, at, "multipart/form-data; boundary=" + expected.boundary,
                         bodyPath);
        // The tool reads no answer; a browser would see this one.
        if (!exchange.isAnswered() && exchange.socket()->state() == QAbstractSocket::ConnectedState)
            exchange.respond(error.isEmpty() ? 200 : 400,
                             error.isEmpty() ? QByteArray("upgrade ok\n") : error.toUtf8());
        if (error.isEmpty())
            takeOnUpgrade(camera, exchange.request().path);
    }
};

bool receiveUpload(SimCamera &camera, std::shared_ptr<UploadLog> log, HttpExchange &exchange)
{
    const int at = log->uploads.size();
    const QString folder = uploadFolder(camera.settings());
    const QString filePath = folder + QStringLiteral("/upload%1.bin").arg(at);
    QFile::remove(folder + QStringLiteral("/upload%1.bin").arg(at - 1)); // bounded disk use

    UploadSession session{camera, log, at, {}, {}, folder + QStringLiteral("/body%1.raw").arg(at),
                          {}};
    session.headError = checkUploadHead(exchange.request(), camera.settings(), &session.expected);
    session.receiver =
        std::make_shared<UploadReceiver>(session.expected, session.bodyPath, filePath);
    log->uploads.append(
        QJsonObject{{QStringLiteral("path"), exchange.request().path},
                    {QStringLiteral("fileName"), QString::fromUtf8(session.expected.fileName)},
                    {QStringLiteral("storedFile"), filePath},
                    {QStringLiteral("done"), false}});
    const auto receiver = session.receiver;
    exchange.streamBody(
        [receiver](const QByteArray &piece) { receiver->feed(piece); },
        [session, &exchange](bool complete) { session.finish(exchange, complete); });
    return true;
}

void installUpload(SimCamera &camera)
{
    auto log = std::make_shared<UploadLog>();
    for (const char *path : kUploadPaths) {
        camera.http().route(QLatin1String(path), [&camera, log](HttpExchange &exchange) {
            return receiveUpload(camera, log, exchange);
        });
    }
    camera.http().route(QStringLiteral("/camsim/uploads"), [log](HttpExchange &exchange) {
        const QJsonObject json{{QStringLiteral("uploads"), log->uploads}};
        exchange.respond(200, QJsonDocument(json).toJson(), "application/json");
        return true;
    });
}

} // namespace

VELTOR_CAMSIM_FEATURE(upload, installUpload);

} // namespace veltor::camsim
