// "veltor-cli sd" as a script runs it, against simulated cameras in a private
// network namespace (tests/netns/with-cameras.sh): status, ls at the three
// levels, get of files and folders compared by SHA-256 with what the camera
// serves, format, and the failures. No run may show the password.
#include "camsimfleet.h"
#include "filehashes.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {

struct Run
{
    int code = -1;
    QString out;
    QString err;
};

} // namespace

class TestSdCliEndToEnd : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { control("reset=1"); }
    void cleanup();
    void status_data();
    void status();
    void list_data();
    void list();
    void get_data();
    void get();
    void getKeepsWhatIsThere();
    void fails_data();
    void fails();
    void format();

private:
    Run cli(const QStringList &arguments, const QString &password);
    Run sd(const QStringList &arguments) { return cli(arguments, haisi.password); }
    QJsonArray control(const QString &query) { return camsimfleet::sdCardControl(haisi, query); }
    QMap<QString, QByteArray> simHashes(const QString &prefix)
    {
        return camsimfleet::sdCardHashes(haisi, prefix);
    }

    QVector<camsimfleet::Camera> cameras;
    camsimfleet::Camera haisi;  // with a card
    camsimfleet::Camera noCard; // Haisi without one
    camsimfleet::Camera winbond;
    QStringList shown; // everything the runs of one test printed
};

void TestSdCliEndToEnd::initTestCase()
{
    CAMSIM_FLEET_OR_SKIP(cameras);
    for (const camsimfleet::Camera &camera : cameras) {
        if (camera.family == "Winbond")
            winbond = camera;
        else
            (camera.index == 2 ? noCard : haisi) = camera; // --camera 2:sd=none
    }
    QVERIFY(!winbond.ip.isEmpty() && !noCard.ip.isEmpty());
    QVERIFY(haisi.password.size() >= 6); // long enough to be told apart in the output
}

void TestSdCliEndToEnd::cleanup()
{
    const QStringList texts = std::exchange(shown, {});
    for (const QString &text : texts) {
        QVERIFY2(!text.contains(haisi.password), qPrintable(text));
        QVERIFY2(!text.contains(QUrl::toPercentEncoding(haisi.password)), qPrintable(text));
    }
}

Run TestSdCliEndToEnd::cli(const QStringList &arguments, const QString &password)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("VELTOR_PASSWORD", password);
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(VELTOR_CLI, QStringList{"sd"} + arguments + QStringList{"--wait", "300"});
    Run run;
    if (!process.waitForFinished(120000))
        return run;
    run.code = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    shown << run.out << run.err;
    return run;
}

void TestSdCliEndToEnd::status_data()
{
    QTest::addColumn<bool>("byMac");
    QTest::addColumn<bool>("json");
    QTest::newRow("by MAC, text") << true << false;
    QTest::newRow("by address, json") << false << true;
}

void TestSdCliEndToEnd::status()
{
    QFETCH(bool, byMac);
    QFETCH(bool, json);
    QStringList arguments{"status", "--user", haisi.user, byMac ? haisi.mac : haisi.ip};
    if (json)
        arguments << "--format"
                  << "json";
    const Run run = sd(arguments);
    QCOMPARE(run.code, 0);
    if (json) {
        const QJsonObject status = QJsonDocument::fromJson(run.out.toUtf8()).object();
        QCOMPARE(status["status"].toString(), QString("Ready"));
        QCOMPARE(status["totalKB"].toDouble(), 15558144.0);
        QCOMPARE(status["usedKB"].toDouble() + status["freeKB"].toDouble(), 15558144.0);
    } else {
        QVERIFY2(run.out.contains("Status: Ready\nTotal:  15193.5MB (15558144 KB)\n"),
                 qPrintable(run.out));
    }
}

void TestSdCliEndToEnd::list_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("json");
    QTest::newRow("card") << "/" << false;
    QTest::newRow("day folder") << "20261123" << true;
    QTest::newRow("pictures") << "20261123/images001" << false;
    QTest::newRow("recordings") << "20261124/record001/" << true;
}

