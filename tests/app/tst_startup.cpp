#include "app/startup.h"
#include "app/startuprules.h"

#include <QFile>
#include <QtTest>

class tst_Startup : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { veltor::initResources(); }
    void languageRule_data()
    {
        QTest::addColumn<QStringList>("languages");
        QTest::addColumn<bool>("german");
        QTest::newRow("de-DE") << QStringList{"de-DE", "en-US"} << true;
        QTest::newRow("de-AT") << QStringList{"de-AT"} << true;
        QTest::newRow("underscore") << QStringList{"de_DE"} << false;
        QTest::newRow("en-US") << QStringList{"en-US", "de-DE"} << false;
        QTest::newRow("upper case") << QStringList{"DE-de"} << false;
        QTest::newRow("none") << QStringList() << false;
    }
    void languageRule()
    {
        QFETCH(QStringList, languages);
        QTEST(veltor::wantsGerman(languages), "german");
    }
    void missingTranslationFails()
    {
        QTest::ignoreMessage(QtDebugMsg, "Error file not found!");
        QCOMPARE(veltor::installTranslation({"de-DE"}, ":/languages/missing.qm"), -1);
        // Other languages never look for a file.
        QCOMPARE(veltor::installTranslation({"en-US"}, ":/languages/missing.qm"), 0);
    }
    // Every source text in the catalogue has a finished German translation.
    void translationCoversEveryText()
    {
        QFile ts(QStringLiteral(VELTOR_GERMAN_CATALOGUE));
        QVERIFY(ts.open(QIODevice::ReadOnly));
        const QByteArray catalogue = ts.readAll();
        QVERIFY(catalogue.count("<message") > 120);
        QCOMPARE(catalogue.count("<translation"), catalogue.count("<message"));
        QCOMPARE(catalogue.count("type=\"unfinished\"") + catalogue.count("<translation></"), 0);
    }
    void interfaceChoices_data()
    {
        QTest::addColumn<QString>("addresses");
        QTest::addColumn<QString>("items");
        QTest::newRow("empty") << QString("") << QString("127.0.0.1");
        QTest::newRow("loopback once, last")
            << QString("127.0.0.1 10.0.0.5") << QString("10.0.0.5 127.0.0.1");
        QTest::newRow("ipv6 skipped")
            << QString("::1 fe80::1 192.168.1.4") << QString("192.168.1.4 127.0.0.1");
        QTest::newRow("order kept")
            << QString("10.0.0.9 10.0.0.2") << QString("10.0.0.9 10.0.0.2 127.0.0.1");
        QTest::newRow("mapped v4 is v6") << QString("::ffff:10.1.1.1") << QString("127.0.0.1");
    }
    void interfaceChoices()
    {
        QFETCH(QString, addresses);
        QList<QHostAddress> hostAddresses;
        for (const QString &text : addresses.split(' ', Qt::SkipEmptyParts))
            hostAddresses << QHostAddress(text);
        QTEST(veltor::interfaceChoices(hostAddresses).join(' '), "items");
    }
};

QTEST_GUILESS_MAIN(tst_Startup)
#include "tst_startup.moc"
