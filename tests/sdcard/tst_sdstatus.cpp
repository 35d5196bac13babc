#include "sdcard/sdstatus.h"

#include <QtTest>

using veltor::parseSdStatus;
using veltor::sdSizeLabels;

class TestSdStatus : public QObject
{
    Q_OBJECT

private slots:
    void quotedValue_data();
    void quotedValue();
    void labels_data();
    void labels();
};

void TestSdStatus::quotedValue_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("ready") << "\"Ready\""
                           << "Ready";
    QTest::newRow("no quotes") << "Ready"
                               << "";
    QTest::newRow("one quote") << "\"Ready"
                               << "Ready";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("first pair only") << "x\"a\"b\"c\""
                                     << "a";
}

void TestSdStatus::quotedValue()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(veltor::quotedValue(text), expected);
}

void TestSdStatus::labels_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<bool>("ready");
    QTest::addColumn<QString>("total");
    QTest::addColumn<QString>("free");
    QTest::addColumn<QString>("used");
    auto body = [](const char *status, const char *total, const char *free) -> QByteArray {
        return QByteArray("var sdstatus=\"") + status + "\";var sdtotalspace=\"" + total +
               "\";var sdfreespace=\"" + free + "\";";
    };
    QTest::newRow("1024 stays KB") << body("Ready", "1024", "24") << true << "1024KB"
                                   << "24KB"
                                   << "1000KB";
    QTest::newRow("1025 is MB") << body("Ready", "1025", "0") << true << "1.00098MB"
                                << "0MB"
                                << "1.00098MB";
    QTest::newRow("free in MB by the total")
        << body("Ready", "2000000", "300") << true << "1953.12MB"
        << "0.292969MB"
        << "1952.83MB";
    QTest::newRow("512 free of 2048") << body("Ready", "2048", "512") << true << "2MB"
                                      << "0.5MB"
                                      << "1.5MB";
    QTest::newRow("15558144") << body("Ready", "15558144", "15558144") << true << "15193.5MB"
                              << "15193.5MB"
                              << "0KB";
    QTest::newRow("NotReady counts as ready") << body("NotReady", "0", "0") << true << "0KB"
                                              << "0KB"
                                              << "0KB";
    QTest::newRow("small card keeps the text as sent")
        << body("ready", "0512", "x") << false << "0512KB"
        << "xKB"
        << "512KB";
    QTest::newRow("missing status")
        << QByteArray("var sdtotalspace=\"10\";var sdfreespace=\"4\";") << false << "10KB"
        << "4KB"
        << "6KB";
    QTest::newRow("missing total")
        << QByteArray("var sdstatus=\"Ready\";var sdfreespace=\"4\";") << true << ""
        << ""
        << "";
    QTest::newRow("missing free")
        << QByteArray("var sdstatus=\"Ready\";var sdtotalspace=\"4096\";") << true << ""
        << ""
        << "";
    QTest::newRow("no quotes") << QByteArray("var sdstatus=Ready;var sdtotalspace=4096;") << false
                               << ""
                               << ""
                               << "";
    QTest::newRow("empty body") << QByteArray() << false << ""
                                << ""
                                << "";
    QTest::newRow("garbage") << QByteArray("\"\";;;===\"\xff") << false << ""
                             << ""
                             << "";
    QTest::newRow("later key wins")
        << QByteArray("var sdtotalspace=\"1\";var sdtotalspace=\"3000\";var sdfreespace=\"0\";")
        << false << "2.92969MB"
        << "0MB"
        << "2.92969MB";
    QTest::newRow("4 TB card") << body("Ready", "4294967296", "0") << true << "4.1943e+06MB"
                               << "0MB"
                               << "4.1943e+06MB";
}

void TestSdStatus::labels()
{
    QFETCH(QByteArray, body);
    QFETCH(bool, ready);
    QFETCH(QString, total);
    QFETCH(QString, free);
    QFETCH(QString, used);
    const veltor::SdStatus status = parseSdStatus(body);
    QCOMPARE(status.ready(), ready);
    const veltor::SdSizeLabels labels = sdSizeLabels(status);
    QCOMPARE(labels.total, total);
    QCOMPARE(labels.free, free);
    QCOMPARE(labels.used, used);
}

QTEST_APPLESS_MAIN(TestSdStatus)
#include "tst_sdstatus.moc"
