// The SD card tab and browser against simulated cameras in a private network
// namespace (tests/netns/with-cameras.sh): search, unlock, status, browse,
// preview, download, failures and format, end to end.
#include "app/mainwindow.h"
#include "app/startup.h"
#include "sdcard/sdmanager.h"
#include "sdcard/sdrequest.h"
#include "sdcard/sdstatus.h"

#include "boxes.h"
#include "camsimfleet.h"
#include "fakecard.h"
#include "filehashes.h"

#include <QApplication>
#include <QComboBox>
#include <QJsonArray>
#include <QLabel>
#include <QLineEdit>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QByteArray fetch(const QUrl &url)
{
    QNetworkAccessManager manager;
    QNetworkRequest request(url);
    request.setTransferTimeout(10000);
    QNetworkReply *reply = manager.get(request);
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    reply->deleteLater();
    return reply->readAll();
}

int rowOf(const QTableWidget *table, const QString &text, int column)
{
    for (int row = 0; row < table->rowCount(); ++row) {
        if (table->item(row, column) && table->item(row, column)->text() == text)
            return row;
    }
    return -1;
}

} // namespace

class TestSdCardEndToEnd : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase() { delete window; }
    void unlockShowsStatus();
    void browseAndPreview();
    void download_data();
    void download();
    void winbondHasNoCard();
    void formatEmptiesCard();

private:
    QJsonArray control(const QString &query) { return camsimfleet::sdCardControl(haisi, query); }
    QMap<QString, QByteArray> simHashes(const QString &prefix)
    {
        return camsimfleet::sdCardHashes(haisi, prefix);
    }
    std::unique_ptr<sdmanager> openBrowser(const QString &target);
    bool enter(sdmanager *browser, const QString &folder);

    QVector<camsimfleet::Camera> cameras;
    camsimfleet::Camera haisi;
    camsimfleet::Camera winbond;
    MainWindow *window = nullptr;
    QTableWidget *table = nullptr;
};

void TestSdCardEndToEnd::initTestCase()
{
    veltor::initResources();
    CAMSIM_FLEET_OR_SKIP(cameras);
    for (const camsimfleet::Camera &camera : cameras)
        (camera.family == "Haisi" ? haisi : winbond) = camera;
    QVERIFY(!haisi.ip.isEmpty() && !winbond.ip.isEmpty());
    window = new MainWindow;
    window->findChild<QComboBox *>("wifiComboBox")
        ->setCurrentText(qEnvironmentVariable("VELTOR_TOOL_IP"));
    table = window->findChild<QTableWidget *>("tableWidgetSearch_4");
    QMetaObject::invokeMethod(window, "on_searchButton_clicked");
    QTRY_COMPARE_WITH_TIMEOUT(table->rowCount(), cameras.size(), 15000);
}

void TestSdCardEndToEnd::unlockShowsStatus()
{
    control("reset=1");
    testsupport::answerNextModal([this](QWidget *dialog) {
        dialog->findChild<QLineEdit *>("user")->setText(haisi.user);
        dialog->findChild<QLineEdit *>("pass")->setText(haisi.password);
        // The camera is on another /24 than the tool: the dialog says so, then hands over.
        answerBoxes({""});
        QMetaObject::invokeMethod(dialog->findChild<QPushButton *>("userok"), "click",
                                  Qt::QueuedConnection);
    });
    QMetaObject::invokeMethod(window, "mycellClickedSdmanager",
                              Q_ARG(int, rowOf(table, haisi.ip, 1)), Q_ARG(int, 1));
    const veltor::SdCamera camera{haisi.ip, QString::number(haisi.httpPort), haisi.user,
                                  haisi.password};
    const veltor::SdSizeLabels expected =
        veltor::sdSizeLabels(veltor::parseSdStatus(fetch(camera.statusUrl())));
    auto *total = window->findChild<QLabel *>("totalMenorySize");
    QTRY_COMPARE_WITH_TIMEOUT(total->text(), QString("15193.5MB"), 10000);
    QCOMPARE(total->text(), expected.total);
    QCOMPARE(window->findChild<QLabel *>("UsedMemorySize")->text(), expected.used);
    QCOMPARE(window->findChild<QLabel *>("leftMemorySize")->text(), expected.free);
    QVERIFY(window->findChild<QPushButton *>("viewFilesBtn")->isEnabled());
}

