#include "camsim/discoveryresponder.h"
#include "camsim/fleetoptions.h"

#include <QtTest>

using namespace veltor::camsim;

namespace {

QString field(const CameraSettings &camera, const QString &name)
{
    const QMap<QString, QString> fields{
        {"family", familyName(camera.family)},
        {"name", camera.name},
        {"mac", camera.mac},
        {"ip", camera.ip},
        {"port", QString::number(camera.httpPort)},
        {"deviceid", camera.deviceId},
        {"delay", QString::number(camera.behaviour.delayMs)},
        {"user", camera.user},
        {"both", QString::number(camera.behaviour.bothProtocols)},
        {"malformed", QString::number(int(camera.behaviour.malformed))},
        {"dhcp", QString::number(camera.dhcp)},
        {"sd", camera.sdCard->present ? camera.sdCard->status : QStringLiteral("none")},
    };
    return fields.value(name, "?");
}

} // namespace

class TestFleetOptions : public QObject
{
    Q_OBJECT

private slots:
    void cameras_data();
    void cameras();
    void otherDatagramsReachTheirCamera();
};

void TestFleetOptions::cameras_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("expected"); // or the start of the error message
    QTest::newRow("Winbond first") << "--winbond 2 --haisi 1" << 1 << "family"
                                   << "Winbond";
    QTest::newRow("then Haisi") << "--winbond 2 --haisi 1" << 2 << "family"
                                << "Haisi";
    QTest::newRow("names count per family") << "--winbond 2 --haisi 1" << 2 << "name"
                                            << "VELTOR-H001";
    QTest::newRow("MACs count across the fleet") << "--winbond 2 --haisi 300" << 257 << "mac"
                                                 << "02:56:4C:00:01:02";
    QTest::newRow("addresses skip .255 and .0") << "--winbond 3 --base-ip 10.78.1.254" << 2 << "ip"
                                                << "10.78.2.2";
    QTest::newRow("two ranges take turns")
        << "--winbond 2 --haisi 3 --base-ip 10.79.1.1 --base-ip 10.80.1.254" << 3 << "ip"
        << "10.80.2.1";
    QTest::newRow("two ranges, the first")
        << "--winbond 5 --base-ip 10.79.1.1 --base-ip 10.80.1.1" << 4 << "ip"
        << "10.79.1.3";
    QTest::newRow("own address: one port")
        << "--haisi 3 --bind-each-ip --http-port 81" << 2 << "port"
        << "81";
    QTest::newRow("shared address: a port each") << "--haisi 3 --http-port 8080" << 2 << "port"
                                                 << "8082";
    QTest::newRow("device IDs") << "--haisi 12" << 11 << "deviceid"
                                << "VLTR00000012";
    QTest::newRow("spread over the window") << "--winbond 5 --spread 100 --delay 10" << 4 << "delay"
                                            << "110";
    QTest::newRow("override") << "--winbond 2 --camera 1:user=root,both=1" << 1 << "user"
                              << "root";
    QTest::newRow("override, second key")
        << "--winbond 2 --camera 1:user=root,both=1" << 1 << "both"
        << "1";
    QTest::newRow("override, MAC with colons")
        << "--winbond 2 --camera 0:mac=00:11:22:33:44:55" << 0 << "mac"
        << "00:11:22:33:44:55";
    QTest::newRow("malformed for all") << "--haisi 2 --malformed status" << 1 << "malformed"
                                       << QString::number(int(Malformed::Status));
    QTest::newRow("no SD card") << "--haisi 2 --camera 1:sd=none" << 1 << "sd"
                                << "none";
    QTest::newRow("DHCP") << "--haisi 1 --dhcp" << 0 << "dhcp"
                          << "1";
    QTest::newRow("bad count") << "--winbond many" << -1 << ""
                               << "--winbond wants a number";
    QTest::newRow("bad address") << "--winbond 1 --base-ip 10.78.1" << -1 << ""
                                 << "--base-ip wants an IPv4 address";
    QTest::newRow("bad second range") << "--winbond 1 --base-ip 10.79.1.1 --base-ip ten" << -1 << ""
                                      << "--base-ip wants an IPv4 address, not \"ten\"";
    QTest::newRow("bad malformed") << "--winbond 1 --malformed odd" << -1 << ""
                                   << "--malformed wants";
    QTest::newRow("unknown override") << "--winbond 1 --camera 0:colour=red" << -1 << ""
                                      << "camera 0: unknown setting";
    QTest::newRow("bad override value") << "--winbond 1 --camera 0:both=yes" << -1 << ""
                                        << "camera 0: bad value";
    QTest::newRow("override past the fleet") << "--winbond 1 --camera 5:both=1" << -1 << ""
                                             << "--camera 5: there are only 1";
    QTest::newRow("ports run out") << "--haisi 10 --http-port 65530" << -1 << ""
                                   << "10 cameras from HTTP port 65530";
    QTest::newRow("stray argument") << "--winbond 1 extra" << -1 << ""
                                    << "unexpected argument";
}

void TestFleetOptions::cameras()
{
    QFETCH(QString, arguments);
    QFETCH(int, index);
    QFETCH(QString, field);
    QFETCH(QString, expected);
    FleetOptions options;
    QVector<CameraSettings> cameras;
    QString error;
    const QStringList argv = QStringList{"veltor-camsim"} + arguments.split(' ');
    const bool ok =
        parseFleetOptions(argv, &options, &error) && makeCameraSettings(options, &cameras, &error);
    if (index < 0) {
        QVERIFY(!ok);
        QVERIFY2(error.startsWith(expected), qPrintable(error));
        return;
    }
    QVERIFY2(ok, qPrintable(error));
    QCOMPARE(::field(cameras.at(index), field), expected);
}

void TestFleetOptions::otherDatagramsReachTheirCamera()
{
    // A configuration command is broadcast to all; only the camera it names takes it.
    qRegisterMetaType<SimDatagram>();
    DiscoveryResponder responder;
    QVector<QByteArray> taken(3);
    for (int i = 0; i < 3; ++i) {
        CameraSettings settings;
        settings.mac = QStringLiteral("M%1").arg(i);
        auto *camera = new SimCamera(settings, &responder);
        camera->addDatagramHandler([camera, &taken, i](const SimDatagram &datagram) {
            if (!datagram.data.contains(camera->settings().mac.toLatin1()))
                return false;
            taken[i] = datagram.data;
            return true;
        });
        responder.addCamera(camera);
    }
    QSignalSpy unhandled(&responder, &DiscoveryResponder::unhandledDatagram);
    responder.dispatch({"CMD for M1", QHostAddress("10.78.0.1"), 8002, 8002});
    responder.dispatch({"CMD for nobody", QHostAddress("10.78.0.1"), 8002, 8002});
    QCOMPARE(taken, (QVector<QByteArray>{{}, "CMD for M1", {}}));
    QCOMPARE(unhandled.size(), 1);
}

QTEST_GUILESS_MAIN(TestFleetOptions)
#include "tst_fleetoptions.moc"
