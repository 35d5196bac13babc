// The upgrade state file: what an interrupted run leaves behind must bring
// the next run back to exactly the targets still to do, and a damaged file
// must be refused with a reason rather than taken for an empty one.
#include "cli/commands.h"
#include "cli/upgradestate.h"
#include "cli/upgradetargets.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace veltor::cli;

namespace {

UpgradeTarget target(const QString &mac, TargetState state, const QString &detail = QString())
{
    UpgradeTarget t;
    t.target = mac;
    t.mac = mac;
    t.ip = QStringLiteral("10.78.1.") + mac.right(1);
    t.family = QStringLiteral("Haisi");
    t.state = state;
    t.detail = detail;
    return t;
}

} // namespace

class tst_UpgradeState : public QObject
{
    Q_OBJECT

private slots:
    void roundTrip();
    void damaged_data();
    void damaged();
    void done_data();
    void done();
    void resumePlan_data();
    void resumePlan();
    void arguments_data();
    void arguments();

private:
    QTemporaryDir dir;
};

void tst_UpgradeState::roundTrip()
{
    UpgradeRun run;
    run.kind = QStringLiteral("firmware");
    run.file = QStringLiteral("/tmp/fw \"1\".pkg");
    run.expectVersion = QStringLiteral("2.2.0.1");
    for (int state = 0; state <= int(TargetState::Failed); ++state)
        run.targets << target(QStringLiteral("02:56:4C:00:00:0%1").arg(state), TargetState(state),
                              state == int(TargetState::Failed) ? "the camera \"said\" no\n" : "");
    run.targets << UpgradeTarget{QStringLiteral("10.78.9.9"),
                                 {},
                                 {},
                                 {},
                                 TargetState::Failed,
                                 QStringLiteral("did not answer the search")};
    const QString path = dir.filePath(QStringLiteral("state.json"));
    QString error;
    QVERIFY2(saveState(path, run, &error), qPrintable(error));
    const std::optional<UpgradeRun> back = loadState(path, &error);
    QVERIFY2(back, qPrintable(error));
    QCOMPARE(stateJson(*back), stateJson(run));
    QCOMPARE(back->targets.size(), run.targets.size());
    QCOMPARE(back->targets.at(int(TargetState::WaitingForReboot)).state,
             TargetState::WaitingForReboot);
}

void tst_UpgradeState::damaged_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");
    QTest::newRow("empty") << QByteArray() << "not JSON";
    QTest::newRow("cut short") << QByteArray("{\"targets\": [{\"mac\": \"02:") << "not JSON";
    QTest::newRow("a list") << QByteArray("[1, 2]") << "no list of targets";
    QTest::newRow("targets not a list") << QByteArray("{\"targets\": 3}") << "no list of targets";
    QTest::newRow("unknown state")
        << QByteArray("{\"targets\": [{\"mac\": \"02:56:4C:00:00:01\", \"state\": \"done\"}]}")
        << "target 1 has no name or an unknown state";
    QTest::newRow("nameless target") << QByteArray("{\"targets\": [{\"state\": \"queued\"}]}")
                                     << "target 1 has no name or an unknown state";
    QTest::newRow("binary") << QByteArray("\x00\xff\xfe garbage", 12) << "not JSON";
}

void tst_UpgradeState::damaged()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    const QString path = dir.filePath(QStringLiteral("damaged.json"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(content);
    file.close();
    QString error;
    QVERIFY(!loadState(path, &error));
    QVERIFY2(error.contains(path) && error.contains(reason), qPrintable(error));
}

void tst_UpgradeState::done_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("doneWhenVerifying");
    QTest::addColumn<bool>("doneOtherwise");
    QTest::newRow("queued") << int(TargetState::Queued) << false << false;
    QTest::newRow("uploading, interrupted") << int(TargetState::Uploading) << false << false;
    QTest::newRow("sent") << int(TargetState::Sent) << false << true;
    QTest::newRow("waiting, interrupted") << int(TargetState::WaitingForReboot) << false << false;
    QTest::newRow("verified") << int(TargetState::Verified) << true << true;
    QTest::newRow("failed") << int(TargetState::Failed) << false << false;
}

