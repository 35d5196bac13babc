// The download walk over the three listing levels against a card on a
// loopback port: what lands where, and what a hostile or failing camera
// cannot make it do (write outside the target, leave half files, replace a
// file with a partial one, show the password).
#include "sdcard/sdfolderdownload.h"

#include "fakecard.h"
#include "filehashes.h"

#include <QNetworkAccessManager>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const char kPassword[] = "pw&s3cret";

// A folder listing naming one sub-folder, in the camera's columns.
QByteArray folderListing(const QByteArray &name)
{
    return "<pre>\n" + QByteArray(30, ' ') + name + "\n</pre>";
}

} // namespace

class TestSdFolderDownload : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void walk_data();
    void walk();
    void existingFile_data();
    void existingFile();
    void linkInTheWay();
    void noPasswordInFailures_data();
    void noPasswordInFailures();

private:
    veltor::SdFolderDownload download();

    FakeCard card;
    QMap<QString, FakeCamera::Answer> special; // served instead of the card
    std::unique_ptr<FakeCamera> camera;
    std::unique_ptr<QTemporaryDir> sandbox; // holds "dest" and nothing else
    QString dest;
    QNetworkAccessManager manager;
};

void TestSdFolderDownload::init()
{
    card = FakeCard();
    special.clear();
    camera.reset(new FakeCamera([this](const QString &request) {
        const QString path = request.section('?', 0, 0);
        return special.contains(path) ? special.value(path) : card.answer(request);
    }));
    QVERIFY(camera->start());
    sandbox.reset(new QTemporaryDir);
    dest = sandbox->filePath("dest");
    QVERIFY(QDir().mkpath(dest));
}

veltor::SdFolderDownload TestSdFolderDownload::download()
{
    return veltor::SdFolderDownload(
        &manager, veltor::SdCamera{"127.0.0.1", camera->port(), "admin", kPassword});
}

void TestSdFolderDownload::walk_data()
{
    QTest::addColumn<QString>("folder");    // "" for the whole card
    QTest::addColumn<QString>("subFolder"); // set: only this sub-folder
    QTest::addColumn<QString>("misbehave"); // "cut:PATH", "fail:PATH" or "list:PATH=NAME"
    QTest::addColumn<QString>("local");     // where the camera folder lands below dest
    QTest::addColumn<QString>("absent");    // camera files below it do not land ("/": none lands)
    QTest::addColumn<QString>("reported");  // the one failure starts with it

    QTest::newRow("card") << ""
                          << ""
                          << ""
                          << ""
                          << ""
                          << "";
    QTest::newRow("day folder") << "20261123/"
                                << ""
                                << ""
                                << "20261123/"
                                << ""
                                << "";
    QTest::newRow("sub-folder") << "20261124/"
                                << "record001/"
                                << ""
                                << "record001/"
                                << ""
                                << "";
    const QString cut = "20261124/record001/R20261123_100000_0002.264";
    QTest::newRow("cut recording") << "20261124/"
                                   << "record001/"
                                   << "cut:" + cut << "record001/" << cut << cut;
    QTest::newRow("failing sub-folder listing") << "20261123/"
                                                << ""
                                                << "fail:20261123/images001/"
                                                << "20261123/"
                                                << "20261123/images001/"
                                                << "20261123/images001/";
    QTest::newRow("failing root listing") << ""
                                          << ""
                                          << "fail:"
                                          << ""
                                          << "/"
                                          << "/";
    QTest::newRow("folder named ..") << "20261123/"
                                     << ""
                                     << "list:/sd/20261123/=../abcdef/"
                                     << "20261123/"
                                     << "20261123/"
                                     << "20261123/../abcdef/";
    QTest::newRow("file named ..") << "20261123/"
                                   << "images001/"
                                   << "list:/sd/20261123/images001/=.."
                                   << "images001/"
                                   << "20261123/images001/"
                                   << "20261123/images001/..";
}

