#include "sdcard/sdstatus.h"

#include <QtTest>

// The camera's "getserverinfo" answer and the three size labels made of it.
class TestSdStatus : public QObject
{
    Q_OBJECT

private slots:
    void labels_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<bool>("ready");
        QTest::addColumn<QStringList>("labels"); // total, free, used
        const auto row = [](const char *name, const QByteArray &body, bool ready,
                            const QStringList &labels) {
            QTest::newRow(name) << body << ready << labels;
        };
        const auto body = [](const char *status, const char *total,
                             const char *free) -> QByteArray {
            return QByteArray("var sdstatus=\"") + status + "\";var sdtotalspace=\"" + total +
                   "\";var sdfreespace=\"" + free + "\";";
        };
        const QStringList none{"", "", ""};
        row("1024 stays KB", body("Ready", "1024", "24"), true, {"1024KB", "24KB", "1000KB"});
        row("1025 is MB", body("Ready", "1025", "0"), true, {"1.00098MB", "0MB", "1.00098MB"});
        // A value is what follows the first quote, up to the next one if any.
        row("quotes", "var sdtotalspace=\"2048;var sdfreespace=x\"512\"y\"0\"", false,
            {"2MB", "0.5MB", "1.5MB"});
        row("NotReady counts as ready", body("NotReady", "0", "0"), true, {"0KB", "0KB", "0KB"});
        row("small card keeps the text as sent", body("ready", "0512", "x"), false,
            {"0512KB", "xKB", "512KB"});
        row("missing total", "var sdstatus=\"Ready\";var sdfreespace=\"4\";", true, none);
        row("no quotes", "var sdstatus=Ready;var sdtotalspace=4096;", false, none);
        row("later key wins",
            "var sdtotalspace=\"1\";var sdtotalspace=\"3000\";var sdfreespace=\"0\";", false,
            {"2.92969MB", "0MB", "2.92969MB"});
        row("4 TB card", body("Ready", "4294967296", "0"), true,
            {"4.1943e+06MB", "0MB", "4.1943e+06MB"});
    }
    void labels()
    {
        QFETCH(QByteArray, body);
        const veltor::SdStatus status = veltor::parseSdStatus(body);
        QTEST(status.ready(), "ready");
        const veltor::SdSizeLabels labels = veltor::sdSizeLabels(status);
        QTEST((QStringList{labels.total, labels.free, labels.used}), "labels");
    }
};

QTEST_APPLESS_MAIN(TestSdStatus)
#include "tst_sdstatus.moc"
