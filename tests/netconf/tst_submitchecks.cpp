#include "netconf/submitchecks.h"

#include <QtTest>

using veltor::SubmitCheck;

class SubmitChecksTest : public QObject
{
    Q_OBJECT

private slots:
    void order_data();
    void order();
};

void SubmitChecksTest::order_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<bool>("dhcp");
    QTest::addColumn<QString>("port");
    QTest::addColumn<QString>("ip");
    QTest::addColumn<QString>("subnet");
    QTest::addColumn<QString>("gateway");
    QTest::addColumn<QString>("dns");
    QTest::addColumn<int>("step");

    const QString ip = QStringLiteral("192.168.1.20");
    const QString mask = QStringLiteral("255.255.255.0");
    const QString gw = QStringLiteral("192.168.1.1");
    const QString dns = QStringLiteral("8.8.8.8");
    const QString W = QStringLiteral("Winbond");
    const QString H = QStringLiteral("Haisi");

    QTest::newRow("all good") << W << false << "80" << ip << mask << gw << dns << 0;
    QTest::newRow("empty port is 0") << W << false << "" << ip << mask << gw << dns << 0;
    QTest::newRow("1 minus sign") << W << false << "-1" << ip << mask << gw << dns << 1;
    QTest::newRow("1 letter") << H << true << "8o" << ip << mask << gw << dns << 1;
    QTest::newRow("1 before 4") << H << false << "x"
                                << "1.2.3" << mask << gw << dns << 1;
    QTest::newRow("65535") << W << false << "65535" << ip << mask << gw << dns << 0;
    QTest::newRow("2 65536") << W << false << "65536" << ip << mask << gw << dns << 2;
    QTest::newRow("too long for int")
        << W << false << "99999999999" << ip << mask << gw << dns << 0;
    QTest::newRow("4 three parts") << H << false << "80"
                                   << "1.2.3" << mask << gw << dns << 4;
    QTest::newRow("4 five parts") << H << false << "80"
                                  << "1.2.3.4.5" << mask << gw << dns << 4;
    QTest::newRow("4 letters") << H << true << "80"
                               << "a.b.c.d" << mask << gw << dns << 4;
    QTest::newRow("4 empty, dhcp on") << W << true << "80"
                                      << "" << mask << gw << dns << 4;
    QTest::newRow("5 subnet") << H << false << "80" << ip << "255.255.0" << gw << dns << 5;
    QTest::newRow("6 gateway") << H << false << "80" << ip << mask << "gw" << dns << 6;
    QTest::newRow("7 dns") << H << false << "80" << ip << mask << gw << "8.8.8.8." << 7;
    QTest::newRow("8 ip 256") << W << false << "80"
                              << "256.1.1.1" << mask << gw << dns << 8;
    QTest::newRow("8 empty part") << W << false << "80"
                                  << "1..2.3" << mask << gw << dns << 8;
    QTest::newRow("9 subnet") << W << false << "80" << ip << "255.255.256.0" << gw << dns << 9;
    QTest::newRow("10 gateway") << W << false << "80" << ip << mask << "1.1.1.300" << dns << 10;
    QTest::newRow("11 dns") << W << false << "80" << ip << mask << gw << "999.8.8.8" << 11;
    QTest::newRow("8 before 11") << W << false << "80"
                                 << "1.1.1.256" << mask << gw << "9.9.9.999" << 8;
    QTest::newRow("haisi takes 300") << H << false << "80"
                                     << "300.1.1.1" << mask << gw << dns << 0;
    QTest::newRow("winbond dhcp skips range") << W << true << "80"
                                              << "300.1.1.1" << mask << gw << dns << 0;
    QTest::newRow("unknown family skips range") << "" << false << "80"
                                                << "300.1.1.1" << mask << gw << dns << 0;
}

void SubmitChecksTest::order()
{
    QFETCH(QString, family);
    QFETCH(bool, dhcp);
    veltor::NetworkSettings s;
    s.dhcp = dhcp;
    QFETCH(QString, port);
    s.port = port;
    QFETCH(QString, ip);
    s.ip = ip;
    QFETCH(QString, subnet);
    s.subnet = subnet;
    QFETCH(QString, gateway);
    s.gateway = gateway;
    QFETCH(QString, dns);
    s.dns = dns;
    QFETCH(int, step);
    QCOMPARE(int(veltor::firstFailedCheck(s, family)), step);
}

QTEST_GUILESS_MAIN(SubmitChecksTest)
#include "tst_submitchecks.moc"