std::unique_ptr<sdmanager> TestSdCardEndToEnd::openBrowser(const QString &target)
{
    std::unique_ptr<sdmanager> browser(new sdmanager);
    browser->setDirectoryChooser([target](QWidget *) { return target; });
    browser->setData({haisi.ip, QString::number(haisi.httpPort), haisi.password, haisi.user});
    return browser;
}

bool TestSdCardEndToEnd::enter(sdmanager *browser, const QString &folder)
{
    auto *list = browser->findChild<QTableWidget *>("tableShowSdInfo");
    if (!QTest::qWaitFor([&] { return rowOf(list, folder, 0) >= 0; }, 10000))
        return false;
    QMetaObject::invokeMethod(browser, "mycellsdDoubleClicked", Q_ARG(int, rowOf(list, folder, 0)),
                              Q_ARG(int, 0));
    return QTest::qWaitFor([&] { return list->rowCount() > 0 && rowOf(list, folder, 0) < 0; },
                           10000);
}

void TestSdCardEndToEnd::browseAndPreview()
{
    control("reset=1");
    QTRY_VERIFY_WITH_TIMEOUT(!window->findChild<QLabel *>("totalMenorySize")->text().isEmpty(),
                             10000);
    QMetaObject::invokeMethod(window, "on_viewFilesBtn_clicked");
    sdmanager *shown = nullptr;
    for (QWidget *widget : QApplication::topLevelWidgets())
        shown = shown ? shown : qobject_cast<sdmanager *>(widget);
    QVERIFY2(shown, "Show Files opened no browser");
    std::unique_ptr<sdmanager> browser(shown);
    QCOMPARE(browser->windowTitle(), QString("SD Card Information"));
    auto *list = browser->findChild<QTableWidget *>("tableShowSdInfo");
    QTRY_COMPARE_WITH_TIMEOUT(list->rowCount(), 2, 10000);
    QCOMPARE(list->item(0, 0)->text(), QString("20261123/"));
    QCOMPARE(list->item(0, 1)->text(), QString("23-Nov-2026 10:00"));
    QVERIFY(enter(browser.get(), "20261123/"));
    QCOMPARE(list->item(0, 0)->text(), QString("images001/"));
    QVERIFY(enter(browser.get(), "images001/"));
    QCOMPARE(list->rowCount(), 3);
    QCOMPARE(list->item(0, 0)->text(), QString("P26112310000000.jpg"));
    QVERIFY(list->item(0, 2)->text().endsWith("k"));
    QMetaObject::invokeMethod(browser.get(), "mycellfileClicked", Q_ARG(int, 0), Q_ARG(int, 0));
    auto *preview = browser->findChild<QLabel *>("imgShow");
    QVERIFY(!preview->isHidden());
    QVERIFY(!preview->pixmap(Qt::ReturnByValue).isNull());
    QMetaObject::invokeMethod(browser.get(), "on_back_clicked");
    QCOMPARE(list->item(1, 0)->text(), QString("record001/"));
    QMetaObject::invokeMethod(browser.get(), "on_back_clicked");
    QCOMPARE(list->item(1, 0)->text(), QString("20261124/"));
}

void TestSdCardEndToEnd::download_data()
{
    QTest::addColumn<QStringList>("browse"); // folders entered before ticking
    QTest::addColumn<QString>("tick");       // "*": select all
    QTest::addColumn<QString>("misbehave");  // query for the simulator
    QTest::addColumn<QString>("fromCamera"); // the camera folder downloaded
    QTest::addColumn<QString>("local");      // where it lands below the new directory
    QTest::addColumn<QString>("lost");       // camera path that must be reported and absent
    QTest::newRow("files at level three") << QStringList{"20261123/", "record001/"} << "*"
                                          << ""
                                          << "20261123/record001/"
                                          << ""
                                          << "";
    QTest::newRow("day folder") << QStringList{} << "20261124/"
                                << ""
                                << "20261124/"
                                << "20261124/"
                                << "";
    QTest::newRow("sub-folder") << QStringList{"20261123/"} << "images001/"
                                << ""
                                << "20261123/images001/"
                                << "images001/"
                                << "";
    QTest::newRow("cut recording") << QStringList{"20261123/", "record001/"} << "*"
                                   << "cut=20261123/record001/R20261123_100001_0001.264"
                                   << "20261123/record001/"
                                   << ""
                                   << "20261123/record001/R20261123_100001_0001.264";
    QTest::newRow("failing listing") << QStringList{} << "20261124/"
                                     << "fail=20261124/images001/"
                                     << "20261124/"
                                     << "20261124/"
                                     << "20261124/images001/";
}

