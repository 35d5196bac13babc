#include "netconf/configmessages.h"
#include "netconf/configparse.h"
#include "netconf/submitchecks.h"
#include "netconf/submitmessages.h"

#include <QtTest>

using veltor::NetworkSettings;

Q_DECLARE_METATYPE(veltor::NetworkSettings)

namespace {

const char kMac[] = "00:0A:1b:2C:3D:4E";

// A good form; `changes` ("ip=1.2.3", "dhcp=1") replace its fields.
NetworkSettings form(const QStringList &changes = {})
{
    NetworkSettings s{"192.168.1.20", "255.255.255.0", "192.168.1.1", "8.8.8.8", "80", false};
    for (const QString &change : changes) {
        const QString key = change.section('=', 0, 0), value = change.section('=', 1);
        if (key == "dhcp")
            s.dhcp = value == "1";
        else
            *(key == "ip"        ? &s.ip
              : key == "subnet"  ? &s.subnet
              : key == "gateway" ? &s.gateway
              : key == "dns"     ? &s.dns
                                 : &s.port) = value;
    }
    return s;
}

// A row of text columns.
void row(const char *tag, std::initializer_list<QString> cells)
{
    QTestData &data = QTest::newRow(tag);
    for (const QString &cell : cells)
        data << cell;
}

} // namespace

