// veltor-cli sd on simulated cameras; fetched files compared by SHA-256 with what they serve.
#include "camsimfleet.h"
#include "clirun.h"
#include "filehashes.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QtTest>

class TestSdCliEndToEnd : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        CAMSIM_FLEET_OR_SKIP(fleet);
        QCOMPARE(fleet.size(), 3);
        haisi = fleet.at(1);
    }
    void init() { control("reset=1"); }
    void get_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("misbehave"); // query for the simulator
        QTest::addColumn<QString>("fromCamera");
        QTest::addColumn<QString>("local"); // where it lands below DEST
        QTest::addColumn<QString>("lost");  // reported, absent, exit status 1
        const auto row = [](const char *name, const QString &path, const QString &misbehave,
                            const QString &fromCamera, const QString &local, const QString &lost) {
            QTest::newRow(name) << path << misbehave << fromCamera << local << lost;
        };
        const QString picture = "20261123/images001/P26112310000101.jpg", day = "20261123/";
        const QString recording = day + "record001/R20261123_100001_0001.264";
        const QString lost = "20261124/images001/";
        row("file", picture, "", picture, "P26112310000101.jpg", "");
        row("sub-folder", "20261124/record001", "", "20261124/record001/", "record001/", "");
        row("day folder", day, "", day, day, "");
        row("card", "/", "", "", "", "");
        row("cut recording", "20261123", "cut=" + recording, day, day, recording);
        row("failing listing", "20261124", "fail=" + lost, "20261124/", "20261124/", lost);
    }
    void get()
    {
        QFETCH(QString, fromCamera);
        QFETCH(QString, local);
        QFETCH(QString, lost);
        QFETCH(QString, misbehave);
        QFETCH(QString, path);
        control("reset=1&" + misbehave);
        QTemporaryDir sandbox;
        const QString dest = sandbox.filePath("dest");
        const CliRun run = sd({"get", path, dest}, true);
        QCOMPARE(run.exitCode, lost.isEmpty() ? 0 : 1);
        QMap<QString, QByteArray> expected;
        const QMap<QString, QByteArray> onCamera = camsimfleet::sdCardHashes(haisi, fromCamera);
        for (auto it = onCamera.begin(); it != onCamera.end(); ++it) {
            const QString name =
                fromCamera.endsWith('/') || fromCamera.isEmpty() ? local + it.key() : local;
            if (lost.isEmpty() || !QString(fromCamera + it.key()).startsWith(lost))
                expected.insert(name, it.value());
        }
        QVERIFY(!expected.isEmpty());
        QCOMPARE(testsupport::fileHashes(dest), expected);
        QCOMPARE(run.out.count('\n'), expected.size()); // one line a file
        if (!lost.isEmpty())
            QVERIFY2(run.err.contains("not fetched: " + lost), qPrintable(run.err));
        QCOMPARE(QDir(sandbox.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList{"dest"});
    }
    void fails_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("password");
        QTest::addColumn<QString>("message");
        QTest::newRow("wrong password") << haisi.ip << "not-it"
                                        << "password is not correct!";
        QTest::newRow("Winbond") << fleet.at(0).ip << haisi.password << "do not support SD cards";
        QTest::newRow("no card") << fleet.at(2).ip << haisi.password << "No SD card detected";
        QTest::newRow("nobody there") << "000000000001" << haisi.password << "no camera answered";
    }
    void fails()
    {
        QFETCH(QString, target);
        QFETCH(QString, password);
        QFETCH(QString, message);
        const QString never = QDir::temp().filePath("never-made");
        for (const QStringList &action :
             QList<QStringList>{{"status"}, {"ls"}, {"get", "20261123", never}, {"format"}}) {
            const CliRun run =
                sd(action + QStringList{"--yes", "--user", haisi.user, target}, password);
            QCOMPARE(run.exitCode, 1);
            QVERIFY2(run.err.contains(message), qPrintable(action.first() + ": " + run.err));
        }
        QVERIFY(!QFileInfo::exists(never));
        QCOMPARE(control("").size(), 2 * (3 + 2)); // nothing formatted
    }
    // Listings as the simulator lays the card out (tests/camsim).
    void statusListFormat()
    {
        const CliRun run = sd({"status", "--format", "json"}, true); // text: prompt_no_echo.py
        QCOMPARE(run.exitCode, 0);
        const QJsonObject status = QJsonDocument::fromJson(run.out.toUtf8()).object();
        QCOMPARE(status["status"].toString(), QString("Ready"));
        QCOMPARE(status["totalKB"].toDouble(), 15558144.0);
        QCOMPARE(status["usedKB"].toDouble() + status["freeKB"].toDouble(), 15558144.0);
        const CliRun text = sd({"ls", "20261123/images001"}),
                     json = sd({"ls", "20261124/record001/", "--format", "json"});
        QCOMPARE(
            text.out.split('\n', Qt::SkipEmptyParts)
                .replaceInStrings(QRegularExpression(" .*"), ""),
            (QStringList{"P26112310000000.jpg", "P26112310000101.jpg", "P26112310000202.jpg"}));
        QCOMPARE(QJsonDocument::fromJson(json.out.toUtf8()).array().at(1)["name"].toString(),
                 QString("R20261124_100001_0001.264"));
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath("pw"), haisi.password.toUtf8() + "\r\nsecond line\n"));
        // The file's first line, though the environment names another.
        const CliRun format = sd({"format", "--yes", "--user", haisi.user, "--password-file",
                                  dir.filePath("pw"), haisi.mac},
                                 QStringLiteral("not-the-password"));
        QCOMPARE(format.exitCode, 0);
        QCOMPARE(format.out, QString("Success!\n"));
        QVERIFY(!format.err.contains(haisi.password));
        const CliRun empty = sd({"ls"});
        QVERIFY(control("").isEmpty() && empty.exitCode == 0 && empty.out.isEmpty());
    }

private:
    CliRun sd(const QStringList &arguments, const QString &password)
    {
        return runCli(QStringList{"sd"} + arguments + QStringList{"--wait", "300"}, password);
    }
    CliRun sd(const QStringList &arguments, bool byMac = false)
    {
        return sd(arguments + QStringList{"--user", haisi.user,
                                          byMac ? QString(haisi.mac).replace(":", "-").toLower()
                                                : haisi.ip},
                  haisi.password);
    }
    QJsonArray control(const QString &query) { return camsimfleet::sdCardControl(haisi, query); }

    QVector<camsimfleet::Camera> fleet; // Winbond, Haisi, Haisi without a card (CMakeLists.txt)
    camsimfleet::Camera haisi;
};

QTEST_GUILESS_MAIN(TestSdCliEndToEnd)
#include "tst_sdcli_e2e.moc"
