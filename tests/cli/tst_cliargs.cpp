// veltor-cli without a network: every refusal comes before a search, with
// its exit status and a message naming the fault; what a rerun of an
// interrupted upgrade takes on; what discover prints for hostile camera texts.
#include "cli/commands.h"
#include "cli/upgradestate.h"
#include "cli/upgradetargets.h"
#include "clirun.h"
#include "discovery/discoveroutput.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>

using namespace veltor;
using namespace veltor::cli;

namespace {

UpgradeTarget target(int n, TargetState state)
{
    const QString mac = QStringLiteral("02:56:4C:00:00:0%1").arg(n);
    return UpgradeTarget{mac, mac, QStringLiteral("10.78.1.%1").arg(n), "Haisi", state, {}};
}

SeenCamera camera(const QString &name)
{
    SeenCamera camera;
    camera.record.name = name;
    camera.record.ip = "10.79.1.5";
    camera.record.dhcp = "off";
    camera.family = "Haisi";
    camera.source = QHostAddress("10.79.1.5");
    camera.receivedOn = {QHostAddress("10.80.0.1"), QHostAddress("10.79.0.1")};
    camera.findings = QStringList{"ip-conflict", "other-subnet"};
    return camera;
}

QString written(OutputFormat format, const QVector<SeenCamera> &cameras)
{
    QString text;
    QTextStream out(&text);
    writeDiscoverOutput(out, format, cameras);
    out.flush();
    return text;
}

} // namespace

class tst_cliargs : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("VELTOR_PASSWORD", "secret"); }
    void exitStatus_data();
    void exitStatus();
    void resumePlan_data();
    void resumePlan();
    void csvField_data();
    void csvField() { QTEST(veltor::csvField(QTest::currentDataTag()), "field"); }
    void hostileTexts();

private:
    QString stateFile(const QString &name, const QByteArray &content)
    {
        return writeFile(dir.filePath(name), content) ? dir.filePath(name) : QString();
    }
    QTemporaryDir dir;
};