class ConfigMessagesTest : public QObject
{
    Q_OBJECT

private slots:
    void hdsRequest_data()
    {
        QTest::addColumn<QByteArray>("request");
        QTest::addColumn<QByteArray>("expected");
        // `tail`: the Authorization value, '#', the body's length.
        const auto row = [](const char *tag, quint32 cseq, const char *user, const char *password,
                            const QByteArray &body, const QByteArray &tail) {
            const int hash = tail.indexOf('#');
            QTest::newRow(tag) << veltor::hdsCmdRequest(cseq, user, password, "DEV1", body)
                               << "CMD * HDS/1.0\r\nCSeq:" + QByteArray::number(cseq) +
                                      "\r\nClient-ID:TzLqRbHwXeNcKvUaPmYdGsJoFiWnBhVr\r\n"
                                      "Accept-Type:text/HDP\r\nAuthorization:Basic " +
                                      tail.left(hash) +
                                      "\r\nDevice-ID:DEV1\r\nContent-Length:" + tail.mid(hash + 1) +
                                      "\r\n\r\n" + body;
        };
        row("dhcp on", 0, "admin", "secret", veltor::netconfBody(form({"dhcp=1"}), kMac),
            "admin:secret#20");
        row("dhcp off", 1, "admin", "", veltor::netconfBody(form(), kMac), "admin:#128");
        row("port", 2, "admin", "a:b", veltor::httpPortBody("8080"), "admin:a:b#27");
        // Content-Length counts bytes: "ü" is two of them.
        row("non-ascii", 4294967295u, "jürgen", "pässwort", "httpport set -httpport \xc3\xbc",
            "j\xc3\xbcrgen:p\xc3\xa4sswort#25");
    }
    void hdsRequest()
    {
        QFETCH(QByteArray, request);
        QTEST(request, "expected");
    }
    void gatewayAdjustment_data()
    {
        QTest::addColumn<QString>("ip");
        QTest::addColumn<QString>("gateway");
        QTest::addColumn<QString>("sent");
        row("other /24", {"192.168.2.50", "192.168.1.1", "192.168.2.1"});
        row("same /24", {"192.168.2.50", "192.168.2.254", "192.168.2.254"});
        row("first part differs", {"10.168.2.50", "192.168.2.7", "10.168.2.7"});
        row("compared as typed", {"192.168.02.50", "192.168.2.1", "192.168.02.1"});
    }
    void gatewayAdjustment()
    {
        QFETCH(QString, ip);
        QFETCH(QString, gateway);
        QFETCH(QString, sent);
        QCOMPARE(veltor::adjustGateway(ip, gateway), sent);
        QCOMPARE(veltor::netconfBody(form({"ip=" + ip, "gateway=" + gateway}), kMac),
                 "netconf set -dhcp off -ipaddr " + ip.toUtf8() + " -netmask 255.255.255.0 " +
                     "-gateway " + sent.toUtf8() + " -hwaddr " + kMac + " -fdnsip 8.8.8.8");
    }
    void winbondDatagram_data()
    {
        QTest::addColumn<NetworkSettings>("settings");
        QTest::addColumn<QByteArray>("addressesAndPort"); // bytes 66 to 83, hex
        const QByteArray addresses = "c0a80114ffffff00c0a8010108080808";
        QTest::newRow("dhcp off") << form() << addresses + "0050";
        QTest::newRow("dhcp on") << form({"dhcp=1", "port=8080"}) << QByteArray(32, '0') + "1f90";
        QTest::newRow("empty port") << form({"port="}) << addresses + "0000";
        QTest::newRow("port 65535") << form({"port=65535"}) << addresses + "ffff";
    }
    void winbondDatagram()
    {
        QFETCH(NetworkSettings, settings);
        const QByteArray datagram =
            veltor::winbondConfigDatagram(kMac, "ädmin", "123456789012", settings);
        const auto field = [](const QByteArray &text) { return text.leftJustified(13, '\0'); };
        QCOMPARE(datagram.left(66),
                 QByteArray::fromHex("4d4f5f4902000000000000000000003d0000003d00000000000000") +
                     field("000A1b2C3D4E") + field("\xc3\xa4\x64min") + field("123456789012"));
        QTEST(datagram.mid(66).toHex(), "addressesAndPort");
    }
    // What the cameras (and the simulator) read back from our datagrams; "-" is refused.
    void parseBack_data()
    {
        QTest::addColumn<QByteArray>("datagram");
        QTest::addColumn<QString>("parsed");
        const QByteArray hds = veltor::hdsCmdRequest(7, "admin", "pw", "D", "netconf set -dhcp on");
        const QByteArray wb =
            veltor::winbondConfigDatagram(kMac, "ädmin", "p&#w", form({"port=8080"}));
        QTest::newRow("hds") << hds << "7 admin:pw D on";
        QTest::newRow("hds static")
            << veltor::hdsCmdRequest(1, "a", "b", "D", veltor::netconfBody(form(), kMac))
            << "1 a:b D 192.168.1.20 " + QString(kMac);
        QTest::newRow("hds port") << veltor::hdsCmdRequest(2, "a", "b", "D",
                                                           "httpport set -httpport 81")
                                  << "2 a:b D port 81";
        for (const char *bad : {"httpport set -httpport", "reboot set -now 1",
                                "netconf set -dhcp off", "netconf set -dhcp maybe"})
            QTest::newRow(bad) << veltor::hdsCmdRequest(3, "a", "b", "D", bad) << "3 a:b D -";
        QTest::newRow("empty") << QByteArray() << "-";
        QTest::newRow("search") << QByteArray("SEARCH * HDS/1.0\r\nCSeq:0\r\n\r\n") << "-";
        QTest::newRow("no blank line") << hds.left(hds.indexOf("\r\n\r\n")) << "-";
        QTest::newRow("body cut") << hds.chopped(1) << "-";
        QTest::newRow("body longer") << hds + "x"
                                     << "-";
        QTest::newRow("no login") << QByteArray(
                                         "CMD * HDS/1.0\r\nCSeq:1\r\nContent-Length:0\r\n\r\n")
                                  << "-";
        QTest::newRow("not basic") << QByteArray(hds).replace("Basic ", "Digest") << "-";
        QTest::newRow("bad cseq") << QByteArray(hds).replace("CSeq:7", "CSeq:x") << "-";
        QTest::newRow("winbond")
            << wb << "000A1b2C3D4E ädmin:p&#w 192.168.1.20 255.255.255.0 192.168.1.1 8.8.8.8 8080";
        QTest::newRow("winbond cut") << wb.chopped(1) << "-";
        QTest::newRow("winbond magic") << QByteArray(wb).replace(0, 4, "MO_X") << "-";
        QTest::newRow("winbond not config") << QByteArray(wb).replace(4, 1, "\x01") << "-";
    }
    void parseBack()
    {
        QFETCH(QByteArray, datagram);
        QString parsed = "-";
        if (const auto cmd = veltor::parseHdsCmd(datagram)) {
            const auto c = veltor::parseCameraCommand(cmd->body);
            QString what = "-";
            if (c && c->kind == veltor::CameraCommand::HttpPort)
                what = "port " + c->settings.port;
            else if (c)
                what = c->settings.dhcp ? QString("on") : c->settings.ip + ' ' + c->mac;
            parsed = QString("%1 %2:%3 %4 %5")
                         .arg(cmd->cseq)
                         .arg(cmd->user, cmd->password, cmd->deviceId, what);
        } else if (const auto w = veltor::parseWinbondConfig(datagram)) {
            const NetworkSettings &s = w->settings;
            parsed =
                QStringList{w->mac, w->user + ':' + w->password, s.ip, s.subnet, s.gateway, s.dns,
                            s.port}
                    .join(' ');
        }
        QTEST(parsed, "parsed");
    }
    void winbondToHex_data()
    {
        for (const char *column : {"value", "key", "hex"})
            QTest::addColumn<QString>(column);
        row("ip", {" 192.168.1.10 ", "ip", "c0a8010a"});
        row("subnet", {"255.255.255.0", "subnet", "ffffff00"});
        row("port is one byte", {"80", "port", "50"});
        row("mac", {"00:0A:1B:2C:3D:4E", "mac", "000A1B2C3D4E"});
        row("name", {"Cam1", "name", ""});
    }
    void winbondToHex()
    {
        QFETCH(QString, value);
        QFETCH(QString, key);
        QTEST(QString(veltor::winbondToHex(value, key)), "hex");
    }
    void submitChecks_data()
    {
        QTest::addColumn<QString>("family");
        QTest::addColumn<QStringList>("changes");
        QTest::addColumn<int>("step");
        const auto row = [](const char *tag, const char *family, const QStringList &changes,
                            int step) { QTest::newRow(tag) << QString(family) << changes << step; };
        const char *W = "Winbond", *H = "Haisi";
        row("all good", W, {}, 0);
        row("empty port is 0", W, {"port="}, 0);
        row("1 minus sign", W, {"port=-1"}, 1);
        row("1 letter", H, {"dhcp=1", "port=8o"}, 1);
        row("1 before 4", H, {"port=x", "ip=1.2.3"}, 1);
        row("2 65536", W, {"port=65536"}, 2);
        row("too long for int", W, {"port=99999999999"}, 0);
        row("4 three parts", H, {"ip=1.2.3"}, 4);
        row("4 empty, dhcp on", W, {"dhcp=1", "ip="}, 4);
        row("5 subnet", H, {"subnet=255.255.0"}, 5);
        row("6 gateway", H, {"gateway=gw"}, 6);
        row("7 dns", H, {"dns=8.8.8.8."}, 7);
        row("8 ip 256", W, {"ip=256.1.1.1"}, 8);
        row("9 subnet", W, {"subnet=255.255.256.0"}, 9);
        row("10 gateway", W, {"gateway=1.1.1.300"}, 10);
        row("11 dns", W, {"dns=999.8.8.8"}, 11);
        row("8 before 11", W, {"ip=1.1.1.256", "dns=9.9.9.999"}, 8);
        row("haisi takes 300", H, {"ip=300.1.1.1"}, 0);
        row("winbond dhcp skips range", W, {"dhcp=1", "ip=300.1.1.1"}, 0);
        row("unknown family skips range", "", {"ip=300.1.1.1"}, 0);
    }
    void submitChecks()
    {
        QFETCH(QString, family);
        QFETCH(QStringList, changes);
        QFETCH(int, step);
        const veltor::SubmitCheck check = veltor::firstFailedCheck(form(changes), family);
        QCOMPARE(int(check), step);
        const QStringList messages =
            QStringLiteral(
                "|Port invalid|Port needs to be a value in range of 0-65535|Port needs to be a "
                "value in "
                "range of 0-65535|Ip-address has a wrong format|Subnet has a wrong format|Gateway "
                "has "
                "a wrong format|DNS has a wrong format|Ip-address has invalid "
                "values|Subnet-address has "
                "invalid values|Gateway-address has invalid values|DNS-address has invalid values")
                .split('|');
        QCOMPARE(veltor::submitCheckMessage(check), messages.value(step));
    }
};

QTEST_GUILESS_MAIN(ConfigMessagesTest)
#include "tst_configmessages.moc"
