// veltor-cli upgrade on twenty simulated cameras, judged by each one's SHA-256 of what it stored.
#include "camsimfleet.h"
#include "clirun.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

namespace {

// SHA-256 of each file the camera took at `path`, oldest first.
QStringList uploadedHashes(const camsimfleet::Camera &camera, const QString &path)
{
    QStringList hashes;
    for (const QJsonValue &upload :
         camsimfleet::fetchJson(camera, "/camsim/uploads").value("uploads").toArray()) {
        if (upload["path"].toString() == path)
            hashes << upload["sha256"].toString();
    }
    return hashes;
}

QHash<QString, QString> statesIn(const QString &path)
{
    QHash<QString, QString> states;
    for (const QJsonValue &target : QJsonDocument::fromJson(readFile(path))["targets"].toArray())
        states.insert(target["mac"].toString(), target["state"].toString());
    return states;
}

} // namespace

class tst_UpgradeE2e : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        CAMSIM_FLEET_OR_SKIP(fleet);
        QCOMPARE(fleet.size(), 20);
    }
    void twentyCamerasMixedNames()
    {
        // Named half by MAC (bare, lower case), half by address, as a user would mix them.
        QStringList targets;
        for (const camsimfleet::Camera &camera : qAsConst(fleet))
            targets << (camera.index % 2 ? camera.ip : QString(camera.mac).remove(":").toLower());
        const QString state = dir.filePath("all.json");
        const CliRun run =
            runCli(upgrade("--firmware", "2.2.0.1", 600001) +
                       QStringList{"--parallel", "4", "--state-file", state} + targets,
                   fleet.first().password, 180000);
        QVERIFY2(run.exitCode == 0, qPrintable(run.out + run.err));
        QVERIFY2(run.out.contains("\n20 verified\n"), qPrintable(run.out));
        QVERIFY2(run.err.contains("uploads: 20 sent, 11.4 MiB of file in "), qPrintable(run.err));
        for (const camsimfleet::Camera &camera : qAsConst(fleet)) {
            const QString path = camera.family == "Winbond" ? "/upgrade_firmware.cgi"
                                                            : "/web/cgi-bin/hi3510/upgrade.cgi";
            QCOMPARE(uploadedHashes(camera, path), QStringList{hash});
            QCOMPARE(camsimfleet::fetchJson(camera, "/camsim/status")["firmwareVersion"].toString(),
                     QString("2.2.0.1"));
        }
        QCOMPARE(statesIn(state).keys("verified").size(), 20);
        QVERIFY(!readFile(state).contains(fleet.first().password.toUtf8()));
    }
    // Killed once the first camera is verified; the rerun takes up only the others.
    void interruptedRunResumes()
    {
        const QString state = dir.filePath("winbond.json");
        const QStringList options = upgrade("--webui", "1.1.0.0", 1 << 20);
        QProcess first;
        qputenv("VELTOR_PASSWORD", fleet.first().password.toUtf8());
        first.start(QStringLiteral(VELTOR_CLI),
                    options + QStringList{"--all-family", "winbond", "--parallel", "1",
                                          "--state-file", state});
        QTRY_VERIFY_WITH_TIMEOUT(statesIn(state).values().contains("verified"), 60000);
        first.kill();
        QVERIFY(first.waitForFinished(5000));
        QCOMPARE(statesIn(state).size(), 10);
        const QStringList verifiedFirst = statesIn(state).keys("verified");
        QVERIFY2(verifiedFirst.size() < 10, "every camera was done before the interruption");

        // The slowest cameras are still restarting: the rerun searches until they answer.
        const CliRun rerun =
            runCli(options + QStringList{"--only-failed", state, "--search-time", "30"},
                   fleet.first().password, 180000);
        QVERIFY2(rerun.exitCode == 0, qPrintable(rerun.out + rerun.err));
        QVERIFY2(rerun.out.contains("\n10 verified\n"), qPrintable(rerun.out));
        for (const camsimfleet::Camera &camera : fleet.mid(0, 10)) { // the Winbond ones
            const QStringList uploads = uploadedHashes(camera, "/upgrade_htmls.cgi");
            QCOMPARE(uploads.value(uploads.size() - 1), hash);
            QVERIFY(uploads.size() == 1 || !verifiedFirst.contains(camera.mac)); // not sent again
            QCOMPARE(camsimfleet::fetchJson(camera, "/camsim/status")["webVersion"].toString(),
                     QString("1.1.0.0"));
            QCOMPARE(statesIn(state).value(camera.mac), QStringLiteral("verified"));
        }
    }

    // One camera: the run waits for its restart too, not only for a crowd's.
    void oneCamera()
    {
        const CliRun run =
            runCli(upgrade("--webui", "1.1.0.0", 4096) +
                       QStringList{"--state-file", dir.filePath("one.json"), fleet.last().ip},
                   fleet.first().password, 120000);
        QVERIFY2(run.exitCode == 0 && run.out.contains("\n1 verified\n"),
                 qPrintable(run.out + run.err));
    }

private:
    // The options to upload `size` random bytes, their SHA-256 kept in `hash`.
    QStringList upgrade(const QString &kind, const QString &version, int size)
    {
        QByteArray content(size, 0);
        for (char &byte : content)
            byte = char(QRandomGenerator::global()->generate());
        hash = QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex();
        const QString file = dir.filePath(kind.mid(2) + " 1.bin"); // a space, as names have
        writeFile(file, content);
        return QStringList{"upgrade", kind, "--file", file} +
               QString("--user %1 --expect-version %2 --reboot-timeout 60")
                   .arg(fleet.first().user, version)
                   .split(' ');
    }
    QVector<camsimfleet::Camera> fleet;
    QTemporaryDir dir;
    QString hash; // of the file last written
};

QTEST_GUILESS_MAIN(tst_UpgradeE2e)
#include "tst_upgrade_e2e.moc"
