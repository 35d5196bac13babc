#include "cli/commands.h"
#include "cli/password.h"
#include "cli/sdpath.h"
#include "cli/targets.h"

#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>

using namespace veltor::cli;

class tst_cliargs : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qunsetenv("VELTOR_PASSWORD"); }
    void exitStatus_data();
    void exitStatus();
    void sdPath_data();
    void sdPath();
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
    // Usage errors come before a search or a password prompt.
    const QStringList user{"--user", "admin"};
    QTest::newRow("sd: no action") << QStringList{"sd"} << int(Usage) << "action is missing";
    QTest::newRow("sd: unknown action")
        << QStringList{"sd", "erase", "10.0.0.5"} << int(Usage) << "unknown action \"erase\"";
    QTest::newRow("sd: no target")
        << QStringList{"sd", "status"} + user << int(Usage) << "status TARGET";
    QTest::newRow("sd: target no address")
        << QStringList{"sd", "status", "camera1"} + user << int(Usage) << "neither a MAC";
    QTest::newRow("sd: status with a path")
        << QStringList{"sd", "status", "20261123", "10.0.0.5"} + user << int(Usage)
        << "status TARGET";
    QTest::newRow("sd: get without DEST")
        << QStringList{"sd", "get", "20261123", "10.0.0.5"} + user << int(Usage) << "get PATH DEST";
    QTest::newRow("sd: format without --yes")
        << QStringList{"sd", "format", "10.0.0.5"} + user << int(Usage) << "--yes";
    QTest::newRow("sd: ls of a file")
        << QStringList{"sd", "ls", "a/b/c.jpg", "10.0.0.5"} + user << int(Usage) << "names a file";
    QTest::newRow("sd: get outside the card")
        << QStringList{"sd", "get", "../x", "d", "10.0.0.5"} + user << int(Usage)
        << "no place on an SD card";
    QTest::newRow("sd: unknown format")
        << QStringList{"sd", "status", "--format", "xml", "10.0.0.5"} + user << int(Usage)
        << "text or json";
    QTest::newRow("sd: wait no number")
        << QStringList{"sd", "status", "--wait", "soon", "10.0.0.5"} + user << int(Usage)
        << "--wait";
    QTest::newRow("sd: no user") << QStringList{"sd", "status", "10.0.0.5"} << int(Usage)
                                 << "--user";
    QTest::newRow("sd: unreadable password file")
        << QStringList{"sd", "status", "--password-file", "/nonexistent/pw", "10.0.0.5"} + user
        << int(Failure) << "/nonexistent/pw";
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
    QVERIFY(!errText.contains("Password:"));
    if (code == Success)
        QVERIFY(!outText.isEmpty());
    // A command's help names the command, not the program's path.
    if (arguments.size() == 2 && arguments.at(1) == "--help")
        QVERIFY2(outText.startsWith("Usage: veltor-cli " + arguments.first() + " [options]"),
                 qPrintable(outText.left(80)));
}

void tst_cliargs::sdPath_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("cameraPath"); // "!" when refused
    QTest::addColumn<int>("depth");
    QTest::newRow("empty") << ""
                           << "" << 0;
    QTest::newRow("root") << "/"
                          << "" << 0;
    QTest::newRow("day") << "20261123"
                         << "20261123/" << 1;
    QTest::newRow("day with slash") << "20261123/"
                                    << "20261123/" << 1;
    QTest::newRow("doubled slashes") << "/20261123//images001/"
                                     << "20261123/images001/" << 2;
    QTest::newRow("file") << "20261123/record001/R1.264"
                          << "20261123/record001/R1.264" << 3;
    QTest::newRow("too deep") << "a/b/c/d"
                              << "!" << 0;
    QTest::newRow("dot dot") << "../x"
                             << "!" << 0;
    QTest::newRow("dot dot inside") << "20261123/../images001"
                                    << "!" << 0;
    QTest::newRow("dot") << "./20261123"
                         << "!" << 0;
    QTest::newRow("query") << "20261123?cmd=sdfrmt"
                           << "!" << 0;
    QTest::newRow("fragment") << "20261123#x"
                              << "!" << 0;
    QTest::newRow("escape") << "%2e%2e"
                            << "!" << 0;
}

void tst_cliargs::sdPath()
{
    QFETCH(QString, text);
    QFETCH(QString, cameraPath);
    QFETCH(int, depth);
    QString error;
    const std::optional<SdPath> path = parseSdPath(text, &error);
    if (cameraPath == "!") {
        QVERIFY(!path);
        QVERIFY(error.contains(text));
        return;
    }
    QVERIFY(path);
    QCOMPARE(path->cameraPath(), cameraPath);
    QCOMPARE(path->depth(), depth);
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
