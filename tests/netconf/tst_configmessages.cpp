#include "netconf/configmessages.h"
#include "netconf/configparse.h"

#include <QtTest>

using veltor::NetworkSettings;

Q_DECLARE_METATYPE(veltor::NetworkSettings)

namespace {

NetworkSettings staticSettings(const QString &port = QStringLiteral("80"))
{
    NetworkSettings s;
    s.ip = QStringLiteral("192.168.1.20");
    s.subnet = QStringLiteral("255.255.255.0");
    s.gateway = QStringLiteral("192.168.1.1");
    s.dns = QStringLiteral("8.8.8.8");
    s.port = port;
    return s;
}

NetworkSettings dhcpSettings(const QString &port)
{
    NetworkSettings s;
    s.dhcp = true;
    s.port = port;
    return s;
}

const char kMac[] = "00:0A:1b:2C:3D:4E";

} // namespace

class ConfigMessagesTest : public QObject
{
    Q_OBJECT

private slots:
    void hdsRequest_data();
    void hdsRequest();
    void gatewayAdjustment_data();
    void gatewayAdjustment();
    void winbondDatagram_data();
    void winbondDatagram();
    void winbondFieldLimits_data();
    void winbondFieldLimits();
    void winbondToHex_data();
    void winbondToHex();
    void hdsParseRejects_data();
    void hdsParseRejects();
    void winbondParseRoundTrip();
    void cameraCommands_data();
    void cameraCommands();
};

void ConfigMessagesTest::hdsRequest_data()
{
    QTest::addColumn<quint32>("cseq");
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("password");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("expected");

    const QByteArray head = "CMD * HDS/1.0\r\nCSeq:";
    const QByteArray client = "\r\nClient-ID:TzLqRbHwXeNcKvUaPmYdGsJoFiWnBhVr\r\n"
                              "Accept-Type:text/HDP\r\nAuthorization:Basic ";
    const QByteArray dhcpOff = veltor::netconfBody(staticSettings(), QLatin1String(kMac));
    QTest::newRow("dhcp on") << 0u << "admin"
                             << "secret"
                             << veltor::netconfBody(dhcpSettings("80"), QLatin1String(kMac))
                             << head + "0" + client +
                                    "admin:secret\r\nDevice-ID:DEV1\r\nContent-Length:20\r\n\r\n"
                                    "netconf set -dhcp on";
    QTest::newRow("dhcp off") << 1u << "admin"
                              << "" << dhcpOff
                              << head + "1" + client +
                                     "admin:\r\nDevice-ID:DEV1\r\nContent-Length:" +
                                     QByteArray::number(dhcpOff.size()) + "\r\n\r\n" + dhcpOff;
    QTest::newRow("port") << 2u << "admin"
                          << "a:b" << veltor::httpPortBody("8080")
                          << head + "2" + client +
                                 "admin:a:b\r\nDevice-ID:DEV1\r\nContent-Length:27\r\n\r\n"
                                 "httpport set -httpport 8080";
    // Content-Length counts bytes: "ü" is two of them.
    QTest::newRow("non-ascii") << 4294967295u << "jürgen"
                               << "pässwort" << QByteArray("httpport set -httpport \xc3\xbc")
                               << head + "4294967295" + client +
                                      "j\xc3\xbcrgen:p\xc3\xa4sswort\r\nDevice-ID:DEV1\r\n"
                                      "Content-Length:25\r\n\r\nhttpport set -httpport \xc3\xbc";
}

void ConfigMessagesTest::hdsRequest()
{
    QFETCH(quint32, cseq);
    QFETCH(QString, user);
    QFETCH(QString, password);
    QFETCH(QByteArray, body);
    QFETCH(QByteArray, expected);
    const QByteArray request =
        veltor::hdsCmdRequest(cseq, user, password, QStringLiteral("DEV1"), body);
    QCOMPARE(request, expected);

    const auto parsed = veltor::parseHdsCmd(request);
    QVERIFY(parsed);
    QCOMPARE(parsed->cseq, cseq);
    QCOMPARE(parsed->user, user);
    QCOMPARE(parsed->password, password);
    QCOMPARE(parsed->deviceId, QStringLiteral("DEV1"));
    QCOMPARE(parsed->body, body);
}

void ConfigMessagesTest::gatewayAdjustment_data()
{
    QTest::addColumn<QString>("ip");
    QTest::addColumn<QString>("gateway");
    QTest::addColumn<QString>("sent");

    QTest::newRow("other /24") << "192.168.2.50"
                               << "192.168.1.1"
                               << "192.168.2.1";
    QTest::newRow("same /24") << "192.168.2.50"
                              << "192.168.2.254"
                              << "192.168.2.254";
    QTest::newRow("first part differs") << "10.168.2.50"
                                        << "192.168.2.7"
                                        << "10.168.2.7";
    // Compared as text, as typed.
    QTest::newRow("leading zero") << "192.168.02.50"
                                  << "192.168.2.1"
                                  << "192.168.02.1";
}

