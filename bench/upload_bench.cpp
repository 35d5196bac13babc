// Upload throughput of the tool against curl, to one counting HTTP peer over
// loopback, and the tool's peak memory growth while it streams.
// Usage: veltor-upload-bench [MiB ...]   (default: 64 512)
#include "app/mainwindow.h"

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>

namespace {

constexpr int kRuns = 3;

qint64 procStatusKiB(const char *field)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(field))
            return line.mid(qstrlen(field)).trimmed().split(' ').value(0).toLongLong();
    }
    return -1;
}

// Lets VmHWM measure from now on instead of from process start.
void resetPeakRss()
{
    QFile clear(QStringLiteral("/proc/self/clear_refs"));
    if (clear.open(QIODevice::WriteOnly))
        clear.write("5");
}

bool writeRandomFile(const QString &path, qint64 mib)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QByteArray block(1 << 20, Qt::Uninitialized);
    for (qint64 i = 0; i < mib; ++i) {
        QRandomGenerator::global()->fillRange(reinterpret_cast<quint32 *>(block.data()),
                                              block.size() / 4);
        if (file.write(block) != block.size())
            return false;
    }
    return true;
}

class SinkProcess
{
public:
    bool start(const QString &program)
    {
        process.start(program, QStringList());
        if (!process.waitForStarted() || !process.waitForReadyRead(5000))
            return false;
        port = process.readLine().trimmed().split(' ').value(1).toUShort();
        return port != 0;
    }
    // One report of the sink, if there is one: microseconds from first to
    // last byte, or -1. Never waits.
    qint64 poll(qint64 *bytes)
    {
        while (process.canReadLine()) {
            const QList<QByteArray> words = process.readLine().trimmed().split(' ');
            if (words.value(0) == "done") {
                *bytes = words.value(1).toLongLong();
                return words.value(2).toLongLong();
            }
        }
        return -1;
    }
    qint64 waitForDone(qint64 *bytes)
    {
        QElapsedTimer clock;
        clock.start();
        for (qint64 micros; clock.elapsed() < 120000;) {
            if ((micros = poll(bytes)) >= 0)
                return micros;
            process.waitForReadyRead(50);
        }
        return -1;
    }
    ~SinkProcess()
    {
        process.kill();
        process.waitForFinished();
    }
    QProcess process;
    quint16 port = 0;
};

struct Run
{
    double mbPerSecond = 0;
    qint64 rssGrowthKiB = 0;
};

Run toolRun(MainWindow *window, SinkProcess *sink, const QString &path)
{
    window->findChild<QLabel *>(QStringLiteral("iplabel"))->setText(QStringLiteral("127.0.0.1"));
    QMetaObject::invokeMethod(
        window, "receiveCamUpdate",
        Q_ARG(QStringList, QStringList({QStringLiteral("admin"), QStringLiteral("admin"),
                                        QString::number(sink->port), QStringLiteral("Winbond")})));
    qint64 ignored = 0;
    if (sink->process.waitForReadyRead(1000)) // the SD card status request, when the tab sends one
        sink->poll(&ignored);
    window->findChild<QLineEdit *>(QStringLiteral("fileEdit"))->setText(path);
    window->findChild<QComboBox *>(QStringLiteral("selectBox"))->setCurrentIndex(0);

    Run run;
    qint64 bytes = 0;
    qint64 micros = -1;
    // The reboot notice stays open while the file streams, as it does for a user.
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        if (micros < 0 && (micros = sink->poll(&bytes)) < 0)
            return;
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
            box->accept();
    });
    watch.start(5);
    resetPeakRss();
    const qint64 rssBefore = procStatusKiB("VmRSS:");
    window->findChild<QPushButton *>(QStringLiteral("updateSubmit"))->click();
    while (micros < 0 || QApplication::activeModalWidget())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    run.rssGrowthKiB = procStatusKiB("VmHWM:") - rssBefore;
    run.mbPerSecond = micros > 0 ? double(bytes) / double(micros) : 0;
    return run;
}

double curlRun(SinkProcess *sink, const QString &path)
{
    QProcess curl;
    const QString url =
        QStringLiteral("http://127.0.0.1:%1/upgrade_firmware.cgi?user=admin&pwd=admin")
            .arg(sink->port);
    curl.start(QStringLiteral("curl"),
               {QStringLiteral("-s"), QStringLiteral("-o"), QStringLiteral("/dev/null"),
                QStringLiteral("-H"), QStringLiteral("Expect:"), QStringLiteral("-H"),
                QStringLiteral("Content-Type: multipart/form-data; boundary=----ipcamera"),
                QStringLiteral("-X"), QStringLiteral("POST"), QStringLiteral("-T"), path, url});
    qint64 bytes = 0;
    const qint64 micros = sink->waitForDone(&bytes);
    curl.waitForFinished(120000);
    return micros > 0 ? double(bytes) / double(micros) : 0;
}

double median(QVector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? 0 : values.at(values.size() / 2);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QList<qint64> sizes;
    for (int i = 1; i < argc; ++i)
        sizes << QByteArray(argv[i]).toLongLong();
    if (sizes.isEmpty())
        sizes = {64, 512};
    if (QStandardPaths::findExecutable(QStringLiteral("curl")).isEmpty()) {
        std::printf("curl not found: no reference to compare with\n");
        return 1;
    }
    const QString sinkProgram = QCoreApplication::applicationDirPath() + "/veltor-bench-sink";
    QTemporaryDir dir;
    std::printf("%8s %12s %12s %7s %16s\n", "MiB", "tool MB/s", "curl MB/s", "ratio",
                "tool peak RSS+");
    for (qint64 mib : sizes) {
        const QString path = dir.filePath(QStringLiteral("upload.bin"));
        SinkProcess sink;
        if (!writeRandomFile(path, mib) || !sink.start(sinkProgram)) {
            std::printf("cannot prepare %lld MiB: file or sink failed\n", mib);
            return 1;
        }
        QVector<double> tool, reference;
        qint64 peak = 0;
        for (int r = 0; r < kRuns; ++r) {
            MainWindow window;
            const Run run = toolRun(&window, &sink, path);
            tool << run.mbPerSecond;
            peak = qMax(peak, run.rssGrowthKiB);
            reference << curlRun(&sink, path);
        }
        const double t = median(tool), c = median(reference);
        std::printf("%8lld %12.0f %12.0f %7.2f %12.1f MiB\n", mib, t, c, c > 0 ? t / c : 0,
                    peak / 1024.0);
        QFile::remove(path);
    }
    return 0;
}
