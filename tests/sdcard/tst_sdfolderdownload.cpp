// The download walk against a loopback camera: what a hostile or failing one
// cannot make it do (write outside the target, leave or keep half files, show
// the password).
#include "sdcard/sdfolderdownload.h"

#include "../update/loopcamera.h"
#include "filehashes.h"

#include <QNetworkAccessManager>
#include <QTemporaryDir>
#include <QtTest>

using namespace veltor::camsim;

class TestSdFolderDownload : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        LoopCamera loop = startCamera(Family::Haisi, QStringLiteral("pw&s3cret"));
        camera = std::move(loop.sim);
        fleet = loop.seen;
        listings.clear();
        // A longer prefix than "/sd/", so it is asked first.
        camera->http().route("/sd/2", [this](HttpExchange &exchange) {
            if (!listings.contains(exchange.request().path))
                return false;
            exchange.respond(200, listings.value(exchange.request().path), "text/html");
            return true;
        });
        sandbox.reset(new QTemporaryDir);
        dest = sandbox->filePath("dest");
        QVERIFY(QDir().mkpath(dest));
    }
    void walk_data()
    {
        QTest::addColumn<QString>("folder");    // "" for the whole card
        QTest::addColumn<QString>("subFolder"); // set: only this sub-folder
        QTest::addColumn<QString>("misbehave"); // query for the card, or "PATH=LISTING LINE"
        QTest::addColumn<QString>("reported");  // the one failure, up to the end of its reason;
                                                // with one, nothing lands
        const auto row = [](const char *name, const QString &folder, const QString &subFolder,
                            const QString &misbehave, const QString &reported) {
            QTest::newRow(name) << folder << subFolder << misbehave << reported;
        };
        row("card", "", "", "", "");
        row("failing root listing", "", "", "fail=/", "/ (the listing failed");
        // A file name sits 10 columns further right than a sub-folder name.
        row("folder named ..", "20261123/", "", "/sd/20261123/=" + QString(30, ' ') + "../abcdef/",
            "20261123/../abcdef/ (the folder could not be created)");
        row("file named ..", "20261123/", "images001/",
            "/sd/20261123/images001/=" + QString(40, ' ') + "..",
            "20261123/images001/.. (not a valid file name)");
    }
    void walk()
    {
        QFETCH(QString, folder);
        QFETCH(QString, subFolder);
        QFETCH(QString, misbehave);
        QFETCH(QString, reported);
        if (misbehave.startsWith('/'))
            listings.insert(misbehave.section('=', 0, 0),
                            "<pre>\n" + misbehave.section('=', 1).toLatin1() + "\n</pre>");
        else
            camsimfleet::sdCardControl(fleet, misbehave);

        veltor::SdFolderDownload walk = download();
        if (folder.isEmpty())
            walk.fetchCard(dest);
        else if (subFolder.isEmpty())
            walk.fetchFolder(folder, dest);
        else
            walk.fetchSubFolder(folder, subFolder, dest);

        const auto landed =
            reported.isEmpty() ? camsimfleet::sdCardHashes(fleet, "") : QMap<QString, QByteArray>();
        QCOMPARE(testsupport::fileHashes(dest), landed);
        QCOMPARE(QDir(sandbox->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList{"dest"});
        QCOMPARE(walk.failures.size(), reported.isEmpty() ? 0 : 1);
        for (const QString &failure : walk.failures) {
            QVERIFY2(failure.startsWith(reported), qPrintable(failure));
            QVERIFY2(!failure.contains("s3cret") && !failure.contains("pw%26"),
                     qPrintable(failure));
        }
    }
    void existingFile_data()
    {
        QTest::addColumn<bool>("keepExisting");
        QTest::addColumn<bool>("cut");
        QTest::addColumn<bool>("replaced");
        QTest::newRow("kept") << true << false << false;
        QTest::newRow("replaced") << false << false << true;
        QTest::newRow("not replaced by a cut transfer") << false << true << false;
    }
    void existingFile()
    {
        QFETCH(bool, keepExisting);
        QFETCH(bool, cut);
        QFETCH(bool, replaced);
        const QString path = "20261123/record001/R20261123_100001_0001.264";
        if (cut)
            camsimfleet::sdCardControl(fleet, "cut=" + path);
        QFile old(dest + "/R20261123_100001_0001.264");
        QVERIFY(old.open(QIODevice::WriteOnly) && old.write("an older recording") > 0);
        old.close();
        const QByteArray oldHash = testsupport::fileHashes(dest).first();

        veltor::SdFolderDownload walk = download();
        walk.keepExisting = keepExisting;
        QCOMPARE(walk.fetchFile(sd().sdUrl(path), dest), !cut);
        // No ".part" left either.
        QCOMPARE(testsupport::fileHashes(dest),
                 (QMap<QString, QByteArray>{
                     {"R20261123_100001_0001.264",
                      replaced ? camsimfleet::sdCardHashes(fleet, path).first() : oldHash}}));
        QCOMPARE(walk.kept.size(), keepExisting ? 1 : 0);
        QCOMPARE(walk.failures.size(), cut ? 1 : 0);
    }
    void linkInTheWay()
    {
        QTemporaryDir outside;
        QVERIFY(QFile::link(outside.path(), dest + "/20261123"));
        veltor::SdFolderDownload walk = download();
        walk.fetchFolder("20261123/", dest);
        QVERIFY(QDir(outside.path()).isEmpty());
        QCOMPARE(walk.failures.size(), 1);
    }

private:
    veltor::SdCamera sd() const
    {
        return {fleet.ip, QString::number(fleet.httpPort), fleet.user, fleet.password};
    }
    veltor::SdFolderDownload download() { return veltor::SdFolderDownload(&manager, sd()); }

    std::unique_ptr<SimCamera> camera;
    camsimfleet::Camera fleet;              // the same camera, for the helpers that control it
    QMap<QString, QByteArray> listings;     // served instead of the card's own, by path
    std::unique_ptr<QTemporaryDir> sandbox; // holds "dest" and nothing else
    QString dest;
    QNetworkAccessManager manager;
};

QTEST_MAIN(TestSdFolderDownload)
#include "tst_sdfolderdownload.moc"
