#include "netconf/validators.h"

#include <QtTest>

class tst_Validators : public QObject
{
    Q_OBJECT

private slots:
    void addressPattern_data();
    void addressPattern();
    void portPattern_data();
    void portPattern();
    void characterTests_data();
    void characterTests();
    void orderingKey_data();
    void orderingKey();
    void winbondBytes_data();
    void winbondBytes();
};

void tst_Validators::addressPattern_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");
    QTest::newRow("plain") << "192.168.1.20" << true;
    QTest::newRow("one leading zero") << "01.2.3.4" << true;
    QTest::newRow("two leading zeros") << "001.2.3.4" << true;
    QTest::newRow("part above 255") << "256.1.1.1" << false;
    QTest::newRow("three parts") << "1.2.3" << false;
    QTest::newRow("five parts") << "1.2.3.4.5" << false;
    QTest::newRow("empty part") << "1..2.3" << false;
    QTest::newRow("trailing blank") << "1.2.3.4 " << false;
    QTest::newRow("trailing newline") << "1.2.3.4\n" << false;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("all 255") << "255.255.255.255" << true;
}

void tst_Validators::addressPattern()
{
    QFETCH(QString, text);
    QFETCH(bool, valid);
    QCOMPARE(veltor::checkIp(text), valid);
    QCOMPARE(veltor::checkSubnet(text), valid);
    QCOMPARE(veltor::checkGateway(text), valid);
    QCOMPARE(veltor::checkDns(text), valid);
}

void tst_Validators::portPattern_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");
    QTest::newRow("zero") << "0" << true;
    QTest::newRow("leading zero") << "080" << false;
    QTest::newRow("max") << "65535" << true;
    QTest::newRow("above max") << "65536" << false;
    QTest::newRow("65529") << "65529" << true;
    QTest::newRow("negative") << "-1" << false;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("trailing newline") << "80\n" << false;
    // QRegExp's \d is any decimal digit of the BMP; Qt 6 builds must agree.
    QTest::newRow("arabic-indic second digit") << QString::fromUtf16(u"8\u0663") << true;
    QTest::newRow("second digit beyond the BMP") << QString::fromUcs4(U"8\U0001D7CE") << false;
}

void tst_Validators::portPattern()
{
    QFETCH(QString, text);
    QFETCH(bool, valid);
    QCOMPARE(veltor::checkPort(text), valid);
}

void tst_Validators::characterTests_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("num");
    QTest::addColumn<bool>("addr");
    QTest::newRow("empty") << "" << true << true;
    QTest::newRow("digits") << "8080" << true << true;
    QTest::newRow("dotted") << "1.2.3.4" << false << true;
    QTest::newRow("minus") << "-1" << false << false;
    QTest::newRow("arabic-indic digit") << QString(QChar(0x0663)) << false << false;
    QTest::newRow("blank") << "1 2" << false << false;
}

void tst_Validators::characterTests()
{
    QFETCH(QString, text);
    QFETCH(bool, num);
    QFETCH(bool, addr);
    QCOMPARE(veltor::isNum(text), num);
    QCOMPARE(veltor::isAddr(text), addr);
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
    QFETCH(int, key);
    QCOMPARE(veltor::ipToKey(address), key);
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
    QTest::newRow("empty part stops") << QStringList{"1", "", "3"} << QByteArray() << 0 << false
                                      << QByteArray("\x01");
    QTest::newRow("255 fits") << QStringList{"255"} << QByteArray() << 0 << true
                              << QByteArray("\xff");
}

void tst_Validators::winbondBytes()
{
    QFETCH(QStringList, parts);
    QFETCH(QByteArray, initial);
    QFETCH(int, start);
    QFETCH(bool, ok);
    QFETCH(QByteArray, result);
    QByteArray data = initial;
    QCOMPARE(veltor::appendWinbondIP(parts, &data, start), ok);
    QCOMPARE(data, result);
}

QTEST_APPLESS_MAIN(tst_Validators)
#include "tst_validators.moc"
