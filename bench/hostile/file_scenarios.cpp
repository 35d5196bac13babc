// Hostile cameras around the user's files: an upload the camera resets, and
// an SD download whose recording is cut. Afterwards every file the user had
// must be there unchanged, and no download may be left truncated.
#include "scenarios.h"

#include "app/mainwindow.h"
#include "sdcard/sdmanager.h"

#include "filehashes.h"

#include <QLineEdit>
#include <QRandomGenerator>
#include <QTableWidget>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <memory>

namespace {

using Snapshot = QMap<QString, QByteArray>; // relative path -> SHA-256

void writeRandom(const QString &path, qint64 size)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    QByteArray piece(1024 * 1024, Qt::Uninitialized);
    for (qint64 left = size; left > 0; left -= piece.size()) {
        QRandomGenerator::global()->fillRange(reinterpret_cast<quint32 *>(piece.data()),
                                              piece.size() / 4);
        file.write(piece.left(int(qMin<qint64>(left, piece.size()))));
    }
}

// What happened to the files that were there before: "none" or the damage.
QString damage(const Snapshot &before, const Snapshot &after)
{
    QStringList hurt;
    for (auto it = before.begin(); it != before.end(); ++it) {
        if (!after.contains(it.key()))
            hurt << QStringLiteral("LOST ") + it.key();
        else if (after.value(it.key()) != it.value())
            hurt << QStringLiteral("CHANGED ") + it.key();
    }
    return hurt.isEmpty() ? QStringLiteral("none") : hurt.join(QStringLiteral(", "));
}

int rowOf(const QTableWidget *list, const QString &name)
{
    for (int row = 0; row < list->rowCount(); ++row) {
        if (list->item(row, 0) && list->item(row, 0)->text() == name)
            return row;
    }
    return -1;
}

bool enter(sdmanager *browser, QTableWidget *list, const QString &folder)
{
    if (!Harness::waitFor([&] { return rowOf(list, folder) >= 0; }, 10000))
        return false;
    QMetaObject::invokeMethod(browser, "mycellsdDoubleClicked", Q_ARG(int, rowOf(list, folder)),
                              Q_ARG(int, 0));
    return Harness::waitFor([&] { return list->rowCount() > 0 && rowOf(list, folder) < 0; }, 10000);
}

} // namespace

Outcome uploadReset(Harness &harness)
{
    const camsimfleet::Camera &camera = harness.haisi;
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("firmware.pkg"));
    writeRandom(path, 32 * 1024 * 1024);
    const Snapshot before = testsupport::fileHashes(dir.path());
    harness.get(camera, QStringLiteral("/camsim/hostile?mode=reset"));
    const qint64 rssBefore = peakRssKb();
    Outcome outcome = harness.begin(QStringLiteral("upload: camera resets the connection"));
    if (!harness.unlock(camera, "mycellClickedUpdate"))
        outcome.fail(QStringLiteral("camera not listed or not unlocked"));
    harness.window->findChild<QLineEdit *>(QStringLiteral("fileEdit"))->setText(path);
    auto *socket = harness.window->findChild<QTcpSocket *>(QString(), Qt::FindDirectChildrenOnly);
    bool connected = false;
    QObject::connect(socket, &QTcpSocket::connected, [&] { connected = true; });
    QMetaObject::invokeMethod(harness.window, "on_updateSubmit_clicked");
    if (!Harness::waitFor(
            [&] { return connected && socket->state() == QAbstractSocket::UnconnectedState; },
            30000))
        outcome.fail(QStringLiteral("upload still running after 30 s"));
    outcome.note = socket->errorString() + QStringLiteral("; said: ") +
                   harness.boxes.join(QStringLiteral("; "));
    harness.end(&outcome);
    outcome.files = damage(before, testsupport::fileHashes(dir.path()));
    if (outcome.files != QLatin1String("none"))
        outcome.fail(QStringLiteral("user file damaged"));
    judge(&outcome, rssBefore, 32 * 1024);
    harness.get(camera, QStringLiteral("/camsim/hostile?mode=off"));
    return outcome;
}

Outcome sdDownloadCut(Harness &harness)
{
    const camsimfleet::Camera &camera = harness.haisi;
    const QString cut = QStringLiteral("20261123/record001/R20261123_100001_0001.264");
    harness.get(camera, QStringLiteral("/camsim/sdcard?reset=1&cut=") + cut);
    QTemporaryDir target;
    writeRandom(target.filePath(QStringLiteral("holiday.mp4")), 4 * 1024 * 1024);
    const Snapshot before = testsupport::fileHashes(target.path());
    const qint64 rssBefore = peakRssKb();
    Outcome outcome = harness.begin(QStringLiteral("SD download: recording cut mid-body"));
    auto browser = std::make_unique<sdmanager>();
    browser->setDirectoryChooser([&target](QWidget *) { return target.path(); });
    browser->setData({camera.ip, QString::number(camera.httpPort), camera.password, camera.user});
    auto *list = browser->findChild<QTableWidget *>(QStringLiteral("tableShowSdInfo"));
    if (!enter(browser.get(), list, QStringLiteral("20261123/")) ||
        !enter(browser.get(), list, QStringLiteral("record001/")))
        outcome.fail(QStringLiteral("listing not shown"));
    QMetaObject::invokeMethod(browser.get(), "on_selectallBtn_clicked");
    QMetaObject::invokeMethod(browser.get(), "on_download_clicked");
    const Snapshot after = testsupport::fileHashes(target.path());
    outcome.files = damage(before, after);
    for (const QString &name : after.keys()) {
        if (name.endsWith(QLatin1String(".part")) || name.endsWith(cut.section('/', -1)))
            outcome.files += QStringLiteral(", TRUNCATED ") + name;
    }
    const QString said = harness.boxes.join(QStringLiteral("; "));
    outcome.note = QStringLiteral("%1 files kept; said: %2").arg(after.size() - 1).arg(said);
    if (outcome.files != QLatin1String("none"))
        outcome.fail(QStringLiteral("files damaged"));
    else if (!said.contains(cut))
        outcome.fail(QStringLiteral("cut file not reported"));
    harness.end(&outcome);
    judge(&outcome, rssBefore, 64 * 1024);
    harness.get(camera, QStringLiteral("/camsim/sdcard?reset=1"));
    return outcome;
}