void ConfigMessagesTest::gatewayAdjustment()
{
    QFETCH(QString, ip);
    QFETCH(QString, gateway);
    QFETCH(QString, sent);
    QCOMPARE(veltor::adjustGateway(ip, gateway), sent);

    NetworkSettings s = staticSettings();
    s.ip = ip;
    s.gateway = gateway;
    const QByteArray body = veltor::netconfBody(s, QLatin1String(kMac));
    QCOMPARE(body, "netconf set -dhcp off -ipaddr " + ip.toUtf8() +
                       " -netmask 255.255.255.0 -gateway " + sent.toUtf8() + " -hwaddr " + kMac +
                       " -fdnsip 8.8.8.8");
}

void ConfigMessagesTest::winbondDatagram_data()
{
    QTest::addColumn<NetworkSettings>("settings");
    QTest::addColumn<QByteArray>("addressesAndPort"); // bytes 66 to 83, hex

    QTest::newRow("dhcp off") << staticSettings()
                              << QByteArray("c0a80114"
                                            "ffffff00"
                                            "c0a80101"
                                            "08080808"
                                            "0050");
    QTest::newRow("dhcp on, port kept") << dhcpSettings("8080")
                                        << QByteArray("00000000000000000000000000000000"
                                                      "1f90");
    QTest::newRow("port 8080") << staticSettings("8080")
                               << QByteArray("c0a80114ffffff00c0a8010108080808"
                                             "1f90");
    QTest::newRow("empty port") << staticSettings("")
                                << QByteArray("c0a80114ffffff00c0a8010108080808"
                                              "0000");
    QTest::newRow("port 65535") << staticSettings("65535")
                                << QByteArray("c0a80114ffffff00c0a8010108080808"
                                              "ffff");
}

void ConfigMessagesTest::winbondDatagram()
{
    QFETCH(NetworkSettings, settings);
    QFETCH(QByteArray, addressesAndPort);
    const QByteArray datagram =
        veltor::winbondConfigDatagram(QLatin1String(kMac), "admin", "123456789012", settings);
    QCOMPARE(datagram.size(), 84);
    const QByteArray header = QByteArray::fromHex("4d4f5f49"
                                                  "0200"
                                                  "000000000000000000"
                                                  "3d000000"
                                                  "3d000000"
                                                  "00000000");
    QCOMPARE(datagram.left(27), header);
    QCOMPARE(datagram.mid(27, 13), QByteArray("000A1b2C3D4E\0", 13));
    QCOMPARE(datagram.mid(40, 13), QByteArray("admin\0\0\0\0\0\0\0\0", 13));
    QCOMPARE(datagram.mid(53, 13), QByteArray("123456789012\0", 13));
    QCOMPARE(datagram.mid(66).toHex(), addressesAndPort);

    const auto parsed = veltor::parseWinbondConfig(datagram);
    QVERIFY(parsed);
    QCOMPARE(parsed->settings.dhcp, settings.dhcp);
    QCOMPARE(parsed->password, QStringLiteral("123456789012"));
}

void ConfigMessagesTest::winbondFieldLimits_data()
{
    QTest::addColumn<QString>("mac");
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("password");
    QTest::addColumn<int>("problem");

    using P = veltor::WinbondFieldProblem;
    const QString twelve = QStringLiteral("abcdefghijkl");
    QTest::newRow("12 bytes fit") << kMac << twelve << twelve << int(P::None);
    QTest::newRow("13-byte user") << kMac << QString(twelve + "m") << "" << int(P::User);
    QTest::newRow("13-byte password") << kMac << "" << QString(twelve + "m") << int(P::Password);
    QTest::newRow("6 umlauts are 12 bytes")
        << kMac << QString(6, QChar(0xe4)) << "" << int(P::None);
    QTest::newRow("7 umlauts are 14 bytes")
        << kMac << "" << QString(7, QChar(0xe4)) << int(P::Password);
    QTest::newRow("short mac") << "00:0A:1B:2C:3D"
                               << ""
                               << "" << int(P::Mac);
    QTest::newRow("long mac") << "00:0A:1B:2C:3D:4E:5F"
                              << ""
                              << "" << int(P::Mac);
    QTest::newRow("no mac") << ""
                            << ""
                            << "" << int(P::Mac);
}

void ConfigMessagesTest::winbondFieldLimits()
{
    QFETCH(QString, mac);
    QFETCH(QString, user);
    QFETCH(QString, password);
    QFETCH(int, problem);
    QCOMPARE(int(veltor::checkWinbondFields(mac, user, password)), problem);
    const QByteArray datagram =
        veltor::winbondConfigDatagram(mac, user, password, staticSettings());
    // Refused, never cut.
    QCOMPARE(datagram.isEmpty(), problem != int(veltor::WinbondFieldProblem::None));
    if (!datagram.isEmpty()) {
        const auto parsed = veltor::parseWinbondConfig(datagram);
        QVERIFY(parsed);
        QCOMPARE(parsed->user, user);
        QCOMPARE(parsed->password, password);
    }
}