void TestSdFolderDownload::walk()
{
    QFETCH(QString, folder);
    QFETCH(QString, subFolder);
    QFETCH(QString, misbehave);
    QFETCH(QString, local);
    QFETCH(QString, absent);
    QFETCH(QString, reported);
    const QString what = misbehave.section(':', 1);
    if (misbehave.startsWith("cut:"))
        card.cutPaths << what;
    if (misbehave.startsWith("fail:"))
        card.failingPaths << what;
    if (misbehave.startsWith("list:")) {
        FakeCamera::Answer hostile;
        const QByteArray name = what.section('=', 1).toLatin1();
        // A file name sits 10 columns further right than a sub-folder name.
        hostile.body =
            subFolder.isEmpty() ? folderListing(name) : folderListing(QByteArray(10, ' ') + name);
        special.insert(what.section('=', 0, 0), hostile);
    }

    veltor::SdFolderDownload walk = download();
    if (folder.isEmpty())
        walk.fetchCard(dest);
    else if (subFolder.isEmpty())
        walk.fetchFolder(folder, dest);
    else
        walk.fetchSubFolder(folder, subFolder, dest);

    QMap<QString, QByteArray> expected;
    const QString from = folder + subFolder;
    for (auto it = card.files.begin(); it != card.files.end(); ++it) {
        const bool gone = !absent.isEmpty() && (absent == "/" || it.key().startsWith(absent));
        if (it.key().startsWith(from) && !gone)
            expected.insert(local + it.key().mid(from.size()), sha256(it.value()));
    }
    QCOMPARE(testsupport::fileHashes(dest), expected);
    QCOMPARE(QDir(sandbox->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{"dest"});
    if (reported.isEmpty()) {
        QCOMPARE(walk.failures, QStringList());
    } else {
        QCOMPARE(walk.failures.size(), 1);
        QVERIFY2(walk.failures.first().startsWith(reported + " ("),
                 qPrintable(walk.failures.first()));
    }
}

void TestSdFolderDownload::existingFile_data()
{
    QTest::addColumn<bool>("keepExisting");
    QTest::addColumn<bool>("cut");
    QTest::addColumn<bool>("replaced");
    QTest::newRow("kept") << true << false << false;
    QTest::newRow("replaced") << false << false << true;
    QTest::newRow("not replaced by a cut transfer") << false << true << false;
}

void TestSdFolderDownload::existingFile()
{
    QFETCH(bool, keepExisting);
    QFETCH(bool, cut);
    QFETCH(bool, replaced);
    const QString path = "20261123/record001/R20261123_100000_0001.264";
    if (cut)
        card.cutPaths << path;
    QFile old(dest + "/R20261123_100000_0001.264");
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write("an older recording");
    old.close();

    veltor::SdFolderDownload walk = download();
    walk.keepExisting = keepExisting;
    QCOMPARE(
        walk.fetchFile(QUrl(QString("http://127.0.0.1:%1/sd/%2").arg(camera->port(), path)), dest),
        !cut);
    QVERIFY(old.open(QIODevice::ReadOnly));
    QCOMPARE(sha256(old.readAll()),
             sha256(replaced ? card.files.value(path) : QByteArray("an older recording")));
    QCOMPARE(walk.kept.size(), keepExisting ? 1 : 0);
    QCOMPARE(walk.failures.size(), cut ? 1 : 0);
    QCOMPARE(QDir(dest).entryList(QDir::Files | QDir::Hidden).size(), 1); // no ".part" left
}

void TestSdFolderDownload::linkInTheWay()
{
    QTemporaryDir outside;
    QVERIFY(QFile::link(outside.path(), dest + "/20261123"));
    veltor::SdFolderDownload walk = download();
    walk.fetchFolder("20261123/", dest);
    QCOMPARE(QDir(outside.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList());
    QCOMPARE(walk.failures.size(), 1);
}

void TestSdFolderDownload::noPasswordInFailures_data()
{
    QTest::addColumn<QString>("failing");
    QTest::addColumn<bool>("closed"); // nothing listens on the port
    QTest::newRow("listing answered 404") << "20261123/" << false;
    QTest::newRow("file answered 404") << "20261123/images001/P26112310000001.jpg" << false;
    QTest::newRow("connection refused") << "" << true;
}

void TestSdFolderDownload::noPasswordInFailures()
{
    QFETCH(QString, failing);
    QFETCH(bool, closed);
    card.failingPaths << failing;
    if (closed)
        camera->close();
    veltor::SdFolderDownload walk = download();
    walk.fetchCard(dest);
    QVERIFY(!walk.failures.isEmpty());
    for (const QString &failure : walk.failures) {
        QVERIFY2(!failure.contains("s3cret"), qPrintable(failure));
        QVERIFY2(!failure.contains("pw%26"), qPrintable(failure));
    }
}

QTEST_MAIN(TestSdFolderDownload)
#include "tst_sdfolderdownload.moc"
