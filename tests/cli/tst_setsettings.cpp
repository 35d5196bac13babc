// What `veltor-cli set` sends and expects back, without a network: the form
// it fills from the camera, the window's checks and texts, and the
// comparison that decides "verified".
#include "cli/netconfsend.h"
#include "netconf/settingsverify.h"
#include "netconf/submitmessages.h"

#include <QtTest>

using namespace veltor;
using namespace veltor::cli;

namespace {

DeviceRecord currentCamera(const QString &dhcp)
{
    DeviceRecord record;
    record.ip = QStringLiteral("10.78.0.11");
    record.subnet = QStringLiteral("255.255.0.0");
    record.gateway = QStringLiteral("10.78.0.1");
    record.dns = QStringLiteral("10.78.0.1");
    record.port = QStringLiteral("80");
    record.dhcp = dhcp;
    return record;
}

NetworkSettings settings(const QString &ip, const QString &mask, const QString &gateway,
                         const QString &dns, const QString &port, bool dhcp)
{
    NetworkSettings s;
    s.ip = ip;
    s.subnet = mask;
    s.gateway = gateway;
    s.dns = dns;
    s.port = port;
    s.dhcp = dhcp;
    return s;
}

} // namespace

Q_DECLARE_METATYPE(veltor::NetworkSettings)

class tst_SetSettings : public QObject
{
    Q_OBJECT

private slots:
    void formFromCamera_data();
    void formFromCamera();
    void checkMessages_data();
    void checkMessages();
    void differences_data();
    void differences();
};

void tst_SetSettings::formFromCamera_data()
{
    QTest::addColumn<QString>("cameraDhcp");
    QTest::addColumn<QStringList>("change"); // dhcp, ip, mask, gateway, dns, port
    QTest::addColumn<NetworkSettings>("expected");
    const QString a = QStringLiteral("10.78.0.11"), m = QStringLiteral("255.255.0.0"),
                  g = QStringLiteral("10.78.0.1");
    QTest::newRow("dhcp on keeps the form's addresses")
        << "off" << QStringList{"1", "", "", "", "", ""} << settings(a, m, g, g, "80", true);
    QTest::newRow("new address, the rest as it was")
        << "off" << QStringList{"", "10.78.0.99", "", "", "", ""}
        << settings("10.78.0.99", m, g, g, "80", false);
    QTest::newRow("only a port keeps dhcp on")
        << "on" << QStringList{"", "", "", "", "", "81"} << settings(a, m, g, g, "81", true);
    QTest::newRow("any address turns dhcp off")
        << "on" << QStringList{"", "", "", "", "10.78.0.53", ""}
        << settings(a, m, g, "10.78.0.53", "80", false);
}

void tst_SetSettings::formFromCamera()
{
    QFETCH(QString, cameraDhcp);
    QFETCH(QStringList, change);
    QFETCH(NetworkSettings, expected);
    const SettingsChange asked{change[0] == "1", change[1], change[2],
                               change[3],        change[4], change[5]};
    const NetworkSettings form = settingsFor(currentCamera(cameraDhcp), asked);
    QCOMPARE(form.dhcp, expected.dhcp);
    QCOMPARE(
        QStringList({form.ip, form.subnet, form.gateway, form.dns, form.port}),
        QStringList({expected.ip, expected.subnet, expected.gateway, expected.dns, expected.port}));
}

void tst_SetSettings::checkMessages_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<NetworkSettings>("form");
    QTest::addColumn<QString>("message");
    const QString m = QStringLiteral("255.255.255.0"), g = QStringLiteral("10.0.0.1");
    QTest::newRow("port with a sign")
        << "Haisi" << settings("10.0.0.5", m, g, g, "-1", false) << "Port invalid";
    QTest::newRow("port too large") << "Winbond" << settings("10.0.0.5", m, g, g, "65536", false)
                                    << "Port needs to be a value in range of 0-65535";
    QTest::newRow("three parts") << "Haisi" << settings("10.0.5", m, g, g, "80", false)
                                 << "Ip-address has a wrong format";
    QTest::newRow("mask with letters")
        << "Haisi" << settings("10.0.0.5", "255.x.0.0", g, g, "80", false)
        << "Subnet has a wrong format";
    QTest::newRow("gateway, five parts")
        << "Winbond" << settings("10.0.0.5", m, "10.0.0.1.1", g, "80", false)
        << "Gateway has a wrong format";
    QTest::newRow("dns empty") << "Winbond" << settings("10.0.0.5", m, g, "", "80", false)
                               << "DNS has a wrong format";
    QTest::newRow("winbond refuses 300") << "Winbond" << settings("300.0.0.5", m, g, g, "80", false)
                                         << "Ip-address has invalid values";
    QTest::newRow("winbond mask 256")
        << "Winbond" << settings("10.0.0.5", "256.0.0.0", g, g, "80", false)
        << "Subnet-address has invalid values";
    QTest::newRow("winbond gateway, empty part")
        << "Winbond" << settings("10.0.0.5", m, "10..0.1", g, "80", false)
        << "Gateway-address has invalid values";
    QTest::newRow("winbond dns 999")
        << "Winbond" << settings("10.0.0.5", m, g, "999.0.0.1", "80", false)
        << "DNS-address has invalid values";
}

void tst_SetSettings::checkMessages()
{
    QFETCH(QString, family);
    QFETCH(NetworkSettings, form);
    QTEST(submitCheckMessage(firstFailedCheck(form, family)), "message");
}

void tst_SetSettings::differences_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<NetworkSettings>("sent");
    QTest::addColumn<QString>("seenDhcp");
    QTest::addColumn<QString>("seenIp");
    QTest::addColumn<QString>("seenGateway");
    QTest::addColumn<QStringList>("differences");
    const QString m = QStringLiteral("255.255.0.0");
    const NetworkSettings moved = settings("10.78.2.50", m, "10.78.1.1", "10.78.0.1", "80", false);
    QTest::newRow("haisi gateway moved into the /24") << "Haisi" << moved << "off"
                                                      << "10.78.2.50"
                                                      << "10.78.2.1" << QStringList{};
    QTest::newRow("winbond gateway as sent") << "Winbond" << moved << "off"
                                             << "10.78.2.50"
                                             << "10.78.1.1" << QStringList{};
    QTest::newRow("still at the old address")
        << "Winbond" << moved << "off"
        << "10.78.0.11"
        << "10.78.1.1" << QStringList{"ip 10.78.0.11 (wanted 10.78.2.50)"};
    QTest::newRow("dhcp: the address does not count")
        << "Haisi" << settings("10.78.0.11", m, "10.78.0.1", "10.78.0.1", "80", true) << "on"
        << "10.78.7.7"
        << "10.78.0.1" << QStringList{};
    QTest::newRow("dhcp not taken")
        << "Haisi" << settings("10.78.0.11", m, "10.78.0.1", "10.78.0.1", "80", true) << ""
        << "10.78.0.11"
        << "10.78.0.1" << QStringList{"dhcp - (wanted on)"};
}

void tst_SetSettings::differences()
{
    QFETCH(QString, family);
    QFETCH(NetworkSettings, sent);
    DeviceRecord seen = currentCamera(QString());
    QFETCH(QString, seenDhcp);
    QFETCH(QString, seenIp);
    QFETCH(QString, seenGateway);
    seen.dhcp = seenDhcp;
    seen.ip = seenIp;
    seen.gateway = seenGateway;
    QTEST(settingsDifferences(seen, expectedSettings(sent, family)), "differences");
}

QTEST_GUILESS_MAIN(tst_SetSettings)
#include "tst_setsettings.moc"
