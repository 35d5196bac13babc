// veltor-cli set, the real program, against simulated cameras of both
// families on the tool's /24 (fleet in CMakeLists.txt): refusals change
// nothing and are not waited for, accepted changes are found again by
// --verify, and a camera that cannot show what it was sent is reported with
// the difference. The rows run in order, each on the camera as the last left it.
#include "camsimfleet.h"
#include "clirun.h"

#include <QtTest>

class tst_SetE2e : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        CAMSIM_FLEET_OR_SKIP(fleet);
        QCOMPARE(fleet.size(), 3);
    }
    void set_data();
    void set();

private:
    QVector<camsimfleet::Camera> fleet;
};

void tst_SetE2e::set_data()
{
    QTest::addColumn<int>("index"); // Winbond 0 and 1, Haisi 2
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("message"); // "MAC" stands for the camera's
    QTest::addColumn<QString>("ip");      // what the camera has afterwards
    QTest::addColumn<QString>("gateway");
    QTest::addColumn<int>("port");
    QTest::addColumn<bool>("dhcp");
    const QStringList quick{"--verify", "--timeout", "1"};
    const QString same; // as the camera had it
    QTest::newRow("wrong password")
        << 2 << QStringList{"--ip", "10.78.0.150"} + quick << 1
        << "Your username or password is not correct!" << same << same << 0 << false;
    QTest::newRow("winbond part above 255")
        << 0 << QStringList{"--ip", "10.78.0.300"} + quick << 2 << "Ip-address has invalid values"
        << same << same << 0 << false;
    QTest::newRow("winbond: address, mask and port")
        << 0 << QStringList{"--ip", "10.78.0.101", "--mask", "255.255.255.0", "--port", "81"} << 0
        << "verified: MAC at 10.78.0.101" << QString("10.78.0.101") << "10.78.0.1" << 81 << false;
    // The gateway goes into the new address's /24, as the window sends it.
    const QString haisiIp = "10.78.0.102", haisiGateway = "10.78.0.254";
    QTest::newRow("haisi: address, gateway moved")
        << 2 << QStringList{"--ip", haisiIp, "--gateway", "10.78.9.254"} << 0
        << "verified: MAC at " + haisiIp << haisiIp << haisiGateway << 80 << false;
    QTest::newRow("haisi: dhcp, found by MAC at its new address")
        << 2 << QStringList{"--dhcp"} << 0 << "verified: MAC at " + haisiIp << haisiIp
        << haisiGateway << 80 << true;
    QTest::newRow("haisi: only a port, dhcp stays on")
        << 2 << QStringList{"--port", "81"} << 0 << "verified: MAC at " + haisiIp + " port 81"
        << haisiIp << same << 81 << true;
    // The camera takes port 8080, but its reply has room for one byte of it.
    QTest::newRow("port the reply cannot carry")
        << 1 << QStringList{"--port", "8080", "--timeout", "5"} << 1
        << "not verified after 5 s: MAC: port 144 (wanted 8080)" << same << same << 8080 << false;
}

void tst_SetE2e::set()
{
    QFETCH(int, index);
    QFETCH(QStringList, options);
    QFETCH(int, exitCode);
    QFETCH(QString, message);
    QFETCH(QString, ip);
    QFETCH(int, port);
    camsimfleet::Camera &camera = fleet[index];
    const bool rightPassword = !QString(QTest::currentDataTag()).contains("password");
    const CliRun run = runCli(
        QStringList{"set", camera.mac, "--user", camera.user, "--verify", "--timeout", "30"} +
            options,
        rightPassword ? camera.password : "not-it");
    QVERIFY2(run.exitCode == exitCode, qPrintable(run.out + run.err));
    const bool sent = exitCode == 0 || port != 0;
    QVERIFY2((sent ? run.out : run.err).contains(message.replace("MAC", camera.mac)),
             qPrintable(run.out + run.err));
    QVERIFY2(sent || run.out.isEmpty(), qPrintable(run.out));
    camera.ip = ip.isEmpty() ? camera.ip : ip;
    camera.httpPort = port ? port : camera.httpPort;
    const QJsonObject status = camsimfleet::fetchJson(camera, "/camsim/status");
    QCOMPARE(status.value("ip").toString(), camera.ip);
    QTEST(status.value("dhcp").toBool(), "dhcp");
    QFETCH(QString, gateway);
    if (!gateway.isEmpty())
        QCOMPARE(status.value("gateway").toString(), gateway);
}

QTEST_GUILESS_MAIN(tst_SetE2e)
#include "tst_set_e2e.moc"
