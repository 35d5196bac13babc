#include "app/startup.h"
#include "sdcard/sdmanager.h"

#include "boxes.h"
#include "fakecard.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QtTest>

namespace {

struct Browser
{
    FakeCard card;
    FakeCamera server{[this](const QString &request) { return card.answer(request); }};
    std::unique_ptr<sdmanager> window{new sdmanager};
    QTemporaryDir target;

    QTableWidget *table() const { return window->findChild<QTableWidget *>("tableShowSdInfo"); }
    QWidget *widget(const char *name) const { return window->findChild<QWidget *>(name); }
    QString name(int row) const { return table()->item(row, 0)->text(); }
    int rowOf(const QString &name) const
    {
        for (int row = 0; row < table()->rowCount(); ++row) {
            if (table()->item(row, 0)->text() == name)
                return row;
        }
        return -1;
    }
    bool open()
    {
        if (!server.start())
            return false;
        const QString base = target.path();
        window->setDirectoryChooser([base](QWidget *) { return base; });
        window->setData({"127.0.0.1", server.port(), "pw&1", "admin"});
        return QTest::qWaitFor([this] { return table()->rowCount() == 2; }, 5000);
    }
    bool enter(const QString &folder, int rows)
    {
        QMetaObject::invokeMethod(window.get(), "mycellsdDoubleClicked", Q_ARG(int, rowOf(folder)),
                                  Q_ARG(int, 0));
        return QTest::qWaitFor(
            [this, rows, folder] { return table()->rowCount() == rows && rowOf(folder) < 0; },
            5000);
    }
    // Files below the one download directory, by path relative to it.
    QMap<QString, QByteArray> downloaded() const
    {
        QMap<QString, QByteArray> found;
        const QStringList stamps = QDir(target.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        if (stamps.size() != 1)
            return found;
        const QString base = target.path() + '/' + stamps.first() + '/';
        QDirIterator it(base, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            QFile file(it.next());
            file.open(QIODevice::ReadOnly);
            found.insert(file.fileName().mid(base.size()), file.readAll());
        }
        return found;
    }
};

QMap<QString, QByteArray> hashes(const QMap<QString, QByteArray> &files)
{
    QMap<QString, QByteArray> result;
    for (auto it = files.begin(); it != files.end(); ++it)
        result.insert(it.key(), sha256(it.value()));
    return result;
}

QMap<QString, QByteArray> relativeTo(const QMap<QString, QByteArray> &files, const QString &prefix)
{
    QMap<QString, QByteArray> result;
    for (auto it = files.begin(); it != files.end(); ++it)
        result.insert(it.key().mid(prefix.size()), it.value());
    return result;
}

} // namespace

class TestSdManager : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { veltor::initResources(); }
    void walkLevelsAndBack();
    void previewPicture();
    void listingFailure();
    void downloadFiles_data();
    void downloadFiles();
    void downloadFolder_data();
    void downloadFolder();
    void existingDirectory();
    void format_data();
    void format();
    void selectAtRoot_data();
    void selectAtRoot();
};

void TestSdManager::walkLevelsAndBack()
{
    Browser b;
    QVERIFY(b.open());
    QVERIFY(b.server.requests.first().startsWith("/sd/?&usr=admin&pwd=pw&1"));
    QTableWidget *table = b.table();
    QCOMPARE(table->columnCount(), 3);
    QCOMPARE(table->horizontalHeaderItem(2)->text(), QString("state"));
    QCOMPARE(table->columnWidth(1), 180);
    QCOMPARE(b.name(0), QString("20261123/"));
    QCOMPARE(table->item(0, 1)->text(), QString("23-Nov-2026 10:00"));
    QCOMPARE(table->item(0, 0)->foreground().color(), QColor(0, 0, 255));
    QCOMPARE(table->item(0, 2)->flags(), Qt::ItemIsEditable);
    QCOMPARE(table->item(0, 2)->checkState(), Qt::Unchecked);
    QVERIFY(b.widget("back")->isHidden());

    // One root folder ticked at a time.
    QMetaObject::invokeMethod(b.window.get(), "mycellfileClicked", Q_ARG(int, 0), Q_ARG(int, 0));
    QMetaObject::invokeMethod(b.window.get(), "mycellfileClicked", Q_ARG(int, 1), Q_ARG(int, 1));
    QCOMPARE(table->item(0, 2)->checkState(), Qt::Unchecked);
    QCOMPARE(table->item(1, 2)->checkState(), Qt::Checked);

    QVERIFY(b.enter("20261123/", 2));
    QCOMPARE(b.name(0), QString("images001/"));
    QVERIFY(!b.widget("back")->isHidden());
    QVERIFY(b.enter("record001/", 2));
    QCOMPARE(table->columnCount(), 4);
    QCOMPARE(table->horizontalHeaderItem(2)->text(), QString("Size"));
    QCOMPARE(table->columnWidth(3), 80);
    QCOMPARE(b.name(0), QString("R20261123_100000_0001.264"));
    QCOMPARE(table->item(0, 2)->text(), QString("1.5M"));

    // A double click on a file lists nothing.
    const int requests = b.server.requests.size();
    QMetaObject::invokeMethod(b.window.get(), "mycellsdDoubleClicked", Q_ARG(int, 0),
                              Q_ARG(int, 0));
    QTest::qWait(100);
    QCOMPARE(b.server.requests.size(), requests);

    QMetaObject::invokeMethod(b.window.get(), "on_back_clicked");
    QCOMPARE(table->columnCount(), 3);
    QCOMPARE(b.name(1), QString("record001/"));
    QMetaObject::invokeMethod(b.window.get(), "on_back_clicked");
    QCOMPARE(b.name(0), QString("20261123/"));
    QCOMPARE(table->item(0, 2)->checkState(), Qt::Unchecked);
    QVERIFY(b.widget("back")->isHidden());
    QVERIFY(b.widget("selectallBtn")->isHidden());
    QCOMPARE(b.server.requests.size(), requests);
}