void tst_UpgradeState::done()
{
    QFETCH(int, state);
    const UpgradeTarget t = target(QStringLiteral("02:56:4C:00:00:01"), TargetState(state));
    QTEST(isDone(t, true), "doneWhenVerifying");
    QTEST(isDone(t, false), "doneOtherwise");
    QCOMPARE(stateFromName(stateName(TargetState(state))), TargetState(state));
}

// What a rerun with --only-failed takes on, from the earlier state of each
// target and what the search shows now. Camera 1 reports the new version.
void tst_UpgradeState::resumePlan_data()
{
    QTest::addColumn<int>("earlier");
    QTest::addColumn<bool>("answers");
    QTest::addColumn<int>("planned");
    QTest::addColumn<bool>("uploads");
    const int verified = int(TargetState::Verified), queued = int(TargetState::Queued),
              failed = int(TargetState::Failed);
    QTest::newRow("verified stays") << verified << true << verified << false;
    QTest::newRow("sent, new version shown") << int(TargetState::Sent) << true << verified << false;
    QTest::newRow("restarting, new version shown")
        << int(TargetState::WaitingForReboot) << true << verified << false;
    QTest::newRow("upload cut short: again, whatever it shows")
        << int(TargetState::Uploading) << true << queued << true;
    QTest::newRow("failed: again") << failed << true << queued << true;
    QTest::newRow("never started") << queued << true << queued << true;
    QTest::newRow("silent now") << int(TargetState::Sent) << false << failed << false;
}

void tst_UpgradeState::resumePlan()
{
    QFETCH(int, earlier);
    QFETCH(bool, answers);
    UpgradeRun run;
    run.kind = QStringLiteral("webui");
    run.expectVersion = QStringLiteral("1.1.0.0");
    const QString mac = QStringLiteral("02:56:4C:00:00:01");
    const QVector<UpgradeTarget> before{target(mac, TargetState(earlier)),
                                        target("02:56:4C:00:00:02", TargetState::Verified)};
    QVector<veltor::SeenCamera> seen(1);
    seen[0].record.mac = answers ? mac : QStringLiteral("02:56:4C:00:00:09");
    seen[0].record.webui = QStringLiteral("1.1.0.0");
    seen[0].record.firmware = QStringLiteral("9.9.9.9");
    QHash<int, veltor::SeenCamera> cameras;
    const QVector<UpgradeTarget> plan =
        planTargets(namesToRedo(before, true), before, seen, run, &cameras);
    QCOMPARE(plan.size(), 2); // the other, done target is kept
    const auto planned = std::find_if(plan.cbegin(), plan.cend(),
                                      [&](const UpgradeTarget &t) { return t.target == mac; });
    QVERIFY(planned != plan.cend());
    QTEST(int(planned->state), "planned");
    QTEST(cameras.contains(int(planned - plan.cbegin())), "uploads");
}

