// The SD card tab and browser against simulated cameras in a private network
// namespace (tests/netns/with-cameras.sh): search, unlock, status, browse,
// preview, download, failures and format, end to end.
#include "app/mainwindow.h"
#include "app/startup.h"
#include "sdcard/sdmanager.h"

#include "camsimfleet.h"
#include "filehashes.h"
#include "testsupport.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDateTime>
#include <QJsonArray>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QNetworkAccessManager>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QtTest>

namespace {

using testsupport::rowOf;

// What the boxes shown one after the other said ("title: text"), answered
// with the given buttons in turn (an empty text: the default button).
using Boxes = std::shared_ptr<QStringList>;

void answerFrom(Boxes seen, QStringList buttons)
{
    if (buttons.isEmpty())
        return;
    const QString button = buttons.takeFirst();
    testsupport::answerNextModal(
        [seen, button, buttons](QWidget *modal) {
            auto *box = qobject_cast<QMessageBox *>(modal);
            seen->append(box ? box->windowTitle() + ": " + box->text() : QString());
            // Wait for the following box before this one is gone from the screen.
            answerFrom(seen, buttons);
            box ? testsupport::press(box, button) : void(modal->close());
        },
        20000);
}

Boxes answerBoxes(const QStringList &buttons)
{
    auto seen = std::make_shared<QStringList>();
    answerFrom(seen, buttons);
    return seen;
}

// Calls the slot and gives back what the one box it brought up said.
QString boxOf(QObject *target, const char *slot)
{
    Boxes boxes = answerBoxes({""});
    QMetaObject::invokeMethod(target, slot);
    return QTest::qWaitFor([&] { return !boxes->isEmpty(); }, 20000) ? boxes->first() : QString();
}

QTableWidget *listOf(sdmanager *browser)
{
    return browser->findChild<QTableWidget *>("tableShowSdInfo");
}

sdmanager *shownBrowser()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *browser = qobject_cast<sdmanager *>(widget))
            return browser;
    }
    return nullptr;
}

} // namespace

