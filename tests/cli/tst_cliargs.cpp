// veltor-cli without a network: refusals with their exit status and message,
// what a rerun of an interrupted upgrade takes on, discover's output texts.
#include "cli/commands.h"
#include "cli/upgradestate.h"
#include "cli/upgradetargets.h"
#include "clirun.h"
#include "discovery/discoveroutput.h"

#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>

using namespace veltor;
using namespace veltor::cli;
Q_DECLARE_METATYPE(TargetState)

namespace {

UpgradeTarget target(int n, TargetState state)
{
    const QString mac = QStringLiteral("02:56:4C:00:00:0%1").arg(n);
    return UpgradeTarget{mac, mac, QStringLiteral("10.78.1.%1").arg(n), "Haisi", state, {}};
}

QString written(OutputFormat format, const QStringList &names)
{
    QVector<SeenCamera> cameras(names.size());
    for (int i = 0; i < names.size(); ++i) {
        cameras[i].record.name = names[i];
        cameras[i].record.ip = "10.79.1.5";
        cameras[i].record.dhcp = "off";
        cameras[i].source = QHostAddress("10.79.1.5");
        cameras[i].receivedOn = {QHostAddress("10.80.0.1"), QHostAddress("10.79.0.1")};
        cameras[i].findings = QStringList{"ip-conflict", "other-subnet"};
    }
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
    void exitStatus_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("text"); // on stdout after success, else on stderr
        const auto row = [](const QString &arguments, int code, const QString &text) {
            QTest::newRow(qPrintable(arguments))
                << arguments.split(' ', Qt::SkipEmptyParts) << code << text;
        };
        row("", Usage, "a command is missing");
        row("frobnicate", Usage, "unknown command");
        row("--help", Success, "  upgrade ");
        row("--version", Success, "veltor-cli ");
        for (const QString command : {"discover", "set", "upgrade", "sd"}) {
            // A command's help names the command, not the program's path.
            row(command + " --help", Success, "Usage: veltor-cli " + command + " [options]");
            row(command + " --no-such-option", Usage, "no-such-option");
        }
        row("discover --rounds 0", Usage, "--rounds wants a number");
        row("discover --format xml", Usage, "--format wants table, csv or json");
        row("discover --interface eth0", Usage, "--interface wants an IPv4 address");
        row("discover --interface 192.0.2.77", Usage, "no interface of this host has");
        row("discover everything", Usage, "unexpected argument");
        row("discover --rounds two", Usage, "veltor-cli discover --help");
        row("sd", Usage, "action is missing");
        row("sd erase 10.0.0.5", Usage, "unknown action \"erase\"");
        row("sd status --user a", Usage, "status TARGET");
        row("sd status camera1 --user a", Usage, "neither a MAC");
        row("sd status 20261123 10.0.0.5 --user a", Usage, "status TARGET");
        row("sd get 20261123 10.0.0.5 --user a", Usage, "get PATH DEST");
        row("sd format 10.0.0.5 --user a", Usage, "--yes");
        row("sd ls a/b/c.jpg 10.0.0.5 --user a", Usage, "names a file");
        for (const QString path : {"../x", "a/../b", "./a", "a?cmd=sdfrmt", "a#x", "%2e%2e"})
            row("sd get " + path + " d 10.0.0.5 --user a", Usage, '"' + path + "\" is no place on");
        row("sd get a/b/c/d d 10.0.0.5 --user a", Usage, "deeper than the card's");
        row("sd status --format xml 10.0.0.5 --user a", Usage, "text or json");
        row("sd status --wait soon 10.0.0.5 --user a", Usage, "--wait");
        row("sd status 10.0.0.5", Usage, "--user is required");
        row("sd status --password-file /nonexist 10.0.0.5 --user a", Failure, "the password file");
        const QString file = QCoreApplication::applicationFilePath(); // any readable file
        const QString upgrade = "upgrade --user a --file " + file;
        row(upgrade + " 10.0.0.1", Usage, "give one of --firmware and");
        row(upgrade + " --firmware --webui 10.0.0.1", Usage, "give one of --firmware and");
        row(upgrade + " --firmware", Usage, "no targets");
        row(upgrade + " --firmware --all-family Haisi 10.0.0.1", Usage, "exclude each other");
        row(upgrade + " --webui --all-family Sony", Usage, "wants Haisi or Winbond, not \"Sony\"");
        row(upgrade + " --firmware --parallel 0 --all-family haisi", Usage, "number from 1 to 64");
        row("upgrade --user a --firmware 10.0.0.1", Usage, "--file is required");
        row("upgrade --user a --firmware --file /nonexist 10.0.0.1", Failure,
            "read the file /nonexist");
        row("upgrade --firmware 10.0.0.1 --file " + file, Usage, "--user is required");
        const QString donePath = stateFile(
            "done.json", stateJson({"firmware", file, {}, {target(1, TargetState::Sent)}}));
        row(upgrade + " --firmware --only-failed " + donePath, Success, "1 sent"); // no search
        row(upgrade + " --webui --only-failed " + donePath, Failure,
            "firmware upgrade, not of a webui");
        const QMap<QByteArray, QString> damaged{
            {"\177ELF", "not JSON"},
            {"[1, 2]", "no list of targets"},
            {"{\"targets\": 3}", "no list of targets"},
            {"{\"targets\": [{\"mac\": \"02:56\", \"state\": \"done\"}]}",
             "target 1 has no name or an unknown state"},
            {"{\"targets\": [{\"state\": \"queued\"}]}", "target 1 has no name"}};
        for (auto it = damaged.cbegin(); it != damaged.cend(); ++it) {
            const QString path = stateFile(QString::number(qHash(it.key())), it.key());
            row(upgrade + " --webui --only-failed " + path, Failure,
                path + " is damaged: " + it.value());
        }
        row(upgrade + " --webui --only-failed /nonexist", Failure, "cannot read the state file");
        const QString mac = "set 02:56:4C:00:00:01 --user a";
        row("set --dhcp --user a", Usage, "give exactly one MAC address");
        row("set 10.0.0.1 --dhcp --user a", Usage, "\"10.0.0.1\" is not a MAC address");
        row(mac + " --dhcp --ip 10.0.0.9", Usage, "--dhcp and fixed addresses exclude each other");
        row(mac, Usage, "nothing to change");
        row(mac + " --dhcp --timeout soon", Usage, "--timeout wants a number");
        row("set 02:56:4C:00:00:01 --dhcp", Usage, "--user is required");
    }
    void exitStatus()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, code);
        QFETCH(QString, text);
        QString out, err;
        QTextStream outStream(&out), errStream(&err);
        QCOMPARE(run(QStringList{"veltor-cli"} + arguments, Io{outStream, errStream}), code);
        outStream.flush();
        errStream.flush();
        QVERIFY2((code == Success ? out : err).contains(text), qPrintable(out + err));
        QVERIFY2(code == Success || out.isEmpty(), qPrintable(out));
        QVERIFY(!err.contains("secret"));
    }
    // What a rerun takes on, by each target's earlier state and what the search shows now.
    void resumePlan_data()
    {
        QTest::addColumn<TargetState>("earlier");
        QTest::addColumn<bool>("answers");
        QTest::addColumn<TargetState>("planned");
        QTest::addColumn<bool>("uploads");
        using S = TargetState;
        QTest::newRow("sent, new version shown") << S::Sent << true << S::Verified << false;
        QTest::newRow("restarting, shown") << S::WaitingForReboot << true << S::Verified << false;
        QTest::newRow("upload cut short: again") << S::Uploading << true << S::Queued << true;
        QTest::newRow("failed: again") << S::Failed << true << S::Queued << true;
        QTest::newRow("silent now") << S::Sent << false << S::Failed << false;
    }
    void resumePlan()
    {
        QFETCH(TargetState, earlier);
        QFETCH(bool, answers);
        const QVector<UpgradeTarget> before{target(1, earlier), target(2, TargetState::Verified)};
        QVector<SeenCamera> seen(1);
        seen[0].record.mac = answers ? before[0].mac : "02:56:4C:00:00:09";
        seen[0].record.webui = "1.1.0.0";
        seen[0].record.firmware = "9.9.9.9";
        QHash<int, SeenCamera> cameras;
        const QVector<UpgradeTarget> plan = planTargets(namesToRedo(before, true), before, seen,
                                                        {"webui", {}, "1.1.0.0", {}}, &cameras);
        QCOMPARE(plan.size(), 2); // the other, done target is kept
        QCOMPARE(plan[1].mac, before[1].mac);
        QCOMPARE(plan[0].target, before[0].mac);
        QTEST(plan[0].state, "planned");
        QTEST(cameras.contains(0), "uploads");
    }
    // Defused in the table (no cursor moves, retitled windows or reversed text) with the
    // columns still under their headers; quoted in CSV where a comma, quote or line break is.
    void hostileTexts()
    {
        const QString name = QString::fromUtf8("Kamera \"Süd\",\n\\ \x1b]0;owned\x07\u202Ename");
        const QStringList lines =
            written(OutputFormat::Table, {name, "ok"}).split('\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 3);
        QVERIFY(lines[1].startsWith(
            QString::fromUtf8("Kamera \"Süd\",\uFFFD\\ \uFFFD]0;owned\uFFFD\uFFFDname")));
        QCOMPARE(lines[1].indexOf("10.79.1.5"), lines[0].indexOf("IP Address"));
        QCOMPARE(lines[2].indexOf("10.79.1.5"), lines[0].indexOf("IP Address"));
        QVERIFY(lines[2].endsWith("10.80.0.1 10.79.0.1  10.79.1.5  ip-conflict other-subnet"));
        const QString csv = written(OutputFormat::Csv, {name, "ok"});
        QVERIFY2(csv.contains(QString::fromUtf8(
                     "\r\n\"Kamera \"\"Süd\"\",\n\\ \x1b]0;owned\x07\u202Ename\",")) &&
                     csv.contains("\r\nok,10.79.1.5,,,off,"),
                 qPrintable(csv));
    }

private:
    QString stateFile(const QString &name, const QByteArray &content)
    {
        return writeFile(dir.filePath(name), content) ? dir.filePath(name) : QString();
    }
    QTemporaryDir dir;
};

QTEST_GUILESS_MAIN(tst_cliargs)
#include "tst_cliargs.moc"