void tst_cliargs::exitStatus_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("text"); // on stdout after success, else on stderr
    QTest::newRow("no command") << QStringList{} << int(Usage) << "a command is missing";
    QTest::newRow("unknown") << QStringList{"frobnicate"} << int(Usage) << "unknown command";
    QTest::newRow("overview") << QStringList{"--help"} << int(Success) << "  upgrade ";
    QTest::newRow("version") << QStringList{"--version"} << int(Success) << "veltor-cli ";
    for (const char *command : {"discover", "set", "upgrade", "sd"}) {
        // A command's help names the command, not the program's path.
        QTest::addRow("%s --help", command)
            << QStringList{command, "--help"} << int(Success)
            << QString("Usage: veltor-cli %1 [options]").arg(command);
        QTest::addRow("%s bad option", command)
            << QStringList{command, "--no-such-option"} << int(Usage) << "no-such-option";
    }
    const auto row = [](const char *name, const QString &arguments, int code, const QString &text) {
        QTest::newRow(name) << arguments.split(' ') << code << text;
    };
    row("discover: rounds 0", "discover --rounds 0", Usage, "--rounds wants a number");
    row("discover: negative wait", "discover --wait -1", Usage, "--wait wants a number");
    row("discover: format", "discover --format xml", Usage, "--format wants table, csv or json");
    row("discover: interface not an address", "discover --interface eth0", Usage,
        "--interface wants an IPv4 address");
    row("discover: interface not here", "discover --interface 192.0.2.77", Usage,
        "no interface of this host has");
    row("discover: stray argument", "discover everything", Usage, "unexpected argument");
    row("discover: missing value", "discover --format", Usage, "Missing value");
    row("discover: usage names help", "discover --rounds two", Usage, "veltor-cli discover --help");

    row("sd: no action", "sd", Usage, "action is missing");
    row("sd: unknown action", "sd erase 10.0.0.5", Usage, "unknown action \"erase\"");
    row("sd: no target", "sd status --user a", Usage, "status TARGET");
    row("sd: target no address", "sd status camera1 --user a", Usage, "neither a MAC");
    row("sd: status with a path", "sd status 20261123 10.0.0.5 --user a", Usage, "status TARGET");
    row("sd: get without DEST", "sd get 20261123 10.0.0.5 --user a", Usage, "get PATH DEST");
    row("sd: format without --yes", "sd format 10.0.0.5 --user a", Usage, "--yes");
    row("sd: ls of a file", "sd ls a/b/c.jpg 10.0.0.5 --user a", Usage, "names a file");
    for (const QString path : {"../x", "a/../b", "./a", "a?cmd=sdfrmt", "a#x", "%2e%2e"})
        row(qPrintable("sd: get " + path), "sd get " + path + " d 10.0.0.5 --user a", Usage,
            '"' + path + "\" is no place on an SD card");
    row("sd: too deep", "sd get a/b/c/d d 10.0.0.5 --user a", Usage, "deeper than the card's");
    row("sd: unknown format", "sd status --format xml 10.0.0.5 --user a", Usage, "text or json");
    row("sd: wait no number", "sd status --wait soon 10.0.0.5 --user a", Usage, "--wait");
    row("sd: no user", "sd status 10.0.0.5", Usage, "--user is required");
    row("sd: unreadable password file",
        "sd status --password-file /nonexistent/pw 10.0.0.5 --user a", Failure,
        "cannot read the password file /nonexistent/pw");

    const QString file = QCoreApplication::applicationFilePath(); // any readable file
    const QString upgrade = "upgrade --user a --file " + file;
    row("upgrade: no kind", upgrade + " 10.0.0.1", Usage, "give one of --firmware and --webui");
    row("upgrade: both kinds", upgrade + " --firmware --webui 10.0.0.1", Usage,
        "give one of --firmware and --webui");
    row("upgrade: no targets", upgrade + " --firmware", Usage, "no targets");
    row("upgrade: two ways of naming", upgrade + " --firmware --all-family Haisi 10.0.0.1", Usage,
        "exclude each other");
    row("upgrade: unknown family", upgrade + " --webui --all-family Sony", Usage,
        "--all-family wants Haisi or Winbond, not \"Sony\"");
    row("upgrade: parallel 0", upgrade + " --firmware --parallel 0 10.0.0.1", Usage,
        "--parallel wants a number from 1 to 64");
    row("upgrade: no file", "upgrade --user a --firmware 10.0.0.1", Usage, "--file is required");
    row("upgrade: unreadable file", "upgrade --user a --firmware --file /nonexistent 10.0.0.1",
        Failure, "cannot read the file /nonexistent");
    row("upgrade: no user", "upgrade --firmware 10.0.0.1 --file " + file, Usage,
        "--user is required");
    UpgradeRun done{
        "firmware", file, {}, {{"02:56:4C:00:00:01", {}, {}, {}, TargetState::Sent, {}}}};
    const QString donePath = stateFile("done.json", stateJson(done));
    row("upgrade: nothing left, no search", upgrade + " --firmware --only-failed " + donePath,
        Success, "1 sent");
    row("upgrade: state of the other kind", upgrade + " --webui --only-failed " + donePath, Failure,
        "the state file is of a firmware upgrade, not of a webui upgrade");
    const QByteArray unknownState = R"({"targets": [{"mac": "02:56", "state": "done"}]})";
    const QMap<QByteArray, QString> damaged{
        {"\177ELF", "not JSON"},
        {R"({"targets": [{"mac": "02:)", "not JSON"},
        {"[1, 2]", "no list of targets"},
        {R"({"targets": 3})", "no list of targets"},
        {unknownState, "target 1 has no name or an unknown state"},
        {R"({"targets": [{"state": "queued"}]})", "target 1 has no name"}};
    for (auto it = damaged.cbegin(); it != damaged.cend(); ++it) {
        const QString path = stateFile(QString::number(qHash(it.key())), it.key());
        row(it.key().constData(), upgrade + " --webui --only-failed " + path, Failure,
            path + " is damaged: " + it.value());
    }
    row("upgrade: missing state", upgrade + " --webui --only-failed /nonexistent.json", Failure,
        "cannot read the state file /nonexistent.json");

    row("set: no MAC", "set --dhcp --user a", Usage, "give exactly one MAC address");
    row("set: not a MAC", "set 10.0.0.1 --dhcp --user a", Usage,
        "\"10.0.0.1\" is not a MAC address");
    row("set: dhcp and address", "set 02:56:4C:00:00:01 --dhcp --ip 10.0.0.9 --user a", Usage,
        "--dhcp and fixed addresses exclude each other");
    row("set: nothing to change", "set 02:56:4C:00:00:01 --user a", Usage, "nothing to change");
    row("set: bad timeout", "set 02:56:4C:00:00:01 --dhcp --timeout soon --user a", Usage,
        "--timeout wants a number");
    row("set: no user", "set 02:56:4C:00:00:01 --dhcp", Usage, "--user is required");
}