void TestSdCardEndToEnd::download()
{
    QFETCH(QStringList, browse);
    QFETCH(QString, tick);
    QFETCH(QString, misbehave);
    QFETCH(QString, fromCamera);
    QFETCH(QString, local);
    QFETCH(QString, lost);
    control("reset=1&" + misbehave);
    QTemporaryDir target;
    std::unique_ptr<sdmanager> browser = openBrowser(target.path());
    auto *list = browser->findChild<QTableWidget *>("tableShowSdInfo");
    QTRY_COMPARE_WITH_TIMEOUT(list->rowCount(), 2, 10000);
    for (const QString &folder : browse)
        QVERIFY(enter(browser.get(), folder));
    if (tick == "*")
        QMetaObject::invokeMethod(browser.get(), "on_selectallBtn_clicked");
    else
        QMetaObject::invokeMethod(browser.get(), "mycellfileClicked",
                                  Q_ARG(int, rowOf(list, tick, 0)), Q_ARG(int, 0));

    const bool listingFails = lost.endsWith('/');
    auto boxes = answerBoxes(listingFails ? QStringList{"OK", "", ""} : QStringList{"OK", ""});
    QMetaObject::invokeMethod(browser.get(), "on_download_clicked");
    QTRY_COMPARE_WITH_TIMEOUT(boxes->answered, listingFails ? 3 : 2, 60000);
    const QString summary = boxes->seen.last().text;
    if (lost.isEmpty())
        QVERIFY2(summary.startsWith("Download "), qPrintable(summary));
    else
        QVERIFY2(summary.contains(lost), qPrintable(summary));

    QMap<QString, QByteArray> expected;
    const QMap<QString, QByteArray> onCamera = simHashes(fromCamera);
    for (auto it = onCamera.begin(); it != onCamera.end(); ++it) {
        if (lost.isEmpty() || !QString(fromCamera + it.key()).startsWith(lost))
            expected.insert(local + it.key(), it.value());
    }
    const QStringList stamps = QDir(target.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    QCOMPARE(stamps.size(), 1);
    QCOMPARE(testsupport::fileHashes(target.path() + '/' + stamps.first()), expected);
}

void TestSdCardEndToEnd::winbondHasNoCard()
{
    QMetaObject::invokeMethod(window, "mycellClickedSdmanager",
                              Q_ARG(int, rowOf(table, winbond.ip, 1)), Q_ARG(int, 1));
    auto boxes = answerBoxes({""});
    QMetaObject::invokeMethod(window, "on_viewFilesBtn_clicked");
    QTRY_COMPARE(boxes->answered, 1);
    QCOMPARE(boxes->seen.at(0).title, QString("Message"));
    QCOMPARE(boxes->seen.at(0).text, QString("VGA-Cameras do not support SD cards"));
}

void TestSdCardEndToEnd::formatEmptiesCard()
{
    control("reset=1");
    QTemporaryDir target;
    std::unique_ptr<sdmanager> browser = openBrowser(target.path());
    auto *list = browser->findChild<QTableWidget *>("tableShowSdInfo");
    QTRY_COMPARE_WITH_TIMEOUT(list->rowCount(), 2, 10000);
    auto boxes = answerBoxes({"OK", ""});
    QMetaObject::invokeMethod(browser.get(), "on_format_clicked");
    QTRY_COMPARE_WITH_TIMEOUT(boxes->answered, 2, 10000);
    QCOMPARE(boxes->seen.at(1).text, QString("Success!"));
    QCOMPARE(list->rowCount(), 0);
    QVERIFY(control("").isEmpty());
    std::unique_ptr<sdmanager> again = openBrowser(target.path());
    auto *emptied = again->findChild<QTableWidget *>("tableShowSdInfo");
    QTRY_COMPARE_WITH_TIMEOUT(emptied->horizontalHeaderItem(0)->text(), QString("File Name"),
                              10000);
    QCOMPARE(emptied->rowCount(), 0);
    control("reset=1");
}

QTEST_MAIN(TestSdCardEndToEnd)
#include "tst_sdcard_e2e.moc"
