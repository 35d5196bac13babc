#include "sdcard/sdlisting.h"

#include <QtTest>

namespace {

// One listing line with `fields` placed at offsets counted, as the camera
// tool counts them, from the line break before the line.
QByteArray line(std::initializer_list<std::pair<int, const char *>> fields)
{
    QByteArray text;
    for (const auto &field : fields) {
        text = text.leftJustified(field.first - 1, ' ');
        text.replace(field.first - 1, int(qstrlen(field.second)), field.second);
    }
    return text + '\n';
}

QByteArray listing(const QList<QByteArray> &lines)
{
    return "<html><pre>header line\n" + lines.join() + "</pre></html>";
}

} // namespace

// The camera's fixed-column "/sd/" listings.
class TestSdListing : public QObject
{
    Q_OBJECT

private slots:
    void entries_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<int>("level");
        QTest::addColumn<QString>("subFolder");
        QTest::addColumn<QStringList>("expected"); // name|time|size per entry
        const auto row = [](const char *name, const QByteArray &body, int level,
                            const QString &subFolder, const QStringList &expected) {
            QTest::newRow(name) << body << level << subFolder << expected;
        };
        const QByteArray root = line({{33, "20261123/"}, {61, "23-Nov-2026 10:00"}});
        const QStringList rootEntry{"20261123/|23-Nov-2026 10:00|"};
        row("root folder", listing({root, line({{33, "index.htm"}, {61, "23-Nov-2026 10:00"}})}), 0,
            "", rootEntry);
        row("line after last break ignored", "head\n" + root + root.chopped(1), 0, "", rootEntry);
        row("folder",
            listing({line({{31, "images001/"}, {72, "23-Nov-2026 10:01"}}),
                     line({{31, "record001/"}, {72, "23-Nov-2026 10:02"}}),
                     line({{31, "notafolder"}, {72, "23-Nov-2026 10:02"}})}),
            1, "", {"images001/|23-Nov-2026 10:01|", "record001/|23-Nov-2026 10:02|"});
        row("records",
            listing({line({{41, "R20261123_100000_0001.264"},
                           {112, "23-Nov-2026 10:00"},
                           {150, "0       "}})}),
            2, "record001/", {"R20261123_100000_0001.264|23-Nov-2026 10:00|0"});
        row("short and empty lines",
            listing(
                {line({{41, "P20"}}), "\n", line({{41, "P201123_100000_0001"}, {100, "23-Nov"}})}),
            2, "images001/", {"P20||k", "||k", "P201123_100000_0001|23-Nov|k"});
        row("short folder line kept", listing({line({{31, "a/"}})}), 1, "", {"a/||"});
        row("unknown sub-folder kind", listing({root}), 2, "misc001/", {});
    }
    void entries()
    {
        QFETCH(QByteArray, body);
        QFETCH(int, level);
        QFETCH(QString, subFolder);
        QStringList got;
        for (const veltor::SdEntry &e :
             veltor::parseSdListing(body, veltor::SdLevel(level), subFolder))
            got << e.name + '|' + e.time + '|' + e.size;
        QTEST(got, "expected");
    }
    void sizes_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<bool>("record");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *field, bool record, const char *expected) {
            QTest::addRow("%s%s", field, record ? " (record)" : "") << field << record << expected;
        };
        row("1.5M    ", true, "1.5M");
        row("340k    ", true, "340k");
        row("0.5k    ", false, "0");
        row("1.2M    ", false, "1.2M    k"); // an image in M keeps the field
        row("1.1G    ", true, "1.1G    M");
        row("", true, "M");
    }
    void sizes()
    {
        QFETCH(QString, field);
        QFETCH(bool, record);
        QTEST(veltor::sdSizeText(field, record), "expected");
    }
};

QTEST_APPLESS_MAIN(TestSdListing)
#include "tst_sdlisting.moc"