void TestSdManager::previewPicture()
{
    Browser b;
    QVERIFY(b.open());
    QVERIFY(b.enter("20261123/", 2));
    QVERIFY(b.enter("images001/", 2));
    QCOMPARE(b.table()->item(0, 2)->text(), QString("57k"));
    QMetaObject::invokeMethod(b.window.get(), "mycellfileClicked", Q_ARG(int, 0), Q_ARG(int, 0));
    auto *preview = b.window->findChild<QLabel *>("imgShow");
    QVERIFY(!preview->isHidden());
    QVERIFY(!preview->pixmap(Qt::ReturnByValue).isNull());
    QCOMPARE(preview->pixmap(Qt::ReturnByValue).size(), QSize(186, 108));
    QCOMPARE(b.table()->item(0, 3)->checkState(), Qt::Checked);
    QVERIFY(b.server.requests.last().startsWith("/sd/20261123/images001/P26112310000001.jpg?"));
    QMetaObject::invokeMethod(b.window.get(), "on_back_clicked");
    QVERIFY(preview->isHidden());
}

void TestSdManager::listingFailure()
{
    Browser b;
    b.card.failingPaths << "20261123/";
    QVERIFY(b.open());
    auto boxes = answerBoxes({""});
    QMetaObject::invokeMethod(b.window.get(), "mycellsdDoubleClicked", Q_ARG(int, 0),
                              Q_ARG(int, 0));
    QTRY_COMPARE(boxes->answered, 1);
    QCOMPARE(boxes->seen.at(0).title, QString("Request error"));
    QCOMPARE(boxes->seen.at(0).text, QString("Could not retrieve SD card information"));
    QCOMPARE(b.name(0), QString("20261123/")); // table and level unchanged
    QVERIFY(b.widget("back")->isHidden());
}

void TestSdManager::downloadFiles_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("cut");
    QTest::newRow("pictures") << "images001/"
                              << "";
    QTest::newRow("recordings") << "record001/"
                                << "";
    QTest::newRow("a cut recording") << "record001/"
                                     << "R20261123_100000_0002.264";
    QTest::newRow("a missing picture") << "images001/"
                                       << "P26112310000001.jpg";
}

void TestSdManager::downloadFiles()
{
    QFETCH(QString, folder);
    QFETCH(QString, cut);
    Browser b;
    const QString prefix = "20261124/" + folder;
    if (cut.endsWith(".264"))
        b.card.cutPaths << prefix + cut;
    else if (!cut.isEmpty())
        b.card.failingPaths << prefix + cut;
    QVERIFY(b.open());
    QVERIFY(b.enter("20261124/", 2));
    QVERIFY(b.enter(folder, 2));
    QMetaObject::invokeMethod(b.window.get(), "on_selectallBtn_clicked");

    auto boxes = answerBoxes({"OK", ""});
    QMetaObject::invokeMethod(b.window.get(), "on_download_clicked");
    QTRY_COMPARE(boxes->answered, 2);
    QMap<QString, QByteArray> expected = relativeTo(b.card.filesUnder(prefix), prefix);
    if (cut.isEmpty()) {
        QCOMPARE(boxes->seen.at(1).title, QString("Download"));
        QCOMPARE(boxes->seen.at(1).text, QString("Download successful!"));
    } else {
        QVERIFY2(boxes->seen.at(1).text.contains(prefix + cut), qPrintable(boxes->seen.at(1).text));
        expected.remove(cut); // nothing, not a truncated file, under its name
    }
    QCOMPARE(hashes(b.downloaded()), hashes(expected));
    auto *button = b.window->findChild<QPushButton *>("download");
    QCOMPARE(button->text(), QString("Download"));
    QVERIFY(button->styleSheet().contains("#ffa03e"));
}