// Refusals that come before any search, so no datagram leaves this test.
void tst_UpgradeState::arguments_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("message");
    const QString file = QCoreApplication::applicationFilePath(); // any readable file
    const QStringList upgrade{"upgrade", "--user", "admin", "--file", file};
    QTest::newRow("upgrade: no kind")
        << upgrade + QStringList{"10.0.0.1"} << int(Usage) << "give one of --firmware and --webui";
    QTest::newRow("upgrade: both kinds")
        << upgrade + QStringList{"--firmware", "--webui", "10.0.0.1"} << int(Usage)
        << "give one of --firmware and --webui";
    QTest::newRow("upgrade: no targets")
        << upgrade + QStringList{"--firmware"} << int(Usage) << "no targets";
    QTest::newRow("upgrade: two ways of naming")
        << upgrade + QStringList{"--firmware", "--all-family", "Haisi", "10.0.0.1"} << int(Usage)
        << "exclude each other";
    QTest::newRow("upgrade: unknown family")
        << upgrade + QStringList{"--webui", "--all-family", "Sony"} << int(Usage)
        << "--all-family wants Haisi or Winbond, not \"Sony\"";
    QTest::newRow("upgrade: parallel 0")
        << upgrade + QStringList{"--firmware", "--parallel", "0", "10.0.0.1"} << int(Usage)
        << "--parallel wants a number from 1 to 64";
    QTest::newRow("upgrade: no file")
        << QStringList{"upgrade", "--user", "admin", "--firmware", "10.0.0.1"} << int(Usage)
        << "--file is required";
    QTest::newRow("upgrade: unreadable file")
        << QStringList{"upgrade", "--user", "admin", "--firmware", "--file", "/nonexistent/fw.bin",
                       "10.0.0.1"}
        << int(Failure) << "cannot read the file /nonexistent/fw.bin";
    QTest::newRow("upgrade: no user")
        << QStringList{"upgrade", "--firmware", "--file", file, "10.0.0.1"} << int(Usage)
        << "--user is required";
    UpgradeRun done;
    done.kind = QStringLiteral("firmware");
    done.targets << target(QStringLiteral("02:56:4C:00:00:01"), TargetState::Sent);
    const QString donePath = dir.filePath(QStringLiteral("done.json"));
    QString error;
    QVERIFY(saveState(donePath, done, &error));
    QTest::newRow("upgrade: nothing left, no search")
        << QStringList{"upgrade", "--user",        "a",     "--firmware", "--file",
                       file,      "--only-failed", donePath}
        << int(Success) << "";
    QTest::newRow("upgrade: state of the other kind")
        << QStringList{"upgrade", "--user",        "a",     "--webui", "--file",
                       file,      "--only-failed", donePath}
        << int(Failure) << "the state file is of a firmware upgrade, not of a webui upgrade";
    const QString damaged = dir.filePath("damaged.json");
    QFile garbage(damaged);
    garbage.open(QIODevice::WriteOnly);
    garbage.write("\x7f"
                  "ELF, not a state file");
    garbage.close();
    QTest::newRow("upgrade: damaged state")
        << QStringList{"upgrade", "--user",        "a",    "--webui", "--file",
                       file,      "--only-failed", damaged}
        << int(Failure) << "is damaged: not JSON";
    QTest::newRow("set: no MAC") << QStringList{"set", "--dhcp", "--user", "admin"} << int(Usage)
                                 << "give exactly one MAC address";
    QTest::newRow("set: not a MAC") << QStringList{"set", "10.0.0.1", "--dhcp", "--user", "admin"}
                                    << int(Usage) << "\"10.0.0.1\" is not a MAC address";
    QTest::newRow("set: dhcp and address")
        << QStringList{"set", "02:56:4C:00:00:01", "--dhcp", "--ip", "10.0.0.9", "--user", "a"}
        << int(Usage) << "--dhcp and fixed addresses exclude each other";
    QTest::newRow("set: nothing to change")
        << QStringList{"set", "02:56:4C:00:00:01", "--user", "admin"} << int(Usage)
        << "nothing to change";
    QTest::newRow("set: bad timeout")
        << QStringList{"set", "02:56:4C:00:00:01", "--dhcp", "--timeout", "soon", "--user", "a"}
        << int(Usage) << "--timeout wants a number";
    QTest::newRow("set: no user") << QStringList{"set", "02:56:4C:00:00:01", "--dhcp"} << int(Usage)
                                  << "--user is required";
}

void tst_UpgradeState::arguments()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    qputenv("VELTOR_PASSWORD", "secret");
    QString outText;
    QString errText;
    QTextStream out(&outText);
    QTextStream err(&errText);
    QTEST(run(QStringList{"veltor-cli"} + arguments, Io{out, err}), "code");
    err.flush();
    QVERIFY2(errText.contains(message), qPrintable(errText));
    QVERIFY(!errText.contains("secret"));
}

QTEST_GUILESS_MAIN(tst_UpgradeState)
#include "tst_upgradestate.moc"
