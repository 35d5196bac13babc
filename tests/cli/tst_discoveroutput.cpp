#include "cli/commands.h"
#include "discovery/discoveroutput.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>
#include <QTextStream>

using namespace veltor;
using namespace veltor::cli;

namespace {

SeenCamera camera(const QString &name)
{
    SeenCamera camera;
    camera.record.name = name;
    camera.record.ip = "10.79.1.5";
    camera.record.port = "80";
    camera.record.mac = "02:56:4C:00:00:05";
    camera.record.dhcp = "off";
    camera.family = "Haisi";
    camera.source = QHostAddress("10.79.1.5");
    camera.receivedOn = {QHostAddress("10.80.0.1"), QHostAddress("10.79.0.1")};
    camera.interfaceAddress = camera.receivedOn.first();
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

class TestDiscoverOutput : public QObject
{
    Q_OBJECT

private slots:
    void csvField_data();
    void csvField();
    void jsonKeepsHostileTextsAndLists();
    void tableHidesControlCharacters();
    void badArguments_data();
    void badArguments();
};

void TestDiscoverOutput::csvField_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("field");
    QTest::newRow("plain") << "VELTOR-W001"
                           << "VELTOR-W001";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("blanks kept") << " a b "
                                 << " a b ";
    QTest::newRow("comma") << "Hall, east"
                           << "\"Hall, east\"";
    QTest::newRow("quote") << "say \"hi\""
                           << "\"say \"\"hi\"\"\"";
    QTest::newRow("line feed") << "two\nlines"
                               << "\"two\nlines\"";
    QTest::newRow("carriage return") << "a\rb"
                                     << "\"a\rb\"";
}

void TestDiscoverOutput::csvField()
{
    QFETCH(QString, text);
    QFETCH(QString, field);
    QCOMPARE(veltor::csvField(text), field);
}

void TestDiscoverOutput::jsonKeepsHostileTextsAndLists()
{
    const QString name = QString::fromUtf8("Kamera \"Süd\", \\ \x1b[2J");
    const QJsonArray array =
        QJsonDocument::fromJson(written(OutputFormat::Json, {camera(name)}).toUtf8()).array();
    QCOMPARE(array.size(), 1);
    const QJsonObject object = array[0].toObject();
    QCOMPARE(object["name"].toString(), name);
    QCOMPARE(object["dhcp"].toString(), QString("off"));
    QCOMPARE(object["family"].toString(), QString("Haisi"));
    QCOMPARE(object["source"].toString(), QString("10.79.1.5"));
    QCOMPARE(object["interfaces"].toArray(), QJsonArray({"10.80.0.1", "10.79.0.1"}));
    QCOMPARE(object["findings"].toArray(), QJsonArray({"ip-conflict", "other-subnet"}));
    QCOMPARE(written(OutputFormat::Json, {}).trimmed(), QString("[\n]"));
}

void TestDiscoverOutput::tableHidesControlCharacters()
{
    const QStringList lines =
        written(OutputFormat::Table, {camera("evil\x1b]0;owned\x07\u202Ename"), camera("ok")})
            .split('\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 3);
    QVERIFY(!lines[1].contains(QChar(0x1b)) && !lines[1].contains(QChar(0x202e)));
    QVERIFY(lines[1].startsWith(QString("evil\uFFFD]0;owned\uFFFD\uFFFDname")));
    // Columns line up under their headers.
    const int ipColumn = lines[0].indexOf("IP Address");
    QCOMPARE(lines[1].indexOf("10.79.1.5"), ipColumn);
    QCOMPARE(lines[2].indexOf("10.79.1.5"), ipColumn);
    QVERIFY(lines[2].endsWith("10.80.0.1 10.79.0.1  10.79.1.5  ip-conflict other-subnet"));
}

// Each stops before any search: a bad value is a usage error naming the option.
void TestDiscoverOutput::badArguments_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");
    QTest::newRow("rounds 0") << QStringList{"--rounds", "0"} << "--rounds wants a number";
    QTest::newRow("rounds text") << QStringList{"--rounds", "two"} << "--rounds wants a number";
    QTest::newRow("negative wait") << QStringList{"--wait", "-1"} << "--wait wants a number";
    QTest::newRow("format") << QStringList{"--format", "xml"}
                            << "--format wants table, csv or json";
    QTest::newRow("interface not an address")
        << QStringList{"--interface", "eth0"} << "--interface wants an IPv4 address";
    QTest::newRow("interface not on this host")
        << QStringList{"--interface", "192.0.2.77"} << "no interface of this host has";
    QTest::newRow("stray argument") << QStringList{"everything"} << "unexpected argument";
    QTest::newRow("missing value") << QStringList{"--format"} << "Missing value";
}

void TestDiscoverOutput::badArguments()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    QString outText;
    QString errText;
    QTextStream out(&outText);
    QTextStream err(&errText);
    QCOMPARE(runDiscover(QStringList{"discover"} + arguments, Io{out, err}), int(Usage));
    err.flush();
    QVERIFY2(errText.contains(message), qPrintable(errText));
    QVERIFY(errText.contains("veltor-cli discover --help"));
    QVERIFY(outText.isEmpty());
}

QTEST_GUILESS_MAIN(TestDiscoverOutput)
#include "tst_discoveroutput.moc"