void TestSdCliEndToEnd::list()
{
    QFETCH(QString, path);
    QFETCH(bool, json);
    QStringList arguments{"ls", path, "--user", haisi.user, haisi.ip};
    if (json)
        arguments << "--format"
                  << "json";
    const Run run = sd(arguments);
    QCOMPARE(run.code, 0);
    QStringList names;
    if (json) {
        for (const QJsonValue &row : QJsonDocument::fromJson(run.out.toUtf8()).array())
            names << row["name"].toString();
    } else {
        for (const QString &line : run.out.split('\n', Qt::SkipEmptyParts))
            names << line.section(' ', 0, 0);
    }
    // What the camera holds one level below `path`.
    const QString prefix = path == "/" ? QString() : path.endsWith('/') ? path : path + '/';
    QStringList expected;
    for (const QJsonValue &file : control("")) {
        const QString rest = file["path"].toString().mid(prefix.size());
        const QString child = rest.left(rest.indexOf('/') + 1);
        const QString name = child.isEmpty() ? rest : child;
        if (file["path"].toString().startsWith(prefix) && !expected.contains(name))
            expected << name;
    }
    QCOMPARE(names, expected);
}

void TestSdCliEndToEnd::get_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("misbehave"); // query for the simulator
    QTest::addColumn<QString>("fromCamera");
    QTest::addColumn<QString>("local"); // where it lands below DEST
    QTest::addColumn<QString>("lost");  // reported, absent, exit status 1
    const QString picture = "20261123/images001/P26112310000101.jpg";
    QTest::newRow("file") << picture << "" << picture << "P26112310000101.jpg"
                          << "";
    QTest::newRow("sub-folder") << "20261124/record001"
                                << ""
                                << "20261124/record001/"
                                << "record001/"
                                << "";
    QTest::newRow("day folder") << "20261123/"
                                << ""
                                << "20261123/"
                                << "20261123/"
                                << "";
    QTest::newRow("card") << "/"
                          << ""
                          << ""
                          << ""
                          << "";
    const QString recording = "20261123/record001/R20261123_100001_0001.264";
    QTest::newRow("cut recording") << "20261123"
                                   << "cut=" + recording << "20261123/"
                                   << "20261123/" << recording;
    QTest::newRow("failing listing") << "20261124"
                                     << "fail=20261124/images001/"
                                     << "20261124/"
                                     << "20261124/"
                                     << "20261124/images001/";
}

