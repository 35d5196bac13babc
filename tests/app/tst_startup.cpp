#include "app/startup.h"
#include "app/startuprules.h"

#include <QCoreApplication>
#include <QFile>
#include <QTranslator>
#include <QtTest>

class tst_Startup : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { veltor::initResources(); }
    void languageRule_data();
    void languageRule();
    void missingTranslationFails();
    void translationCoversEveryText();
    void interfaceChoices_data();
    void interfaceChoices();
};

void tst_Startup::languageRule_data()
{
    QTest::addColumn<QStringList>("languages");
    QTest::addColumn<bool>("german");
    QTest::newRow("de-DE") << QStringList{"de-DE", "en-US"} << true;
    QTest::newRow("de") << QStringList{"de"} << true;
    QTest::newRow("de-AT") << QStringList{"de-AT"} << true;
    QTest::newRow("underscore") << QStringList{"de_DE"} << false;
    QTest::newRow("en-US") << QStringList{"en-US", "de-DE"} << false;
    QTest::newRow("upper case") << QStringList{"DE-de"} << false;
    QTest::newRow("none") << QStringList() << false;
}

void tst_Startup::languageRule()
{
    QFETCH(QStringList, languages);
    QFETCH(bool, german);
    QCOMPARE(veltor::wantsGerman(languages), german);
}

void tst_Startup::missingTranslationFails()
{
    QTest::ignoreMessage(QtDebugMsg, "Error file not found!");
    QCOMPARE(veltor::installTranslation({"de-DE"}, ":/languages/missing.qm"), -1);
    // Other languages never look for a file.
    QCOMPARE(veltor::installTranslation({"en-US"}, ":/languages/missing.qm"), 0);
}

// Every source text in the catalogue has a finished German translation.
void tst_Startup::translationCoversEveryText()
{
    QVERIFY(QFile::exists(QLatin1String(veltor::kGermanTranslation)));
    QFile ts(QStringLiteral(VELTOR_GERMAN_TS));
    QVERIFY(ts.open(QIODevice::ReadOnly));
    const QByteArray catalogue = ts.readAll();
    const int messages = catalogue.count("<message");
    QVERIFY(messages > 120);
    QCOMPARE(catalogue.count("type=\"unfinished\""), 0);
    QCOMPARE(catalogue.count("<translation></translation>"), 0);
    QCOMPARE(catalogue.count("<translation"), messages);
}

void tst_Startup::interfaceChoices_data()
{
    QTest::addColumn<QStringList>("addresses");
    QTest::addColumn<QStringList>("items");
    QTest::newRow("empty") << QStringList() << QStringList{"127.0.0.1"};
    QTest::newRow("loopback once, last")
        << QStringList{"127.0.0.1", "10.0.0.5"} << QStringList{"10.0.0.5", "127.0.0.1"};
    QTest::newRow("ipv6 skipped") << QStringList{"::1", "fe80::1", "192.168.1.4"}
                                  << QStringList{"192.168.1.4", "127.0.0.1"};
    QTest::newRow("order kept") << QStringList{"10.0.0.9", "10.0.0.2"}
                                << QStringList{"10.0.0.9", "10.0.0.2", "127.0.0.1"};
    QTest::newRow("mapped v4 is v6") << QStringList{"::ffff:10.1.1.1"} << QStringList{"127.0.0.1"};
}

void tst_Startup::interfaceChoices()
{
    QFETCH(QStringList, addresses);
    QFETCH(QStringList, items);
    QList<QHostAddress> hostAddresses;
    for (const QString &text : addresses)
        hostAddresses << QHostAddress(text);
    QCOMPARE(veltor::interfaceChoices(hostAddresses), items);
}

QTEST_GUILESS_MAIN(tst_Startup)
#include "tst_startup.moc"
