#include "netconf/configmessages.h"
#include "netconf/configparse.h"
#include "netconf/submitchecks.h"
#include "netconf/submitmessages.h"

#include <QtTest>

using namespace veltor;

Q_DECLARE_METATYPE(veltor::NetworkSettings)

namespace {

const char kMac[] = "00:0A:1b:2C:3D:4E";

// A good form; `changes` ("ip=1.2.3", "dhcp=1") replace its fields.
NetworkSettings form(const QStringList &changes = {})
{
    NetworkSettings s{"192.168.1.20", "255.255.255.0", "192.168.1.1", "8.8.8.8", "80", false};
    for (const QString &change : changes) {
        const QString key = change.section('=', 0, 0), value = change.section('=', 1);
        const int at = QStringList{"ip", "subnet", "gateway", "dns", "port"}.indexOf(key);
        if (at >= 0)
            *QList<QString *>{&s.ip, &s.subnet, &s.gateway, &s.dns, &s.port}[at] = value;
        s.dhcp = s.dhcp || change == "dhcp=1";
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
    // The exact request the cameras take; Content-Length counts bytes ("ü" is two).
    void hdsRequest()
    {
        QCOMPARE(
            hdsCmdRequest(4294967295u, "jürgen", "pässwort", "DEV1",
                          "httpport set -httpport \xc3\xbc"),
            "CMD * HDS/1.0\r\nCSeq:4294967295\r\nClient-ID:TzLqRbHwXeNcKvUaPmYdGsJoFiWnBhVr\r\n"
            "Accept-Type:text/HDP\r\nAuthorization:Basic j\xc3\xbcrgen:p\xc3\xa4sswort\r\n"
            "Device-ID:DEV1\r\nContent-Length:25\r\n\r\nhttpport set -httpport \xc3\xbc");
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
        QCOMPARE(netconfBody(form({"ip=" + ip, "gateway=" + gateway}), kMac),
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
        const QByteArray datagram = winbondConfigDatagram(kMac, "ädmin", "123456789012", settings);
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
        const QByteArray hds =
            hdsCmdRequest(7, "admin", "", "D", netconfBody(form({"dhcp=1"}), kMac));
        const QByteArray wb = winbondConfigDatagram(kMac, "ädmin", "p&#w", form({"port=8080"}));
        const auto row = [](const char *tag, const QByteArray &datagram,
                            const QString &parsed = "-") {
            QTest::newRow(tag) << datagram << parsed;
        };
        row("hds", hds, "7 admin: D on");
        row("hds static", hdsCmdRequest(1, "a", "b", "D", netconfBody(form(), kMac)),
            "1 a:b D 192.168.1.20 " + QString(kMac));
        row("port", hdsCmdRequest(2, "ä", "a:b", "D", httpPortBody("8080")), "2 ä:a:b D port 8080");
        for (const char *bad : {"httpport set -httpport", "reboot set -now 1",
                                "netconf set -dhcp off", "netconf set -dhcp maybe"})
            row(bad, hdsCmdRequest(3, "a", "b", "D", bad), "3 a:b D -");
        row("empty", QByteArray());
        row("search", "SEARCH * HDS/1.0\r\nCSeq:0\r\n\r\n");
        row("no blank line", hds.left(hds.indexOf("\r\n\r\n")));
        row("body cut", hds.chopped(1));
        row("body longer", hds + "x");
        row("no login", "CMD * HDS/1.0\r\nCSeq:1\r\nContent-Length:0\r\n\r\n");
        row("not basic", QByteArray(hds).replace("Basic ", "Digest"));
        row("bad cseq", QByteArray(hds).replace("CSeq:7", "CSeq:x"));
        row("winbond", wb,
            "000A1b2C3D4E ädmin:p&#w 192.168.1.20 255.255.255.0 192.168.1.1 8.8.8.8 8080");
        row("winbond cut", wb.chopped(1));
        row("winbond magic", QByteArray(wb).replace(0, 4, "MO_X"));
        row("winbond not config", QByteArray(wb).replace(4, 1, "\x01"));
    }
    void parseBack()
    {
        QFETCH(QByteArray, datagram);
        QStringList parsed{"-"};
        if (const auto cmd = parseHdsCmd(datagram)) {
            const auto c = parseCameraCommand(cmd->body);
            parsed = QStringList{QString::number(cmd->cseq), cmd->user + ':' + cmd->password,
                                 cmd->deviceId};
            if (!c)
                parsed << "-";
            else if (c->kind == CameraCommand::HttpPort)
                parsed << "port" << c->settings.port;
            else
                parsed << (c->settings.dhcp ? QStringList{"on"}
                                            : QStringList{c->settings.ip, c->mac});
        } else if (const auto w = parseWinbondConfig(datagram)) {
            const NetworkSettings &s = w->settings;
            parsed = QStringList{
                w->mac, w->user + ':' + w->password, s.ip, s.subnet, s.gateway, s.dns, s.port};
        }
        QTEST(parsed.join(' '), "parsed");
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
        const char *W = "Winbond", *H = "Haisi";
        QTest::newRow("all good") << W << QStringList{} << 0;
        QTest::newRow("empty port is 0") << W << QStringList{"port="} << 0;
        QTest::newRow("1 minus sign") << W << QStringList{"port=-1"} << 1;
        QTest::newRow("1 letter") << H << QStringList{"dhcp=1", "port=8o"} << 1;
        QTest::newRow("1 before 4") << H << QStringList{"port=x", "ip=1.2.3"} << 1;
        QTest::newRow("2 65536") << W << QStringList{"port=65536"} << 2;
        QTest::newRow("too long for int") << W << QStringList{"port=99999999999"} << 0;
        QTest::newRow("4 three parts") << H << QStringList{"ip=1.2.3"} << 4;
        QTest::newRow("4 empty, dhcp on") << W << QStringList{"dhcp=1", "ip="} << 4;
        QTest::newRow("5 subnet") << H << QStringList{"subnet=255.255.0"} << 5;
        QTest::newRow("6 gateway") << H << QStringList{"gateway=gw"} << 6;
        QTest::newRow("7 dns") << H << QStringList{"dns=8.8.8.8."} << 7;
        QTest::newRow("9 subnet") << W << QStringList{"subnet=255.255.256.0"} << 9;
        QTest::newRow("10 gateway") << W << QStringList{"gateway=1.1.1.300"} << 10;
        QTest::newRow("11 dns") << W << QStringList{"dns=999.8.8.8"} << 11;
        QTest::newRow("8 before 11") << W << QStringList{"ip=1.1.1.256", "dns=9.9.9.999"} << 8;
        QTest::newRow("haisi takes 300") << H << QStringList{"ip=300.1.1.1"} << 0;
        QTest::newRow("winbond dhcp skips range")
            << W << QStringList{"dhcp=1", "ip=300.1.1.1"} << 0;
        QTest::newRow("unknown family skips range") << "" << QStringList{"ip=300.1.1.1"} << 0;
    }
    void submitChecks()
    {
        QFETCH(QString, family);
        QFETCH(QStringList, changes);
        QFETCH(int, step);
        const SubmitCheck check = firstFailedCheck(form(changes), family);
        QCOMPARE(int(check), step);
        const QStringList messages =
            QStringLiteral(
                "|Port invalid|Port needs to be a value in range of 0-65535|Port needs to be a "
                "value in range of 0-65535|Ip-address has a wrong format|Subnet has a wrong "
                "format|Gateway has a wrong format|DNS has a wrong format|Ip-address has "
                "invalid values|Subnet-address has invalid values|Gateway-address has "
                "invalid values|DNS-address has invalid values")
                .split('|');
        QCOMPARE(submitCheckMessage(check), messages.value(step));
    }
};

QTEST_GUILESS_MAIN(ConfigMessagesTest)
#include "tst_configmessages.moc"