class TestSdCardEndToEnd : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        veltor::initResources();
        CAMSIM_FLEET_OR_SKIP(cameras);
        for (const camsimfleet::Camera &camera : cameras)
            (camera.family == "Haisi" ? haisi : winbond) = camera;
        QVERIFY(!haisi.ip.isEmpty() && !winbond.ip.isEmpty());
        window = new MainWindow;
        child<QComboBox>("wifiComboBox")->setCurrentText(qEnvironmentVariable("VELTOR_TOOL_IP"));
        table = child<QTableWidget>("tableWidgetSearch_4");
        QMetaObject::invokeMethod(window, "on_searchButton_clicked");
        QTRY_COMPARE_WITH_TIMEOUT(table->rowCount(), cameras.size(), 15000);
    }
    void cleanupTestCase() { delete window; }
    void unlockShowsStatus()
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
        click(haisi);
        QTRY_COMPARE_WITH_TIMEOUT(child<QLabel>("totalMenorySize")->text(), QString("15193.5MB"),
                                  10000);
        QCOMPARE(child<QLabel>("UsedMemorySize")->text(), QString("7600.3MB"));
        QCOMPARE(child<QLabel>("leftMemorySize")->text(), QString("7593.2MB"));
        QVERIFY(child<QPushButton>("viewFilesBtn")->isEnabled());
    }
    void statusProblems_data()
    {
        QTest::addColumn<QString>("mode"); // "winbond": the Winbond camera stays selected
        QTest::addColumn<bool>("wrongPassword");
        QTest::addColumn<QString>("message");
        const QString failed = QStringLiteral("Message: Could not retrieve SD card information");
        QTest::newRow("refused") << "401" << false << failed;
        QTest::newRow("no card") << "noquotes" << false << "Message: No SD card detected";
        // Newest credentials first: the dialog's right ones came earlier.
        QTest::newRow("newest credentials") << "off" << true << failed;
        QTest::newRow("winbond") << "winbond" << false
                                 << "Message: VGA-Cameras do not support SD cards";
    }
    void statusProblems()
    {
        QFETCH(QString, mode);
        QFETCH(bool, wrongPassword);
        hostile(mode == "winbond" ? "off" : mode);
        if (wrongPassword)
            handCredentials("wrong");
        // Show Files must go by this answer, not by the one before the Winbond click.
        click(winbond);
        if (mode != "winbond")
            click(haisi);
        settle();
        QTEST(boxOf(window, "on_viewFilesBtn_clicked"), "message");
        QVERIFY(!shownBrowser());
        settle();
        hostile("off");
        click(haisi);
        handCredentials(haisi.password);
    }
    void browseAndPreview()
    {
        control("reset=1");
        QMetaObject::invokeMethod(window, "on_viewFilesBtn_clicked");
        std::unique_ptr<sdmanager> browser(shownBrowser());
        QVERIFY2(browser, "Show Files opened no browser");
        QCOMPARE(browser->windowTitle(), QString("SD Card Information"));
        QCOMPARE(browser->windowModality(), Qt::ApplicationModal);
        QTableWidget *list = listOf(browser.get());
        QTRY_COMPARE_WITH_TIMEOUT(list->rowCount(), 2, 10000);
        QCOMPARE(list->item(0, 0)->text(), QString("20261123/"));
        QCOMPARE(list->item(0, 1)->text(), QString("23-Nov-2026 10:00"));
        QCOMPARE(list->item(0, 0)->foreground().color(), QColor(0, 0, 255));
        QCOMPARE(list->horizontalHeaderItem(2)->text(), QString("state"));
        QVERIFY(browser->findChild<QWidget *>("back")->isHidden());
        QMetaObject::invokeMethod(browser.get(), "mycellsdClicked", Q_ARG(int, 1), Q_ARG(int, 0));
        QCOMPARE(list->item(1, 1)->background().color(), QColor(73, 178, 235));
        // One day folder ticked at a time.
        for (const int row : {0, 1})
            QMetaObject::invokeMethod(browser.get(), "mycellfileClicked", Q_ARG(int, row),
                                      Q_ARG(int, 0));
        QCOMPARE(list->item(0, 2)->checkState(), Qt::Unchecked);
        QCOMPARE(list->item(1, 2)->checkState(), Qt::Checked);

        QVERIFY(enter(browser.get(), "20261123/"));
        QCOMPARE(list->item(0, 0)->text(), QString("images001/"));
        QVERIFY(!browser->findChild<QWidget *>("back")->isHidden());
        QVERIFY(enter(browser.get(), "images001/"));
        QCOMPARE(list->rowCount(), 3);
        QCOMPARE(list->horizontalHeaderItem(2)->text(), QString("Size"));
        QCOMPARE(list->item(0, 0)->text(), QString("P26112310000000.jpg"));
        QVERIFY(list->item(0, 2)->text().endsWith("k"));
        QMetaObject::invokeMethod(browser.get(), "mycellfileClicked", Q_ARG(int, 0), Q_ARG(int, 0));
        auto *preview = browser->findChild<QLabel *>("imgShow");
        QVERIFY(!preview->isHidden());
        QCOMPARE(preview->pixmap(Qt::ReturnByValue).size(), preview->size());
        QCOMPARE(list->item(0, 3)->checkState(), Qt::Checked);
        QMetaObject::invokeMethod(browser.get(), "on_back_clicked");
        QVERIFY(preview->isHidden());
        QCOMPARE(list->columnCount(), 3);
        QCOMPARE(list->item(1, 0)->text(), QString("record001/"));
        QMetaObject::invokeMethod(browser.get(), "on_back_clicked");
        QCOMPARE(list->rowCount(), 2);
        QCOMPARE(list->item(1, 0)->text(), QString("20261124/"));
        QCOMPARE(list->item(1, 2)->checkState(), Qt::Unchecked);
        QVERIFY(browser->findChild<QWidget *>("selectallBtn")->isHidden());
        const QString wrong =
            QStringLiteral("Error: Unexpected Error: Wrong parameters in sdmanager:");
        QCOMPARE(boxOf(browser.get(), "on_selectallBtn_clicked"),
                 wrong + "on_selectallBtn_clicked");
        QCOMPARE(boxOf(browser.get(), "on_deselectallBtn_clicked"),
                 wrong + "on_delectallBtn_clicked");

        // A listing that fails leaves table and level as they were.
        control("fail=20261124/");
        Boxes boxes = answerBoxes({""});
        QVERIFY(!enter(browser.get(), "20261124/"));
        QCOMPARE(*boxes, QStringList{"Request error: Could not retrieve SD card information"});
        QCOMPARE(list->item(1, 0)->text(), QString("20261124/"));
        QVERIFY(browser->findChild<QWidget *>("back")->isHidden());
    }
    void download_data()
    {
        QTest::addColumn<QStringList>("browse"); // folders entered before ticking
        QTest::addColumn<QString>("tick");       // "*": select all
        QTest::addColumn<QString>("misbehave");  // query for the simulator
        QTest::addColumn<QString>("lost");       // camera path that must be reported and absent
        const QString recording = "20261123/record001/R20261123_100001_0001.264";
        const QString picture = "20261124/images001/P26112410000101.jpg";
        const QStringList record{"20261123/", "record001/"};
        const auto row = [](const char *name, const QStringList &browse, const char *tick,
                            const QString &misbehave = {}, const QString &lost = {}) {
            QTest::newRow(name) << browse << QString(tick) << misbehave << lost;
        };
        row("files at level three", record, "*");
        row("day folder", {}, "20261124/");
        row("sub-folder", {"20261123/"}, "images001/");
        row("cut recording", record, "*", "cut=" + recording, recording);
        row("failing picture", {"20261124/", "images001/"}, "*", "fail=" + picture, picture);
        row("failing listing", {}, "20261124/", "fail=20261124/images001/", "20261124/images001/");
    }
    void download()
    {
        QFETCH(QStringList, browse);
        QFETCH(QString, tick);
        QFETCH(QString, misbehave);
        QFETCH(QString, lost);
        control("reset=1&" + misbehave);
        QTemporaryDir target;
        std::unique_ptr<sdmanager> browser = openBrowser(target.path());
        for (const QString &folder : browse)
            QVERIFY(enter(browser.get(), folder));
        // A ticked folder lands under its own name, ticked files straight in the new directory.
        const QString local = tick == "*" ? QString() : tick;
        if (local.isEmpty())
            QMetaObject::invokeMethod(browser.get(), "on_selectallBtn_clicked");
        else
            QMetaObject::invokeMethod(browser.get(), "mycellfileClicked",
                                      Q_ARG(int, rowOf(listOf(browser.get()), tick)),
                                      Q_ARG(int, 0));

        const bool listingFails = lost.endsWith('/');
        Boxes boxes = answerBoxes(listingFails ? QStringList{"OK", "", ""} : QStringList{"OK", ""});
        QMetaObject::invokeMethod(browser.get(), "on_download_clicked");
        QTRY_COMPARE_WITH_TIMEOUT(boxes->size(), listingFails ? 3 : 2, 60000);
        if (lost.isEmpty())
            QCOMPARE(boxes->last().section(": ", 1),
                     QString(browse.size() == 2 ? "Download successful!" : "Download Successful!"));
        else
            QVERIFY2(boxes->last().contains(lost), qPrintable(boxes->last()));
        if (listingFails)
            QVERIFY2(boxes->at(1).endsWith(": Download error!Try again!"),
                     qPrintable(boxes->at(1)));
        auto *button = browser->findChild<QPushButton *>("download");
        QCOMPARE(button->text(), QString("Download"));
        QVERIFY(button->styleSheet().contains("#ffa03e"));

        QMap<QString, QByteArray> expected;
        const QString fromCamera = browse.join(QString()) + local;
        const QMap<QString, QByteArray> onCamera = camsimfleet::sdCardHashes(haisi, fromCamera);
        for (auto it = onCamera.begin(); it != onCamera.end(); ++it) {
            if (lost.isEmpty() || !QString(fromCamera + it.key()).startsWith(lost))
                expected.insert(local + it.key(), it.value());
        }
        const QStringList stamps = QDir(target.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        QCOMPARE(stamps.size(), 1);
        QCOMPARE(testsupport::fileHashes(target.path() + '/' + stamps.first()), expected);
    }
    void existingDirectory()
    {
        QTemporaryDir target;
        std::unique_ptr<sdmanager> browser = openBrowser(target.path());
        Boxes cancelled = answerBoxes({"Cancel"});
        QMetaObject::invokeMethod(browser.get(), "on_download_clicked");
        QCOMPARE(cancelled->size(), 1);
        QVERIFY(QDir(target.path()).isEmpty());
        const QDateTime now = QDateTime::currentDateTime();
        for (int s = 0; s < 3; ++s)
            QDir(target.path()).mkdir(now.addSecs(s).toString("yyyyMMddhhmmss"));
        Boxes boxes = answerBoxes({"OK", ""});
        QMetaObject::invokeMethod(browser.get(), "on_download_clicked");
        QTRY_COMPARE(boxes->size(), 2);
        QCOMPARE(boxes->at(1), QString("New directory: This directory already exists"));
    }
    void format_data()
    {
        QTest::addColumn<bool>("succeeds");
        QTest::newRow("camera fails") << false;
        QTest::newRow("success") << true;
    }
    void format()
    {
        QFETCH(bool, succeeds);
        control("reset=1");
        QTemporaryDir target;
        std::unique_ptr<sdmanager> browser = openBrowser(target.path());
        browser->show();
        hostile(succeeds ? "off" : "500");
        Boxes boxes = answerBoxes({"OK", ""});
        QMetaObject::invokeMethod(browser.get(), "on_format_clicked");
        QTRY_COMPARE_WITH_TIMEOUT(boxes->size(), 2, 10000);
        hostile("off");
        QCOMPARE(boxes->at(1),
                 "SD Format: " + QString(succeeds ? "Success!" : "Unexpected error occured"));
        // A failed format leaves the browser disabled until it is closed.
        QCOMPARE(browser->isEnabled(), succeeds);
        QCOMPARE(listOf(browser.get())->rowCount(), succeeds ? 0 : 2);
        QCOMPARE(browser->findChild<QWidget *>("format")->isHidden(), succeeds);
        QCOMPARE(control("").isEmpty(), succeeds);
        if (!succeeds)
            return;
        std::unique_ptr<sdmanager> again = openBrowser(target.path());
        QTRY_COMPARE_WITH_TIMEOUT(listOf(again.get())->horizontalHeaderItem(0)->text(),
                                  QString("File Name"), 10000);
        QCOMPARE(listOf(again.get())->rowCount(), 0);
        control("reset=1");
    }

private:
    QJsonArray control(const QString &query) { return camsimfleet::sdCardControl(haisi, query); }
    void hostile(const QString &mode)
    {
        camsimfleet::fetchJson(haisi, "/camsim/hostile?mode=" + mode);
    }
    // Waits until every status request of the window has been answered and taken in.
    void settle()
    {
        QTRY_VERIFY_WITH_TIMEOUT(
            window->findChildren<QNetworkAccessManager *>(QString(), Qt::FindDirectChildrenOnly)
                .isEmpty(),
            10000);
    }
    // The credential dialog's answer for the selected camera.
    void handCredentials(const QString &password)
    {
        QMetaObject::invokeMethod(
            window, "receiveCamSdCard",
            Q_ARG(QStringList,
                  (QStringList{haisi.user, password, QString::number(haisi.httpPort), "Haisi"})));
        settle();
    }
    void click(const camsimfleet::Camera &camera)
    {
        QMetaObject::invokeMethod(window, "mycellClickedSdmanager",
                                  Q_ARG(int, rowOf(table, camera.ip)), Q_ARG(int, 1));
    }
    std::unique_ptr<sdmanager> openBrowser(const QString &target)
    {
        std::unique_ptr<sdmanager> browser(new sdmanager);
        browser->setDirectoryChooser([target](QWidget *) { return target; });
        browser->setData({haisi.ip, QString::number(haisi.httpPort), haisi.password, haisi.user});
        if (!QTest::qWaitFor([&] { return listOf(browser.get())->rowCount() == 2; }, 10000))
            qWarning("the browser listed no card");
        return browser;
    }
    bool enter(sdmanager *browser, const QString &folder)
    {
        QTableWidget *list = listOf(browser);
        if (!QTest::qWaitFor([&] { return rowOf(list, folder) >= 0; }, 10000))
            return false;
        QMetaObject::invokeMethod(browser, "mycellsdDoubleClicked", Q_ARG(int, rowOf(list, folder)),
                                  Q_ARG(int, 0));
        return QTest::qWaitFor([&] { return list->rowCount() > 0 && rowOf(list, folder) < 0; },
                               10000);
    }
    template <class T> T *child(const char *name) { return window->findChild<T *>(name); }

    QVector<camsimfleet::Camera> cameras;
    camsimfleet::Camera haisi;
    camsimfleet::Camera winbond;
    MainWindow *window = nullptr;
    QTableWidget *table = nullptr;
};

QTEST_MAIN(TestSdCardEndToEnd)
#include "tst_sdcard_e2e.moc"
