#include "netconf/validators.h"

#include <QtTest>

class tst_Validators : public QObject
{
    Q_OBJECT

private slots:
    void textChecks_data();
    void textChecks();
    void orderingKey_data();
    void orderingKey();
    void winbondBytes_data();
    void winbondBytes();
};

void tst_Validators::textChecks_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("ip"); // checkIp, checkSubnet, checkGateway, checkDns
    QTest::addColumn<bool>("port");
    QTest::addColumn<bool>("num");
    QTest::addColumn<bool>("addr");
    QTest::newRow("address") << "192.168.1.20" << true << false << false << true;
    QTest::newRow("one leading zero") << "01.2.3.4" << true << false << false << true;
    QTest::newRow("two leading zeros") << "001.2.3.4" << true << false << false << true;
    QTest::newRow("all 255") << "255.255.255.255" << true << false << false << true;
    QTest::newRow("part above 255") << "256.1.1.1" << false << false << false << true;
    QTest::newRow("three parts") << "1.2.3" << false << false << false << true;
    QTest::newRow("five parts") << "1.2.3.4.5" << false << false << false << true;
    QTest::newRow("empty part") << "1..2.3" << false << false << false << true;
    QTest::newRow("trailing blank") << "1.2.3.4 " << false << false << false << false;
    QTest::newRow("trailing newline") << "1.2.3.4\n" << false << false << false << false;
    QTest::newRow("empty") << "" << false << false << true << true;
    QTest::newRow("port zero") << "0" << false << true << true << true;
    QTest::newRow("port leading zero") << "080" << false << false << true << true;
    QTest::newRow("port max") << "65535" << false << true << true << true;
    QTest::newRow("port 65529") << "65529" << false << true << true << true;
    QTest::newRow("port above max") << "65536" << false << false << true << true;
    QTest::newRow("negative") << "-1" << false << false << false << false;
    QTest::newRow("port newline") << "80\n" << false << false << false << false;
    QTest::newRow("blank") << "1 2" << false << false << false << false;
    // QRegExp's \d is any decimal digit of the BMP; Qt 6 builds must agree.
    // isNum and isAddr take ASCII digits only.
    QTest::newRow("arabic-indic digit")
        << QString::fromUtf16(u"8\u0663") << false << true << false << false;
    QTest::newRow("digit beyond the BMP")
        << QString::fromUcs4(U"8\U0001D7CE") << false << false << false << false;
}

void tst_Validators::textChecks()
{
    QFETCH(QString, text);
    QFETCH(bool, ip);
    QCOMPARE(veltor::checkIp(text), ip);
    QCOMPARE(veltor::checkSubnet(text), ip);
    QCOMPARE(veltor::checkGateway(text), ip);
    QCOMPARE(veltor::checkDns(text), ip);
    QTEST(veltor::checkPort(text), "port");
    QTEST(veltor::isNum(text), "num");
    QTEST(veltor::isAddr(text), "addr");
}

void tst_Validators::orderingKey_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<int>("key");
    QTest::newRow("10.0.0.1") << "10.0.0.1" << 10001;
    QTest::newRow("192.168.1.20") << "192.168.1.20" << 192168120;
    QTest::newRow("too large") << "255.255.255.255" << 0;
    QTest::newRow("mask too large") << "255.255.255.0" << 0;
    QTest::newRow("200.200.200.200") << "200.200.200.200" << 0;
    QTest::newRow("non-digit") << "a.b.c.d" << 0;
    QTest::newRow("empty") << "" << 0;
    QTest::newRow("short") << "1.2" << 12;
    QTest::newRow("extra parts ignored") << "1.2.3.4.5" << 1234;
}

void tst_Validators::orderingKey()
{
    QFETCH(QString, address);
    QTEST(veltor::ipToKey(address), "key");
}

void tst_Validators::winbondBytes_data()
{
    QTest::addColumn<QStringList>("parts");
    QTest::addColumn<QByteArray>("initial");
    QTest::addColumn<int>("start");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QByteArray>("result");
    QTest::newRow("empty list") << QStringList() << QByteArray("ab") << 1 << true
                                << QByteArray("ab");
    QTest::newRow("inserted, not overwritten")
        << QString("192.168.1.10").split('.') << QByteArray("xy") << 1 << true
        << QByteArray("x\xc0\xa8\x01\x0ay");
    QTest::newRow("256 stops") << QStringList{"1", "256", "3"} << QByteArray() << 0 << false
                               << QByteArray("\x01");
    QTest::newRow("empty part stops")
        << QStringList{"1", "", "3"} << QByteArray() << 0 << false << QByteArray("\x01");
    QTest::newRow("255 fits") << QStringList{"255"} << QByteArray() << 0 << true
                              << QByteArray("\xff");
}

void tst_Validators::winbondBytes()
{
    QFETCH(QStringList, parts);
    QFETCH(QByteArray, initial);
    QFETCH(int, start);
    QByteArray data = initial;
    QTEST(veltor::appendWinbondIP(parts, &data, start), "ok");
    QTEST(data, "result");
}

QTEST_APPLESS_MAIN(tst_Validators)
#include "tst_validators.moc"
