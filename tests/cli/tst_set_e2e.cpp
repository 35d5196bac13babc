// veltor-cli set, the real program, against simulated cameras of both
// families on the tool's /24 (fleet in CMakeLists.txt): refusals change
// nothing, accepted changes are found again by --verify, and a camera that
// cannot show what it was sent is reported with the difference.
#include "camsimfleet.h"
#include "clirun.h"

#include <QtTest>

namespace {

constexpr int kRunTimeoutMs = 60000;

// Index in the fleet: Winbond 0 and 1, Haisi 2.
const int kWinbond = 0;
const int kWinbondNarrowPort = 1; // its search reply carries one byte of the port
const int kHaisi = 2;

} // namespace

class tst_SetE2e : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void refusals_data();
    void refusals();
    void verifiesChange_data();
    void verifiesChange();
    void reportsWhatDiffers();

private:
    CliRun set(int index, const QStringList &options, const QString &password);
    QVector<camsimfleet::Camera> fleet;
};

void tst_SetE2e::initTestCase()
{
    CAMSIM_FLEET_OR_SKIP(fleet);
    QCOMPARE(fleet.size(), 3);
}

CliRun tst_SetE2e::set(int index, const QStringList &options, const QString &password)
{
    const camsimfleet::Camera &camera = fleet.at(index);
    const CliRun run = runCli(QStringList{"set", camera.mac, "--user", camera.user} + options,
                              password, kRunTimeoutMs);
    // Whatever happened, the password is nowhere in what the user sees.
    const bool leaked = run.out.contains(password) || run.err.contains(password);
    return leaked ? CliRun{-2, run.out, run.err} : run;
}

void tst_SetE2e::refusals_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<bool>("rightPassword");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("message");
    QTest::newRow("wrong password") << kHaisi << QStringList{"--ip", "10.78.0.150"} << false << 1
                                    << "Your username or password is not correct!";
    QTest::newRow("winbond part above 255") << kWinbond << QStringList{"--ip", "10.78.0.300"}
                                            << true << 2 << "Ip-address has invalid values";
}

void tst_SetE2e::refusals()
{
    QFETCH(int, index);
    QFETCH(QStringList, options);
    QFETCH(bool, rightPassword);
    QFETCH(QString, message);
    const camsimfleet::Camera &camera = fleet.at(index);
    // --verify too: a refused change is not waited for.
    const CliRun run = set(index, options + QStringList{"--verify", "--timeout", "1"},
                           rightPassword ? camera.password : "not-it");
    QTEST(run.exitCode, "exitCode");
    QVERIFY2(run.err.contains(message), qPrintable(run.err));
    QVERIFY2(run.out.isEmpty(), qPrintable(run.out));
    const QJsonObject status = camsimfleet::fetchJson(camera, "/camsim/status");
    QCOMPARE(status.value("ip").toString(), camera.ip);
    QCOMPARE(status.value("httpPort").toInt(), camera.httpPort);
}

void tst_SetE2e::verifiesChange_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("ip");
    QTest::addColumn<QString>("gateway");
    QTest::addColumn<int>("port");
    QTest::addColumn<bool>("dhcp");
    QTest::newRow("winbond: address, mask and port")
        << kWinbond << QStringList{"--ip", "10.78.0.101", "--mask", "255.255.255.0", "--port", "81"}
        << "10.78.0.101"
        << "10.78.0.1" << 81 << false;
    // The gateway goes into the new address's /24, as the window sends it.
    QTest::newRow("haisi: address, gateway moved")
        << kHaisi << QStringList{"--ip", "10.78.0.102", "--gateway", "10.78.9.254"} << "10.78.0.102"
        << "10.78.0.254" << 80 << false;
    QTest::newRow("haisi: dhcp, found by MAC at its new address")
        << kHaisi << QStringList{"--dhcp"} << "10.78.0.102"
        << "10.78.0.254" << 80 << true;
}

void tst_SetE2e::verifiesChange()
{
    QFETCH(int, index);
    QFETCH(QStringList, options);
    QFETCH(QString, ip);
    QFETCH(int, port);
    camsimfleet::Camera camera = fleet.at(index);
    const CliRun run =
        set(index, options + QStringList{"--verify", "--timeout", "30"}, camera.password);
    QVERIFY2(run.exitCode == 0, qPrintable(run.out + run.err));
    QVERIFY2(run.out.contains("verified: " + camera.mac + " at " + ip), qPrintable(run.out));
    camera.ip = ip;
    camera.httpPort = port;
    const QJsonObject status = camsimfleet::fetchJson(camera, "/camsim/status");
    QCOMPARE(status.value("ip").toString(), ip);
    QTEST(status.value("gateway").toString(), "gateway");
    QTEST(status.value("dhcp").toBool(), "dhcp");
}

// The camera takes port 8080, but its reply has room for one byte of it.
void tst_SetE2e::reportsWhatDiffers()
{
    const camsimfleet::Camera &camera = fleet.at(kWinbondNarrowPort);
    const CliRun run =
        set(kWinbondNarrowPort, {"--port", "8080", "--verify", "--timeout", "5"}, camera.password);
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.out.contains("not verified after 5 s: " + camera.mac + ": port 144 (wanted 8080)"),
             qPrintable(run.out));
}

QTEST_GUILESS_MAIN(tst_SetE2e)
#include "tst_set_e2e.moc"
