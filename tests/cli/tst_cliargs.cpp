#include "cli/commands.h"
#include "cli/password.h"
#include "cli/targets.h"

#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>

using namespace veltor::cli;

class tst_cliargs : public QObject
{
    Q_OBJECT

private slots:
    void exitStatus_data();
    void exitStatus();
    void normalizedMac_data();
    void normalizedMac();
    void passwordFileFirstLine();
    void passwordFromEnvironment();
    void selectTargets();
};

void tst_cliargs::exitStatus_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("errContains");
    QTest::newRow("no command") << QStringList{} << int(Usage) << "a command is missing";
    QTest::newRow("unknown") << QStringList{"frobnicate"} << int(Usage) << "unknown command";
    QTest::newRow("overview") << QStringList{"--help"} << int(Success) << "";
    QTest::newRow("version") << QStringList{"--version"} << int(Success) << "";
    for (const char *command : {"discover", "set", "upgrade", "sd"}) {
        QTest::addRow("%s --help", command) << QStringList{command, "--help"} << int(Success) << "";
        QTest::addRow("%s bad option", command)
            << QStringList{command, "--no-such-option"} << int(Usage) << "no-such-option";
    }
}

void tst_cliargs::exitStatus()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, code);
    QFETCH(QString, errContains);
    QString outText;
    QString errText;
    QTextStream out(&outText);
    QTextStream err(&errText);
    QCOMPARE(run(QStringList{"veltor-cli"} + arguments, Io{out, err}), code);
    out.flush();
    err.flush();
    QVERIFY2(errText.contains(errContains), qPrintable(errText));
    if (code == Success)
        QVERIFY(!outText.isEmpty());
}

void tst_cliargs::normalizedMac_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("mac");
    QTest::newRow("colons") << "00:1a:2b:3c:4d:5e"
                            << "00:1A:2B:3C:4D:5E";
    QTest::newRow("dashes") << "00-1A-2B-3C-4D-5E"
                            << "00:1A:2B:3C:4D:5E";
    QTest::newRow("bare") << "001a2b3c4d5e"
                          << "00:1A:2B:3C:4D:5E";
    QTest::newRow("short") << "001a2b3c4d5"
                           << "";
    QTest::newRow("not hex") << "00:1a:2b:3c:4d:5g"
                             << "";
    QTest::newRow("ip") << "10.0.0.1"
                        << "";
}

void tst_cliargs::normalizedMac()
{
    QFETCH(QString, text);
    QFETCH(QString, mac);
    QCOMPARE(veltor::cli::normalizedMac(text), mac);
}

void tst_cliargs::passwordFileFirstLine()
{
    QTemporaryDir dir;
    QFile file(dir.filePath("pw"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("s3cr&t #1\r\nsecond line\n");
    file.close();
    QString sink;
    QTextStream stream(&sink);
    QString error;
    QCOMPARE(readPassword(file.fileName(), Io{stream, stream}, &error), QString("s3cr&t #1"));
    QVERIFY(!readPassword(dir.filePath("missing"), Io{stream, stream}, &error));
    QVERIFY(error.contains("missing"));
}

void tst_cliargs::passwordFromEnvironment()
{
    qputenv("VELTOR_PASSWORD", "from env");
    QString sink;
    QTextStream stream(&sink);
    QString error;
    QCOMPARE(readPassword(QString(), Io{stream, stream}, &error), QString("from env"));
    qunsetenv("VELTOR_PASSWORD");
}

void tst_cliargs::selectTargets()
{
    QVector<veltor::SeenCamera> cameras(2);
    cameras[0].record.ip = "10.0.0.5";
    cameras[0].record.mac = "00:11:22:33:44:55";
    cameras[1].record.ip = "10.0.0.6";
    cameras[1].record.mac = "00:11:22:33:44:66";
    QStringList missing;
    const auto chosen =
        veltor::cli::selectTargets(cameras, {"001122334466", "10.0.0.5", "10.0.0.9"}, &missing);
    QCOMPARE(chosen.size(), 2);
    QCOMPARE(chosen[0].record.ip, QString("10.0.0.6"));
    QCOMPARE(chosen[1].record.ip, QString("10.0.0.5"));
    QCOMPARE(missing, QStringList{"10.0.0.9"});
}

QTEST_GUILESS_MAIN(tst_cliargs)
#include "tst_cliargs.moc"
