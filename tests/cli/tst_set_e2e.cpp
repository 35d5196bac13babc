// veltor-cli set on simulated cameras; each row starts where the last left the camera.
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
    void set_data()
    {
        QTest::addColumn<int>("index"); // Winbond 0 and 1, Haisi 2
        QTest::addColumn<QString>("options");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("message"); // "MAC" stands for the camera's
        QTest::addColumn<QString>("ip");      // what the camera has afterwards
        QTest::addColumn<QString>("gateway");
        QTest::addColumn<int>("port");
        QTest::addColumn<bool>("dhcp");
        const auto row = [](const char *name, int index, const QString &options, int exitCode,
                            const QString &message, const QString &ip, const QString &gateway,
                            int port, bool dhcp) {
            QTest::newRow(name) << index << options << exitCode << message << ip << gateway << port
                                << dhcp;
        };
        const QString ip = "10.78.0.102", gateway = "10.78.0.254", at = "verified: MAC at " + ip;
        row("wrong password, too long for a Winbond field", 2, "--ip 10.78.0.150 --timeout 1", 1,
            "Your username or password is not correct!", {}, {}, 0, false);
        row("winbond part above 255", 0, "--ip 10.78.0.300 --timeout 1", 2,
            "Ip-address has invalid values", {}, {}, 0, false);
        row("winbond: address, mask and port", 0, "--ip 10.78.0.101 --mask 255.255.255.0 --port 81",
            0, "verified: MAC at 10.78.0.101", "10.78.0.101", "10.78.0.1", 81, false);
        // The gateway goes into the new address's /24, as the window sends it.
        row("haisi: address, gateway moved", 2, "--ip " + ip + " --gateway 10.78.9.254", 0, at, ip,
            gateway, 80, false);
        row("haisi: dhcp, found by MAC at its new address", 2, "--dhcp", 0, at, ip, gateway, 80,
            true);
        row("haisi: only a port, dhcp stays on", 2, "--port 81", 0, at + " port 81", ip, {}, 81,
            true);
        // The camera takes port 8080, but its reply has room for one byte of it.
        row("port the reply cannot carry", 1, "--port 8080 --timeout 5", 1,
            "not verified after 5 s: MAC: port 144 (wanted 8080)", {}, {}, 8080, false);
    }
    void set()
    {
        QFETCH(int, index);
        QFETCH(QString, options);
        QFETCH(int, exitCode);
        QFETCH(QString, message);
        QFETCH(QString, ip);
        QFETCH(int, port);
        camsimfleet::Camera &camera = fleet[index];
        const CliRun run = runCli(
            QStringList{"set", camera.mac, "--user", camera.user, "--verify", "--timeout", "30"} +
                options.split(' '),
            QString(QTest::currentDataTag()).contains("password") ? "not-the-password"
                                                                  : camera.password);
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
        QVERIFY(gateway.isEmpty() || status.value("gateway").toString() == gateway);
    }

private:
    QVector<camsimfleet::Camera> fleet;
};

QTEST_GUILESS_MAIN(tst_SetE2e)
#include "tst_set_e2e.moc"
