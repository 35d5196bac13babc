#include "sdcard/sdlisting.h"

#include <QtTest>

using veltor::SdLevel;

namespace {

// One listing line with `fields` placed at offsets counted, as the camera
// tool counts them, from the line break before the line.
QByteArray line(std::initializer_list<std::pair<int, const char *>> fields)
{
    QByteArray text;
    for (const auto &field : fields) {
        const int column = field.first - 1;
        if (text.size() < column)
            text.append(QByteArray(column - text.size(), ' '));
        text.replace(column, int(qstrlen(field.second)), field.second);
    }
    return text + '\n';
}

QByteArray listing(const QList<QByteArray> &lines)
{
    QByteArray body = "<html><pre>header line\n";
    for (const QByteArray &l : lines)
        body += l;
    return body + "</pre></html>";
}

} // namespace

Q_DECLARE_METATYPE(SdLevel)

class TestSdListing : public QObject
{
    Q_OBJECT

private slots:
    void entries_data();
    void entries();
    void sizes_data();
    void sizes();
    void downloadNames();
    void localName_data();
    void localName();
};

void TestSdListing::entries_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("level");
    QTest::addColumn<QString>("subFolder");
    QTest::addColumn<QStringList>("expected"); // name|time|size per entry

    const QByteArray root = line({{33, "20261123/"}, {61, "23-Nov-2026 10:00"}});
    QTest::newRow("root folder") << listing({root,
                                             line({{33, "index.htm"}, {61, "23-Nov-2026 10:00"}})})
                                 << 0 << "" << QStringList{"20261123/|23-Nov-2026 10:00|"};
    QTest::newRow("root without folders") << listing({}) << 0 << "" << QStringList{};
    QTest::newRow("last line never read")
        << QByteArray("head\n") + root.chopped(1) << 0 << "" << QStringList{};
    QTest::newRow("line after last break ignored")
        << QByteArray("head\n") + root + root.chopped(1) << 0 << ""
        << QStringList{"20261123/|23-Nov-2026 10:00|"};
    QTest::newRow("folder") << listing({line({{31, "images001/"}, {72, "23-Nov-2026 10:01"}}),
                                        line({{31, "record001/"}, {72, "23-Nov-2026 10:02"}}),
                                        line({{31, "notafolder"}, {72, "23-Nov-2026 10:02"}})})
                            << 1 << ""
                            << QStringList{"images001/|23-Nov-2026 10:01|",
                                           "record001/|23-Nov-2026 10:02|"};
    QTest::newRow("images")
        << listing(
               {line({{41, "P201123_100000_0001"}, {100, "23-Nov-2026 10:00"}, {138, "340k    "}})})
        << 2 << "images001/" << QStringList{"P201123_100000_0001|23-Nov-2026 10:00|340k"};
    QTest::newRow("records") << listing({line({{41, "R20261123_100000_0001.264"},
                                               {112, "23-Nov-2026 10:00"},
                                               {150, "1.5M    "}}),
                                         line({{41, "R20261123_100000_0002.264"},
                                               {112, "23-Nov-2026 10:05"},
                                               {150, "0       "}})})
                             << 2 << "record001/"
                             << QStringList{"R20261123_100000_0001.264|23-Nov-2026 10:00|1.5M",
                                            "R20261123_100000_0002.264|23-Nov-2026 10:05|0"};
    QTest::newRow("short and empty lines")
        << listing(
               {line({{41, "P20"}}), "\n", line({{41, "P201123_100000_0001"}, {100, "23-Nov"}})})
        << 2 << "images001/" << QStringList{"P20||k", "||k", "P201123_100000_0001|23-Nov|k"};
    QTest::newRow("short root line")
        << listing({line({{33, "2026/"}})}) << 0 << "" << QStringList{};
    QTest::newRow("short folder line kept")
        << listing({line({{31, "a/"}})}) << 1 << "" << QStringList{"a/||"};
    QTest::newRow("unknown sub-folder kind") << listing({root}) << 2 << "misc001/" << QStringList{};
    QTest::newRow("no line break") << QByteArray(200, 'x') << 2 << "record001/" << QStringList{};
    QTest::newRow("empty") << QByteArray() << 0 << "" << QStringList{};
}

void TestSdListing::entries()
{
    QFETCH(QByteArray, body);
    QFETCH(int, level);
    QFETCH(QString, subFolder);
    QFETCH(QStringList, expected);
    QStringList got;
    for (const veltor::SdEntry &e : veltor::parseSdListing(body, SdLevel(level), subFolder))
        got << e.name + '|' + e.time + '|' + e.size;
    QCOMPARE(got, expected);
}

void TestSdListing::sizes_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<bool>("record");
    QTest::addColumn<QString>("expected");
    QTest::newRow("record in M") << "1.5M    " << true << "1.5M";
    QTest::newRow("record in k") << "340k    " << true << "340k";
    QTest::newRow("zero") << "0       " << true << "0";
    QTest::newRow("zero image") << "0.5k    " << false << "0";
    QTest::newRow("image") << "57k     " << false << "57k";
    QTest::newRow("image in M keeps the field") << "1.2M    " << false << "1.2M    k";
    QTest::newRow("record in G") << "1.1G    " << true << "1.1G    M";
    QTest::newRow("empty") << "" << true << "M";
}

void TestSdListing::sizes()
{
    QFETCH(QString, field);
    QFETCH(bool, record);
    QFETCH(QString, expected);
    QCOMPARE(veltor::sdSizeText(field, record), expected);
}

void TestSdListing::downloadNames()
{
    const QByteArray folder =
        listing({line({{31, "images001/"}}), line({{31, "a/"}}), line({{31, "record001/"}})});
    QCOMPARE(veltor::sdSubFolderNames(folder), (QStringList{"images001/", "record001/"}));
    const QByteArray files = listing({line({{41, "R20261123_100000_0001.264"}}), "\n"});
    QCOMPARE(veltor::sdFileNames(files, "record001/"), QStringList{"R20261123_100000_0001.264"});
    QCOMPARE(veltor::sdFileNames(files, "images001/"), QStringList{"R20261123_100000_00"});
    QCOMPARE(veltor::sdFileNames(files, "other/"), QStringList{});
}

void TestSdListing::localName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");
    QTest::newRow("folder") << "20261123/"
                            << "20261123";
    QTest::newRow("file") << "P201123_100000_0001"
                          << "P201123_100000_0001";
    QTest::newRow("inner slash") << "abc/../x/"
                                 << "abc";
    QTest::newRow("dot dot") << "../"
                             << "";
    QTest::newRow("dot") << "./"
                         << "";
    QTest::newRow("leading slash") << "/etc/pwd/"
                                   << "";
}

void TestSdListing::localName()
{
    QFETCH(QString, name);
    QFETCH(QString, expected);
    QCOMPARE(veltor::sdLocalName(name), expected);
}

QTEST_APPLESS_MAIN(TestSdListing)
#include "tst_sdlisting.moc"
