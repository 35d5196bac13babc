#include "app/mainwindow.h"
#include "app/startup.h"
#include "sdcard/sdmanager.h"
#include "sdcard/sdrequest.h"

#include "boxes.h"
#include "fakecard.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QtTest>

Q_DECLARE_METATYPE(FakeCamera::Answer)

namespace {

FakeCamera::Answer statusAnswer(const char *status, const char *total, const char *free)
{
    FakeCamera::Answer answer;
    answer.body = QByteArray("var sdstatus=\"") + status + "\";var sdtotalspace=\"" + total +
                  "\";var sdfreespace=\"" + free + "\";";
    return answer;
}

sdmanager *openBrowser()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *browser = qobject_cast<sdmanager *>(widget))
            return browser;
    }
    return nullptr;
}

struct Tab
{
    FakeCard card;
    FakeCamera::Answer status;
    FakeCamera server{[this](const QString &request) {
        return request.startsWith("/param.cgi?cmd=getserverinfo") ? status : card.answer(request);
    }};
    MainWindow window;

    QString label(const char *name) { return window.findChild<QLabel *>(name)->text(); }
    int statusRequests() const
    {
        return server.requests.filter("/param.cgi?cmd=getserverinfo").size();
    }
    bool start()
    {
        if (!server.start())
            return false;
        auto *table = window.findChild<QTableWidget *>("tableWidgetSearch_4");
        table->setRowCount(1);
        table->setItem(0, 0, new QTableWidgetItem("Camera"));
        table->setItem(0, 1, new QTableWidgetItem("127.0.0.1"));
        table->setItem(0, 2, new QTableWidgetItem(server.port()));
        window.findChild<QLabel *>("ipFixSd")->setText("127.0.0.1");
        return true;
    }
    // What the credential dialog hands back for this camera.
    void unlock(const QString &user, const QString &password)
    {
        const int before = statusRequests();
        QMetaObject::invokeMethod(
            &window, "receiveCamSdCard",
            Q_ARG(QStringList, (QStringList{user, password, server.port(), "Haisi"})));
        QTRY_COMPARE(statusRequests(), before + 1);
    }
};

} // namespace

class TestSdCardTab : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { veltor::initResources(); }
    void statusReply_data();
    void statusReply();
    void newestCredentials();
};

void TestSdCardTab::statusReply_data()
{
    QTest::addColumn<FakeCamera::Answer>("answer");
    QTest::addColumn<QStringList>("labels"); // total, used, free; empty: as they were
    QTest::addColumn<QString>("message");    // empty: Show Files opens the browser

    QTest::newRow("ready") << statusAnswer("Ready", "2000000", "300")
                           << QStringList{"1953.12MB", "1952.83MB", "0.292969MB"} << "";
    QTest::newRow("small card") << statusAnswer("Ready", "1024", "24")
                                << QStringList{"1024KB", "1000KB", "24KB"} << "";
    QTest::newRow("no card") << statusAnswer("Unmounted", "0", "0")
                             << QStringList{"0KB", "0KB", "0KB"} << "No SD card detected";
    FakeCamera::Answer refused;
    refused.status = 401;
    QTest::newRow("refused") << refused << QStringList{}
                             << "Could not retrieve SD card information";
    FakeCamera::Answer silent;
    silent.silent = true;
    QTest::newRow("silent camera")
        << silent << QStringList{} << "Could not retrieve SD card information";
}

void TestSdCardTab::statusReply()
{
    QFETCH(FakeCamera::Answer, answer);
    QFETCH(QStringList, labels);
    QFETCH(QString, message);
    Tab tab;
    tab.status = answer;
    QVERIFY(tab.start());
    if (labels.isEmpty()) {
        for (const char *name : {"totalMenorySize", "UsedMemorySize", "leftMemorySize"})
            labels << tab.label(name);
    }
    tab.unlock("admin", "pw");
    QVERIFY(tab.window.findChild<QPushButton *>("viewFilesBtn")->isEnabled());
    // Long enough for the request to time out when the camera stays silent.
    QTest::qWait(answer.silent ? veltor::kSdStatusTimeoutMs + 1000 : 300);
    QCOMPARE(tab.label("totalMenorySize"), labels.at(0));
    QCOMPARE(tab.label("UsedMemorySize"), labels.at(1));
    QCOMPARE(tab.label("leftMemorySize"), labels.at(2));

    // The browser is application-modal itself: only a message box is answered.
    std::shared_ptr<BoxSequence> boxes = message.isEmpty() ? nullptr : answerBoxes({""});
    QMetaObject::invokeMethod(&tab.window, "on_viewFilesBtn_clicked");
    if (message.isEmpty()) {
        sdmanager *browser = openBrowser();
        QVERIFY(browser);
        std::unique_ptr<sdmanager> owner(browser);
        QCOMPARE(browser->windowTitle(), QString("SD Card Information"));
        QCOMPARE(browser->windowModality(), Qt::ApplicationModal);
        auto *table = browser->findChild<QTableWidget *>("tableShowSdInfo");
        QTRY_COMPARE(table->rowCount(), 2);
        QVERIFY(tab.server.requests.contains("/sd/?&usr=admin&pwd=pw"));
    } else {
        QTRY_COMPARE(boxes->answered, 1);
        QCOMPARE(boxes->seen.at(0).title, QString("Message"));
        QCOMPARE(boxes->seen.at(0).text, message);
        QVERIFY(!openBrowser());
    }
}

void TestSdCardTab::newestCredentials()
{
    Tab tab;
    tab.status = statusAnswer("Ready", "2048", "512");
    QVERIFY(tab.start());
    tab.unlock("admin", "old");
    tab.unlock("admin2", "new&pw");
    QTRY_COMPARE(tab.label("leftMemorySize"), QString("0.5MB"));

    // A click on the unlocked camera asks again with the newest credentials.
    QMetaObject::invokeMethod(&tab.window, "mycellClickedSdmanager", Q_ARG(int, 0), Q_ARG(int, 0));
    QTRY_COMPARE(tab.statusRequests(), 3);
    QVERIFY(tab.server.requests.last().endsWith("usr=admin2&pwd=new&pw"));

    QMetaObject::invokeMethod(&tab.window, "on_viewFilesBtn_clicked");
    std::unique_ptr<sdmanager> browser(openBrowser());
    QVERIFY(browser);
    QTRY_VERIFY(tab.server.requests.contains("/sd/?&usr=admin2&pwd=new&pw"));
    // Show Files re-selects the camera, which asks for its status once more.
    QTRY_COMPARE(tab.statusRequests(), 4);
}

QTEST_MAIN(TestSdCardTab)
#include "tst_sdcardtab.moc"
