// One file to one camera as the command line streams it, against the
// simulated camera's upgrade CGIs on loopback: what arrives must be the file,
// byte for byte, and a refusal must not pass for a success.
#include "camsim/features.h"
#include "camsim/simcamera.h"
#include "update/uploadjob.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QRandomGenerator>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QtTest>

using namespace veltor;
using namespace veltor::camsim;

namespace {

CameraSettings cameraOf(Family family)
{
    CameraSettings camera;
    camera.family = family;
    camera.mac = QStringLiteral("02:56:4C:00:00:01");
    camera.ip = QStringLiteral("127.0.0.1");
    camera.user = QStringLiteral("admin");
    camera.password = QStringLiteral("se&cret");
    camera.firmwareVersion = QStringLiteral("2.1.0.14");
    camera.webVersion = QStringLiteral("1.0.3.7");
    camera.upgradeFirmwareVersion = QStringLiteral("2.2.0.1");
    camera.upgradeWebVersion = QStringLiteral("1.1.0.0");
    return camera;
}

QJsonArray uploadsOf(quint16 port)
{
    QNetworkAccessManager manager;
    QNetworkReply *reply = manager.get(
        QNetworkRequest(QUrl(QStringLiteral("http://127.0.0.1:%1/camsim/uploads").arg(port))));
    QSignalSpy done(reply, &QNetworkReply::finished);
    done.wait(5000);
    reply->deleteLater();
    return QJsonDocument::fromJson(reply->readAll()).object().value("uploads").toArray();
}

// The camera's record of its last upload once the standard parser has judged it too.
QJsonObject lastUpload(quint16 port)
{
    QJsonObject last;
    QElapsedTimer clock;
    clock.start();
    do {
        last = uploadsOf(port).last().toObject();
        if (last.value("standardCheck").toString() != QLatin1String("pending"))
            break;
        QTest::qWait(50);
    } while (clock.elapsed() < 15000);
    return last;
}

struct Outcome
{
    bool sent = false;
    QString error;
};

Outcome runJob(const UploadTarget &target, const QString &path)
{
    UploadJob job(target, path);
    QSignalSpy finished(&job, &UploadJob::finished);
    job.start();
    if (finished.isEmpty() && !finished.wait(20000))
        return {false, QStringLiteral("no end")};
    return {finished.first().at(0).toBool(), finished.first().at(1).toString()};
}

} // namespace

class tst_UploadJob : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void toCamera_data();
    void toCamera();
    void noCamera();
    void answerProblem_data();
    void answerProblem();

private:
    QTemporaryDir dir;
};

void tst_UploadJob::initTestCase()
{
    qputenv("VELTOR_NETNS_WORK", dir.path().toUtf8()); // where the camera keeps uploads
}

void tst_UploadJob::toCamera_data()
{
    QTest::addColumn<int>("family");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("size");
    QTest::addColumn<QString>("password");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<QString>("firmwareAfter");
    QTest::addColumn<QString>("webAfter");
    const int winbond = int(Family::Winbond);
    const int haisi = int(Family::Haisi);
    QTest::newRow("winbond firmware, many pieces")
        << winbond << 0 << "fw.bin" << 300001 << "se&cret" << true << "2.2.0.1"
        << "1.0.3.7";
    QTest::newRow("winbond webui, one piece")
        << winbond << 1 << "ui.bin" << 4096 << "se&cret" << true << "2.1.0.14"
        << "1.1.0.0";
    QTest::newRow("winbond empty file")
        << winbond << 0 << "empty.bin" << 0 << "se&cret" << true << "2.2.0.1"
        << "1.0.3.7";
    QTest::newRow("haisi, blank in the name")
        << haisi << 0 << "a b.pkg" << 123457 << "se&cret" << true << "2.2.0.1"
        << "1.1.0.0";
    QTest::newRow("winbond wrong password")
        << winbond << 0 << "fw.bin" << 5000 << "wrong" << false << "2.1.0.14"
        << "1.0.3.7";
    QTest::newRow("haisi wrong password")
        << haisi << 0 << "fw.pkg" << 5000 << "wrong" << false << "2.1.0.14"
        << "1.0.3.7";
}