void TestSdCliEndToEnd::get()
{
    QFETCH(QString, path);
    QFETCH(QString, misbehave);
    QFETCH(QString, fromCamera);
    QFETCH(QString, local);
    QFETCH(QString, lost);
    control("reset=1&" + misbehave);
    QTemporaryDir sandbox;
    const QString dest = sandbox.filePath("dest");
    const Run run = sd({"get", path, dest, "--user", haisi.user, haisi.mac});
    QCOMPARE(run.code, lost.isEmpty() ? 0 : 1);
    QMap<QString, QByteArray> expected;
    const QMap<QString, QByteArray> onCamera = simHashes(fromCamera);
    for (auto it = onCamera.begin(); it != onCamera.end(); ++it) {
        const QString name =
            fromCamera.endsWith('/') || fromCamera.isEmpty() ? local + it.key() : local;
        if (lost.isEmpty() || !QString(fromCamera + it.key()).startsWith(lost))
            expected.insert(name, it.value());
    }
    QVERIFY(!expected.isEmpty());
    QCOMPARE(testsupport::fileHashes(dest), expected);
    QCOMPARE(run.out.count('\n'), expected.size()); // one line a file
    if (!lost.isEmpty())
        QVERIFY2(run.err.contains("not fetched: " + lost), qPrintable(run.err));
    QCOMPARE(QDir(sandbox.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{"dest"});
}

void TestSdCliEndToEnd::getKeepsWhatIsThere()
{
    QTemporaryDir dest;
    QFile mine(dest.filePath("P26112310000000.jpg"));
    QVERIFY(mine.open(QIODevice::WriteOnly));
    mine.write("mine");
    mine.close();
    const QStringList arguments{"get",    "20261123/images001", dest.path(),
                                "--user", haisi.user,           haisi.ip};
    const Run first = sd(arguments);
    QCOMPARE(first.code, 0);
    QVERIFY(mine.open(QIODevice::ReadOnly));
    QCOMPARE(mine.readAll(), QByteArray("mine")); // not in the sub-folder: untouched
    mine.close();

    const Run again = sd(arguments);
    QCOMPARE(again.code, 0);
    QVERIFY2(again.err.contains("0 saved, 3 kept, 0 failed"), qPrintable(again.err));
    QVERIFY(again.out.isEmpty());

    control("cut=20261123/images001/P26112310000101.jpg");
    const Run replacing = sd(arguments + QStringList{"--overwrite"});
    QCOMPARE(replacing.code, 1);
    QCOMPARE(testsupport::fileHashes(dest.filePath("images001")), simHashes("20261123/images001/"));
}

void TestSdCliEndToEnd::fails_data()
{
    QTest::addColumn<QString>("target"); // "winbond", "nocard", or an address
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("message");
    QTest::newRow("wrong password") << ""
                                    << "not-the-password"
                                    << "Your username or password is not correct!";
    QTest::newRow("Winbond camera") << "winbond"
                                    << ""
                                    << "VGA-Cameras do not support SD cards";
    QTest::newRow("no card") << "nocard"
                             << ""
                             << "No SD card detected";
    QTest::newRow("nobody there") << "00:00:00:00:00:01"
                                  << ""
                                  << "no camera answered";
}

void TestSdCliEndToEnd::fails()
{
    QFETCH(QString, target);
    QFETCH(QString, password);
    QFETCH(QString, message);
    const QString address = target == "winbond"  ? winbond.ip
                            : target == "nocard" ? noCard.ip
                            : target.isEmpty()   ? haisi.ip
                                                 : target;
    for (const QString action : {"status", "ls", "get", "format"}) {
        QStringList arguments{action, "--yes", "--user", haisi.user, address};
        if (action == QLatin1String("get"))
            arguments.insert(1, "20261123");
        if (action == QLatin1String("get"))
            arguments.insert(2, QDir::temp().filePath("never-made"));
        const Run run = cli(arguments, password.isEmpty() ? haisi.password : password);
        QCOMPARE(run.code, 1);
        QVERIFY2(run.err.contains(message), qPrintable(action + ": " + run.err));
        QVERIFY(!run.err.contains(password.isEmpty() ? haisi.password : password));
    }
    QVERIFY(!QDir::temp().exists("never-made"));
    QCOMPARE(control("").size(), 2 * (3 + 2)); // nothing formatted
}

void TestSdCliEndToEnd::format()
{
    QTemporaryDir dir;
    QFile passwordFile(dir.filePath("pw"));
    QVERIFY(passwordFile.open(QIODevice::WriteOnly));
    passwordFile.write(haisi.password.toUtf8() + "\n");
    passwordFile.close();
    // From the file, though the environment names another.
    const Run run = cli({"format", "--yes", "--user", haisi.user, "--password-file",
                         passwordFile.fileName(), haisi.mac},
                        "not-the-password");
    QCOMPARE(run.code, 0);
    QCOMPARE(run.out, QString("Success!\n"));
    QVERIFY(control("").isEmpty());
    const Run empty = sd({"ls", "--user", haisi.user, haisi.ip});
    QCOMPARE(empty.code, 0);
    QCOMPARE(empty.out, QString());
}

QTEST_GUILESS_MAIN(TestSdCliEndToEnd)
#include "tst_sdcli_e2e.moc"