void tst_cliargs::exitStatus()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, code);
    QFETCH(QString, text);
    QString out, err;
    QTextStream outStream(&out), errStream(&err);
    arguments.removeAll(QString());
    QCOMPARE(run(QStringList{"veltor-cli"} + arguments, Io{outStream, errStream}), code);
    outStream.flush();
    errStream.flush();
    QVERIFY2((code == Success ? out : err).contains(text), qPrintable(out + err));
    QVERIFY2(code == Success || out.isEmpty(), qPrintable(out));
    QVERIFY(!err.contains("secret"));
}

// What a rerun with --only-failed takes on, from the earlier state of each
// target and what the search shows now. Camera 1 reports the new version.
void tst_cliargs::resumePlan_data()
{
    QTest::addColumn<int>("earlier");
    QTest::addColumn<bool>("answers");
    QTest::addColumn<int>("planned");
    QTest::addColumn<bool>("uploads");
    const int verified = int(TargetState::Verified), queued = int(TargetState::Queued),
              failed = int(TargetState::Failed);
    QTest::newRow("sent, new version shown") << int(TargetState::Sent) << true << verified << false;
    QTest::newRow("restarting, new version shown")
        << int(TargetState::WaitingForReboot) << true << verified << false;
    QTest::newRow("upload cut short: again, whatever it shows")
        << int(TargetState::Uploading) << true << queued << true;
    QTest::newRow("failed: again") << failed << true << queued << true;
    QTest::newRow("silent now") << int(TargetState::Sent) << false << failed << false;
}

void tst_cliargs::resumePlan()
{
    QFETCH(int, earlier);
    QFETCH(bool, answers);
    const UpgradeRun run{"webui", {}, "1.1.0.0", {}};
    const QVector<UpgradeTarget> before{target(1, TargetState(earlier)),
                                        target(2, TargetState::Verified)};
    QVector<veltor::SeenCamera> seen(1);
    seen[0].record.mac = answers ? before[0].mac : QStringLiteral("02:56:4C:00:00:09");
    seen[0].record.webui = QStringLiteral("1.1.0.0");
    seen[0].record.firmware = QStringLiteral("9.9.9.9");
    QHash<int, veltor::SeenCamera> cameras;
    const QVector<UpgradeTarget> plan =
        planTargets(namesToRedo(before, true), before, seen, run, &cameras);
    QCOMPARE(plan.size(), 2); // the other, done target is kept
    QCOMPARE(plan[1].mac, before[1].mac);
    QCOMPARE(plan[0].target, before[0].mac);
    QTEST(int(plan[0].state), "planned");
    QTEST(cameras.contains(0), "uploads");
}

void tst_cliargs::csvField_data()
{
    QTest::addColumn<QString>("field"); // the row's name is the text
    for (const char *plain : {"VELTOR-W001", " a b "})
        QTest::newRow(plain) << plain;
    QTest::newRow("") << "";
    QTest::newRow("Hall, east") << "\"Hall, east\"";
    QTest::newRow("say \"hi\"") << "\"say \"\"hi\"\"\"";
    QTest::newRow("two\nlines") << "\"two\nlines\"";
    QTest::newRow("a\rb") << "\"a\rb\"";
}

// Kept whole in JSON, replaced in the table (no cursor moves, retitled
// windows or reversed text), with the columns still under their headers.
void tst_cliargs::hostileTexts()
{
    const QString name = QString::fromUtf8("Kamera \"Süd\", \\ \x1b]0;owned\x07\u202Ename");
    const QJsonArray array =
        QJsonDocument::fromJson(written(OutputFormat::Json, {camera(name)}).toUtf8()).array();
    QCOMPARE(array.size(), 1);
    QCOMPARE(array[0]["name"].toString(), name);
    QCOMPARE(array[0]["dhcp"].toString(), QString("off"));
    QCOMPARE(written(OutputFormat::Json, {}).trimmed(), QString("[\n]"));
    const QStringList lines =
        written(OutputFormat::Table, {camera(name), camera("ok")}).split('\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 3);
    QVERIFY(lines[1].startsWith(
        QString::fromUtf8("Kamera \"Süd\", \\ \uFFFD]0;owned\uFFFD\uFFFDname")));
    const int ipColumn = lines[0].indexOf("IP Address");
    QCOMPARE(lines[1].indexOf("10.79.1.5"), ipColumn);
    QCOMPARE(lines[2].indexOf("10.79.1.5"), ipColumn);
    QVERIFY(lines[2].endsWith("10.80.0.1 10.79.0.1  10.79.1.5  ip-conflict other-subnet"));
}

QTEST_GUILESS_MAIN(tst_cliargs)
#include "tst_cliargs.moc"
