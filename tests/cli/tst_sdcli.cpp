// "veltor-cli sd" before it reaches a camera: camera paths as typed, and the
// usage errors that must stop it before a search or a password prompt.
#include "cli/commands.h"
#include "cli/sdpath.h"

#include <QTest>
#include <QTextStream>

using namespace veltor::cli;

class tst_sdcli : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qunsetenv("VELTOR_PASSWORD"); }
    void sdPath_data();
    void sdPath();
    void stopsEarly_data();
    void stopsEarly();
};

void tst_sdcli::sdPath_data()
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

void tst_sdcli::sdPath()
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

void tst_sdcli::stopsEarly_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("errContains");
    const QStringList user{"--user", "admin"};
    QTest::newRow("no action") << QStringList{} << int(Usage) << "action is missing";
    QTest::newRow("unknown action")
        << QStringList{"erase", "10.0.0.5"} << int(Usage) << "unknown action \"erase\"";
    QTest::newRow("no target") << QStringList{"status"} + user << int(Usage) << "status TARGET";
    QTest::newRow("target no address")
        << QStringList{"status", "camera1"} + user << int(Usage) << "neither a MAC";
    QTest::newRow("status with a path")
        << QStringList{"status", "20261123", "10.0.0.5"} + user << int(Usage) << "status TARGET";
    QTest::newRow("get without DEST")
        << QStringList{"get", "20261123", "10.0.0.5"} + user << int(Usage) << "get PATH DEST";
    QTest::newRow("format without --yes")
        << QStringList{"format", "10.0.0.5"} + user << int(Usage) << "--yes";
    QTest::newRow("ls of a file") << QStringList{"ls", "a/b/c.jpg", "10.0.0.5"} + user << int(Usage)
                                  << "names a file";
    QTest::newRow("get outside the card") << QStringList{"get", "../x", "d", "10.0.0.5"} + user
                                          << int(Usage) << "no place on an SD card";
    QTest::newRow("unknown format") << QStringList{"status", "--format", "xml", "10.0.0.5"} + user
                                    << int(Usage) << "text or json";
    QTest::newRow("wait no number")
        << QStringList{"status", "--wait", "soon", "10.0.0.5"} + user << int(Usage) << "--wait";
    QTest::newRow("no user") << QStringList{"status", "10.0.0.5"} << int(Usage) << "--user";
    QTest::newRow("unreadable password file")
        << QStringList{"status", "--password-file", "/nonexistent/pw", "10.0.0.5"} + user
        << int(Failure) << "/nonexistent/pw";
}

void tst_sdcli::stopsEarly()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, code);
    QFETCH(QString, errContains);
    QString outText;
    QString errText;
    QTextStream out(&outText);
    QTextStream err(&errText);
    QCOMPARE(run(QStringList{"veltor-cli", "sd"} + arguments, Io{out, err}), code);
    err.flush();
    QVERIFY2(errText.contains(errContains), qPrintable(errText));
    QVERIFY(!errText.contains("Password:")); // decided before any prompt
}

QTEST_GUILESS_MAIN(tst_sdcli)
#include "tst_sdcli.moc"
