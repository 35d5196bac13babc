#include "netconf/validators.h"

#include <QtTest>

class tst_Validators : public QObject
{
    Q_OBJECT

private slots:
    void textChecks_data()
    {
        QTest::addColumn<QString>("text");
        // by checkIp (and the like), checkPort, isNum, isAddr
        QTest::addColumn<QString>("accepted");
        const auto row = [](const char *tag, const QString &text, const char *accepted) {
            QTest::newRow(tag) << text << QString(accepted);
        };
        row("address", "192.168.1.20", "ip addr");
        row("two leading zeros", "001.2.3.4", "ip addr");
        row("all 255", "255.255.255.255", "ip addr");
        row("part above 255", "256.1.1.1", "addr");
        row("three parts", "1.2.3", "addr");
        row("five parts", "1.2.3.4.5", "addr");
        row("empty part", "1..2.3", "addr");
        row("trailing newline", "1.2.3.4\n", "");
        row("empty", "", "num addr");
        row("port zero", "0", "port num addr");
        row("port leading zero", "080", "num addr");
        row("port max", "65535", "port num addr");
        row("port 65529", "65529", "port num addr");
        row("port above max", "65536", "num addr");
        row("negative", "-1", "");
        row("port newline", "80\n", "");
        // QRegExp's \d is any decimal digit of the BMP; Qt 6 builds must agree. isNum and isAddr
        // take ASCII digits only.
        row("arabic-indic digit", QString::fromUtf16(u"8\u0663"), "port");
        row("digit beyond the BMP", QString::fromUcs4(U"8\U0001D7CE"), "");
    }
    void textChecks()
    {
        QFETCH(QString, text);
        QFETCH(QString, accepted);
        const bool ip = veltor::checkIp(text);
        QCOMPARE(veltor::checkSubnet(text) + veltor::checkGateway(text) + veltor::checkDns(text),
                 3 * ip);
        const QStringList got{ip ? "ip" : "", veltor::checkPort(text) ? "port" : "",
                              veltor::isNum(text) ? "num" : "", veltor::isAddr(text) ? "addr" : ""};
        QCOMPARE(got.join(' ').simplified(), accepted);
    }
};

QTEST_APPLESS_MAIN(tst_Validators)
#include "tst_validators.moc"
