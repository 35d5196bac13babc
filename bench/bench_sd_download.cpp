// SD card download throughput and memory: the tool's transfer (sdmanager::
// downloadFile, as the browser's file loop calls it) against curl fetching the
// same files in the same run, from a simulated camera. Run through
// bench/sd_download.sh, which starts the simulator in a private namespace.
// Prints: a 256 MiB recording and a folder of 200 pictures, seconds and MiB/s
// for both, the ratio tool/curl, and the tool's peak RSS growth.
#include "sdcard/sdmanager.h"
#include "sdcard/sdrequest.h"

#include "camsimfleet.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>

namespace {

constexpr qint64 kRecordingBytes = 256LL * 1024 * 1024;
constexpr int kPictures = 200;

qint64 statusKb(const char *field)
{
    QFile file(QStringLiteral("/proc/self/status"));
    file.open(QIODevice::ReadOnly);
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith(field))
            return line.mid(int(qstrlen(field))).trimmed().split(' ').value(0).toLongLong();
    }
    return -1;
}

// Starts a new peak-RSS measurement (Linux: "5" resets VmHWM to the current RSS).
void resetPeak()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    if (file.open(QIODevice::WriteOnly))
        file.write("5");
}

QJsonArray configure(const camsimfleet::Camera &camera, const QString &query)
{
    QNetworkAccessManager manager;
    QNetworkReply *reply =
        manager.get(QNetworkRequest(QUrl(QStringLiteral("http://%1:%2/camsim/sdcard?%3")
                                             .arg(camera.ip)
                                             .arg(camera.httpPort)
                                             .arg(query))));
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    reply->deleteLater();
    return QJsonDocument::fromJson(reply->readAll()).object().value("files").toArray();
}

double curlSeconds(const QStringList &urls, const QString &dir)
{
    QStringList arguments{"-s", "-S", "--fail", "--output-dir", dir};
    for (const QString &url : urls)
        arguments << "-O" << url;
    QElapsedTimer clock;
    clock.start();
    QProcess curl;
    curl.start(QStringLiteral("curl"), arguments);
    curl.waitForFinished(-1);
    if (curl.exitCode() != 0)
        QTextStream(stderr) << "curl failed: " << curl.readAllStandardError();
    return clock.nsecsElapsed() / 1e9;
}

struct Run
{
    double toolSeconds = 0;
    double curlSeconds = 0;
    qint64 peakGrowthKb = 0;
    int failures = 0;
};

Run measure(sdmanager &tool, const QStringList &urls)
{
    Run run;
    QTemporaryDir toolDir;
    QTemporaryDir curlDir;
    resetPeak();
    const qint64 before = statusKb("VmRSS:");
    QElapsedTimer clock;
    clock.start();
    for (const QString &url : urls)
        run.failures += tool.downloadFile(url, toolDir.path()) ? 0 : 1;
    run.toolSeconds = clock.nsecsElapsed() / 1e9;
    run.peakGrowthKb = statusKb("VmHWM:") - before;
    run.curlSeconds = curlSeconds(urls, curlDir.path());
    return run;
}

void report(const char *what, const Run &run, qint64 bytes)
{
    const double mib = bytes / (1024.0 * 1024.0);
    QTextStream(stdout) << what << ": " << QString::number(mib, 'f', 1) << " MiB\n"
                        << "  tool  " << QString::number(run.toolSeconds, 'f', 3) << " s  "
                        << QString::number(mib / run.toolSeconds, 'f', 1) << " MiB/s"
                        << (run.failures ? QStringLiteral("  (%1 FAILED)").arg(run.failures)
                                         : QString())
                        << "\n  curl  " << QString::number(run.curlSeconds, 'f', 3) << " s  "
                        << QString::number(mib / run.curlSeconds, 'f', 1) << " MiB/s\n"
                        << "  throughput tool/curl "
                        << QString::number(run.curlSeconds / run.toolSeconds, 'f', 2)
                        << "\n  tool peak RSS growth "
                        << QString::number(run.peakGrowthKb / 1024.0, 'f', 1) << " MiB\n";
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QString why;
    camsimfleet::Camera camera;
    for (const camsimfleet::Camera &c : camsimfleet::load(&why))
        camera = c.family == QLatin1String("Haisi") ? c : camera;
    if (camera.ip.isEmpty()) {
        QTextStream(stderr) << "no Haisi camera: " << (why.isEmpty() ? "none in the fleet" : why)
                            << "\n";
        return 1;
    }
    const QJsonArray files = configure(
        camera, QStringLiteral("reset=1&layout=1,%1,%2").arg(kPictures).arg(kRecordingBytes));
    const veltor::SdCamera sd{camera.ip, QString::number(camera.httpPort), camera.user,
                              camera.password};
    QStringList recording;
    QStringList pictures;
    qint64 pictureBytes = 0;
    for (const QJsonValue &file : files) {
        const QString url = sd.sdUrl(file["path"].toString()).toString(QUrl::FullyEncoded);
        if (file["path"].toString().contains(QLatin1String("/record")))
            recording << url;
        else {
            pictures << url;
            pictureBytes += qint64(file["size"].toDouble());
        }
    }
    sdmanager tool;
    report("256 MiB recording", measure(tool, recording), kRecordingBytes);
    report("folder of 200 pictures", measure(tool, pictures), pictureBytes);
    return 0;
}