void TestSdManager::downloadFolder_data()
{
    QTest::addColumn<QString>("browse"); // folder entered before ticking
    QTest::addColumn<QString>("tick");
    QTest::addColumn<QString>("failing"); // listing answered 404
    QTest::addColumn<QString>("local");   // where the ticked folder lands
    QTest::newRow("day folder") << ""
                                << "20261123/"
                                << ""
                                << "20261123/";
    QTest::newRow("sub-folder") << "20261124/"
                                << "record001/"
                                << ""
                                << "record001/";
    QTest::newRow("failing sub-folder listing") << ""
                                                << "20261123/"
                                                << "20261123/record001/"
                                                << "20261123/";
}

void TestSdManager::downloadFolder()
{
    QFETCH(QString, browse);
    QFETCH(QString, tick);
    QFETCH(QString, failing);
    QFETCH(QString, local);
    Browser b;
    if (!failing.isEmpty())
        b.card.failingPaths << failing;
    QVERIFY(b.open());
    if (!browse.isEmpty())
        QVERIFY(b.enter(browse, 2));
    QMetaObject::invokeMethod(b.window.get(), "mycellfileClicked", Q_ARG(int, b.rowOf(tick)),
                              Q_ARG(int, 0));

    auto boxes = answerBoxes(failing.isEmpty() ? QStringList{"OK", ""} : QStringList{"OK", "", ""});
    QMetaObject::invokeMethod(b.window.get(), "on_download_clicked");
    QTRY_VERIFY_WITH_TIMEOUT(boxes->answered == (failing.isEmpty() ? 2 : 3), 20000);
    QMap<QString, QByteArray> expected;
    const QMap<QString, QByteArray> all = b.card.filesUnder(browse + tick);
    for (auto it = all.begin(); it != all.end(); ++it) {
        if (failing.isEmpty() || !it.key().startsWith(failing))
            expected.insert(local + it.key().mid(browse.size() + tick.size()), it.value());
    }
    QCOMPARE(hashes(b.downloaded()), hashes(expected));
    if (failing.isEmpty()) {
        QCOMPARE(boxes->seen.at(1).text, QString("Download Successful!"));
    } else {
        QCOMPARE(boxes->seen.at(1).title, QString("Request error"));
        QCOMPARE(boxes->seen.at(1).text, QString("Download error!Try again!"));
        QVERIFY(boxes->seen.at(2).text.contains(failing));
    }
    QVERIFY(b.window->isEnabled());
}

void TestSdManager::existingDirectory()
{
    Browser b;
    QVERIFY(b.open());
    const QDateTime now = QDateTime::currentDateTime();
    for (int s = 0; s < 3; ++s)
        QDir(b.target.path()).mkdir(now.addSecs(s).toString("yyyyMMddhhmmss"));
    auto boxes = answerBoxes({"OK", ""});
    QMetaObject::invokeMethod(b.window.get(), "on_download_clicked");
    QTRY_COMPARE(boxes->answered, 2);
    QCOMPARE(boxes->seen.at(1).title, QString("New directory"));
    QCOMPARE(boxes->seen.at(1).text, QString("This directory already exists"));
}

void TestSdManager::format_data()
{
    QTest::addColumn<bool>("succeeds");
    QTest::newRow("success") << true;
    QTest::newRow("failure") << false;
}

void TestSdManager::format()
{
    QFETCH(bool, succeeds);
    Browser b;
    if (!succeeds)
        b.card.formatAnswer = "fail";
    QVERIFY(b.open());
    b.window->show();
    auto boxes = answerBoxes({"OK", ""});
    QMetaObject::invokeMethod(b.window.get(), "on_format_clicked");
    QTRY_COMPARE(boxes->answered, 2);
    QCOMPARE(boxes->seen.at(1).title, QString("SD Format"));
    QCOMPARE(boxes->seen.at(1).text, QString(succeeds ? "Success!" : "Unexpected error occured"));
    QCOMPARE(b.window->isEnabled(), succeeds);
    QCOMPARE(b.table()->rowCount(), succeeds ? 0 : 2);
    QCOMPARE(b.widget("format")->isHidden(), succeeds);
}

void TestSdManager::selectAtRoot_data()
{
    QTest::addColumn<QString>("slot");
    QTest::addColumn<QString>("text");
    QTest::newRow("select")
        << "on_selectallBtn_clicked"
        << "Unexpected Error: Wrong parameters in sdmanager:on_selectallBtn_clicked";
    QTest::newRow("deselect")
        << "on_deselectallBtn_clicked"
        << "Unexpected Error: Wrong parameters in sdmanager:on_delectallBtn_clicked";
}

void TestSdManager::selectAtRoot()
{
    QFETCH(QString, slot);
    QFETCH(QString, text);
    Browser b;
    QVERIFY(b.open());
    auto boxes = answerBoxes({""});
    QMetaObject::invokeMethod(b.window.get(), qPrintable(slot));
    QTRY_COMPARE(boxes->answered, 1);
    QCOMPARE(boxes->seen.at(0).title, QString("Error"));
    QCOMPARE(boxes->seen.at(0).text, text);
}

QTEST_MAIN(TestSdManager)
#include "tst_sdmanager.moc"