void ConfigMessagesTest::winbondToHex_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QByteArray>("hex");

    QTest::newRow("ip") << " 192.168.1.10 "
                        << "ip" << QByteArray("c0a8010a");
    QTest::newRow("subnet") << "255.255.255.0"
                            << "subnet" << QByteArray("ffffff00");
    QTest::newRow("port is one byte") << "80"
                                      << "port" << QByteArray("50");
    QTest::newRow("mac") << "00:0A:1B:2C:3D:4E"
                         << "mac" << QByteArray("000A1B2C3D4E");
    QTest::newRow("name") << "Cam1"
                          << "name" << QByteArray();
}

void ConfigMessagesTest::winbondToHex()
{
    QFETCH(QString, value);
    QFETCH(QString, key);
    QFETCH(QByteArray, hex);
    QCOMPARE(veltor::winbondToHex(value, key), hex);
}

void ConfigMessagesTest::hdsParseRejects_data()
{
    QTest::addColumn<QByteArray>("datagram");

    const QByteArray good = veltor::hdsCmdRequest(7, "admin", "pw", "D", "netconf set -dhcp on");
    QVERIFY(veltor::parseHdsCmd(good));
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("search") << QByteArray("SEARCH * HDS/1.0\r\nCSeq:0\r\n\r\n");
    QTest::newRow("no blank line") << good.left(good.indexOf("\r\n\r\n"));
    QTest::newRow("body cut") << good.chopped(1);
    QTest::newRow("body longer") << good + "x";
    QTest::newRow("no authorization")
        << QByteArray("CMD * HDS/1.0\r\nCSeq:1\r\nContent-Length:0\r\n\r\n");
    QTest::newRow("not basic") << QByteArray(good).replace("Basic ", "Digest");
    QTest::newRow("bad cseq") << QByteArray(good).replace("CSeq:7", "CSeq:x");
}

void ConfigMessagesTest::hdsParseRejects()
{
    QFETCH(QByteArray, datagram);
    QVERIFY(!veltor::parseHdsCmd(datagram));
}

void ConfigMessagesTest::winbondParseRoundTrip()
{
    NetworkSettings settings = staticSettings("8080");
    const QByteArray datagram = veltor::winbondConfigDatagram(kMac, "ädmin", "p&#w", settings);
    const auto parsed = veltor::parseWinbondConfig(datagram);
    QVERIFY(parsed);
    QCOMPARE(parsed->mac, QStringLiteral("000A1b2C3D4E"));
    QCOMPARE(parsed->user, QStringLiteral("ädmin"));
    QCOMPARE(parsed->password, QStringLiteral("p&#w"));
    QCOMPARE(parsed->settings.ip, settings.ip);
    QCOMPARE(parsed->settings.subnet, settings.subnet);
    QCOMPARE(parsed->settings.gateway, settings.gateway);
    QCOMPARE(parsed->settings.dns, settings.dns);
    QCOMPARE(parsed->settings.port, settings.port);

    QVERIFY(!veltor::parseWinbondConfig(datagram.chopped(1)));
    QVERIFY(!veltor::parseWinbondConfig(QByteArray(datagram).replace(0, 4, "MO_X")));
    QVERIFY(!veltor::parseWinbondConfig(QByteArray(datagram).replace(4, 1, "\x01")));
}

void ConfigMessagesTest::cameraCommands_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<bool>("dhcp");
    QTest::addColumn<QString>("ipOrPort");

    QTest::newRow("dhcp on") << QByteArray("netconf set -dhcp on") << true << true << "";
    QTest::newRow("dhcp off") << veltor::netconfBody(staticSettings(), kMac) << true << false
                              << "192.168.1.20";
    QTest::newRow("port") << QByteArray("httpport set -httpport 81") << true << false << "81";
    QTest::newRow("missing value") << QByteArray("httpport set -httpport") << false << false << "";
    QTest::newRow("unknown command") << QByteArray("reboot set -now 1") << false << false << "";
    QTest::newRow("off without address")
        << QByteArray("netconf set -dhcp off") << false << false << "";
    QTest::newRow("bad dhcp word") << QByteArray("netconf set -dhcp maybe") << false << false << "";
}

void ConfigMessagesTest::cameraCommands()
{
    QFETCH(QByteArray, body);
    QFETCH(bool, valid);
    QFETCH(bool, dhcp);
    QFETCH(QString, ipOrPort);
    const auto command = veltor::parseCameraCommand(body);
    QCOMPARE(bool(command), valid);
    if (!command)
        return;
    QCOMPARE(command->settings.dhcp, dhcp);
    const QString value = command->kind == veltor::CameraCommand::HttpPort ? command->settings.port
                                                                           : command->settings.ip;
    QCOMPARE(value, ipOrPort);
}

QTEST_GUILESS_MAIN(ConfigMessagesTest)
#include "tst_configmessages.moc"