void tst_UploadJob::toCamera()
{
    QFETCH(int, family);
    QFETCH(int, size);
    QFETCH(QString, name);
    QFETCH(bool, accepted);
    SimCamera camera(cameraOf(Family(family)));
    installFeatures(camera);
    QString error;
    QVERIFY2(camera.startHttp(QHostAddress::LocalHost, 0, &error), qPrintable(error));

    QByteArray content(size, Qt::Uninitialized);
    for (char &byte : content)
        byte = char(QRandomGenerator::global()->generate());
    QFile file(dir.filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == size);
    file.close();

    UploadTarget target;
    target.family = familyName(Family(family));
    QFETCH(int, kind);
    target.kind = kind;
    target.ip = QStringLiteral("127.0.0.1");
    target.port = QString::number(camera.http().serverPort());
    target.user = QStringLiteral("admin");
    QFETCH(QString, password);
    target.password = password;
    const Outcome outcome = runJob(target, file.fileName());
    QCOMPARE(outcome.sent, accepted);
    QVERIFY(!outcome.error.contains(password)); // the camera's answer may quote it
    const QJsonObject upload = lastUpload(camera.http().serverPort());
    if (accepted) {
        QCOMPARE(upload.value("sha256").toString(),
                 QString::fromLatin1(
                     QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex()));
        const QString standard = upload.value("standardCheck").toString();
        QVERIFY2(standard == "passed" || standard.startsWith("unavailable"), qPrintable(standard));
    } else {
        QVERIFY2(outcome.error.contains("refused"), qPrintable(outcome.error));
    }
    QTEST(camera.settings().firmwareVersion, "firmwareAfter");
    QTEST(camera.settings().webVersion, "webAfter");
}

void tst_UploadJob::noCamera()
{
    QTcpServer closed;
    QVERIFY(closed.listen(QHostAddress::LocalHost, 0));
    const quint16 port = closed.serverPort();
    closed.close(); // nobody listens there now
    QFile file(dir.filePath("any.bin"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    UploadTarget target;
    target.family = QStringLiteral("Winbond");
    target.ip = QStringLiteral("127.0.0.1");
    target.port = QString::number(port);
    QVERIFY(!runJob(target, file.fileName()).sent);
    QVERIFY(!runJob(target, dir.filePath("missing.bin")).sent);
    target.family = QStringLiteral("Other");
    QVERIFY(runJob(target, file.fileName()).error.contains("family"));
    // Refused before connecting: nobody listens, yet the reason is the password.
    target.family = QStringLiteral("Winbond");
    target.password = QStringLiteral("two words");
    QVERIFY(runJob(target, file.fileName()).error.contains("blank"));
}

void tst_UploadJob::answerProblem_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("problem");
    QTest::newRow("ok") << QByteArray("HTTP/1.1 200 OK\r\n") << "";
    QTest::newRow("204") << QByteArray("HTTP/1.0 204 No Content\r\n") << "";
    QTest::newRow("refused") << QByteArray("HTTP/1.1 400 Bad Request\r\n")
                             << "the camera refused the file: \"HTTP/1.1 400 Bad Request\"";
    QTest::newRow("not http") << QByteArray("200 OK\r\n")
                              << "the camera refused the file: \"200 OK\"";
    QTest::newRow("long code") << QByteArray("HTTP/1.1 2000 OK\r\n")
                               << "the camera refused the file: \"HTTP/1.1 2000 OK\"";
    QTest::newRow("control characters")
        << QByteArray("HTTP/1.1 500 \x1b[2J\x07oops\r\n")
        << "the camera refused the file: \"HTTP/1.1 500 ?[2J?oops\"";
    QTest::newRow("empty") << QByteArray("\r\n") << "the camera answered with an empty line";
}

void tst_UploadJob::answerProblem()
{
    QFETCH(QByteArray, line);
    QTEST(uploadAnswerProblem(line), "problem");
}

QTEST_GUILESS_MAIN(tst_UploadJob)
#include "tst_uploadjob.moc"
