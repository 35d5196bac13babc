#include "app/mainwindow.h"
#include "update/uploadrequest.h"

#include "testsupport.h"
#include "uploadsink.h"

#include <QComboBox>
#include <QCryptographicHash>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

// The upload stream against a loopback peer: what reaches the camera, and
// what the window does when the file or the connection fails.
class tst_UploadStream : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void bytesOnTheWire_data();
    void bytesOnTheWire();
    void unknownFamilySendsNothing();
    void fileProblems_data();
    void fileProblems();
    void refusedConnection();
    void peerHangsUpHalfway();

private:
    QString writeFile(const QString &name, qint64 size);
    void unlock(const QString &family, quint16 port);
    void submit(const QString &path, int kind, testsupport::SeenBox *box);
    QByteArray expectedUpload(const QString &family, int kind, const QString &path,
                              quint16 port) const;
    bool waitForUploads(int count, int timeoutMs = 30000);

    QTemporaryDir dir;
    QString password;
    MainWindow *window = nullptr;
    UploadSink *sink = nullptr;
};

void tst_UploadStream::init()
{
    QVERIFY(dir.isValid());
    window = new MainWindow;
    password = QStringLiteral("p&w");
    sink = new UploadSink;
    QVERIFY2(sink->listen(), "no loopback port for the camera stand-in");
}

void tst_UploadStream::cleanup()
{
    delete window;
    delete sink;
}

QString tst_UploadStream::writeFile(const QString &name, qint64 size)
{
    const QString path = dir.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return QString();
    QByteArray block(64 * 1024, Qt::Uninitialized);
    for (qint64 left = size; left > 0; left -= block.size()) {
        QRandomGenerator::global()->fillRange(reinterpret_cast<quint32 *>(block.data()),
                                              block.size() / 4);
        file.write(block.constData(), qMin<qint64>(left, block.size()));
    }
    return path;
}

// The credential dialog's answer, as the tab receives it.
void tst_UploadStream::unlock(const QString &family, quint16 port)
{
    window->findChild<QLabel *>(QStringLiteral("iplabel"))->setText(QStringLiteral("127.0.0.1"));
    QMetaObject::invokeMethod(window, "receiveCamUpdate",
                              Q_ARG(QStringList, QStringList({QStringLiteral("ad min"), password,
                                                              QString::number(port), family})));
}

void tst_UploadStream::submit(const QString &path, int kind, testsupport::SeenBox *box)
{
    window->findChild<QLineEdit *>(QStringLiteral("fileEdit"))->setText(path);
    window->findChild<QComboBox *>(QStringLiteral("selectBox"))->setCurrentIndex(kind);
    if (box)
        testsupport::answerNextMessageBox(box, QString(), 20000);
    auto *button = window->findChild<QPushButton *>(QStringLiteral("updateSubmit"));
    QVERIFY(button->isEnabled());
    button->click();
    QVERIFY(!button->isEnabled());
}

QByteArray tst_UploadStream::expectedUpload(const QString &family, int kind, const QString &path,
                                            quint16 port) const
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    veltor::UploadTarget t;
    t.family = family;
    t.kind = kind;
    t.ip = QStringLiteral("127.0.0.1");
    t.port = QString::number(port);
    t.user = QStringLiteral("ad min");
    t.password = password;
    t.fileName = QFileInfo(path).fileName();
    t.fileSize = file.size();
    const veltor::UploadRequest request = veltor::buildUploadRequest(t);
    return request.head + file.readAll() + request.trailer;
}

bool tst_UploadStream::waitForUploads(int count, int timeoutMs)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < timeoutMs) {
        const QList<UploadSink::Connection> uploads = sink->uploads();
        if (uploads.size() >= count && uploads.at(count - 1).closed)
            return true;
        QTest::qWait(20);
    }
    return false;
}

void tst_UploadStream::bytesOnTheWire_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("name");
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QString>("password");
    const QString usual = QStringLiteral("p&w");
    QTest::newRow("winbond firmware, empty file")
        << "Winbond" << 0 << "empty.bin" << qint64(0) << usual;
    QTest::newRow("winbond webui, one piece")
        << "Winbond" << 1 << "ui.bin" << qint64(4096) << usual;
    QTest::newRow("winbond, odd tail")
        << "Winbond" << 0 << "fw.bin" << qint64(3 * 4096 + 17) << usual;
    QTest::newRow("haisi, blank in name") << "Haisi" << 0 << "a b.pkg" << qint64(100) << usual;
    QTest::newRow("haisi, 3 MiB") << "Haisi" << 1 << "big.pkg" << qint64(3 << 20) << usual;
    // A head longer than one piece must still see the whole file before the trailer.
    QTest::newRow("haisi, head longer than a piece")
        << "Haisi" << 0 << "long.pkg" << qint64(8000) << QString(8000, QLatin1Char('x'));
}

void tst_UploadStream::bytesOnTheWire()
{
    QFETCH(QString, family);
    QFETCH(int, kind);
    QFETCH(QString, name);
    QFETCH(qint64, size);
    QFETCH(QString, password);
    this->password = password;
    const QString path = writeFile(name, size);
    QVERIFY(!path.isEmpty());
    unlock(family, sink->port());
    testsupport::SeenBox box;
    submit(path, kind, &box);

    QVERIFY2(waitForUploads(1), "the tool did not finish the upload");
    const QByteArray expected = expectedUpload(family, kind, path, sink->port());
    const QByteArray received = sink->uploads().first().received;
    QCOMPARE(received.size(), expected.size());
    QCOMPARE(QCryptographicHash::hash(received, QCryptographicHash::Sha256),
             QCryptographicHash::hash(expected, QCryptographicHash::Sha256));
    QTRY_VERIFY(box.seen);
    QCOMPARE(box.title, QStringLiteral("Camera rebooting!"));
    QCOMPARE(
        box.text,
        QStringLiteral("The camera is rebooting now! Please wait a few minutes and search again!"));
}

void tst_UploadStream::unknownFamilySendsNothing()
{
    unlock(QStringLiteral("Sony"), sink->port());
    testsupport::SeenBox box;
    submit(writeFile(QStringLiteral("f.bin"), 10000), 0, &box);
    QTRY_VERIFY(box.seen);
    QCOMPARE(box.title, QStringLiteral("Camera rebooting!"));
    QTest::qWait(200);
    QVERIFY(sink->uploads().isEmpty());
}

void tst_UploadStream::fileProblems_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("message");
    const QString unreadable = QStringLiteral("An error occured while trying to open the file!");
    QTest::newRow("no file chosen") << QString() << "Please choose a file!";
    QTest::newRow("missing file") << dir.filePath(QStringLiteral("gone.bin")) << unreadable;
    QTest::newRow("a folder") << dir.path() << unreadable;
}

void tst_UploadStream::fileProblems()
{
    QFETCH(QString, path);
    unlock(QStringLiteral("Winbond"), sink->port());
    testsupport::SeenBox box;
    submit(path, 0, &box);
    QTRY_VERIFY(box.seen);
    QCOMPARE(box.title, QStringLiteral("Error"));
    QTEST(box.text, "message");
    QVERIFY(window->findChild<QPushButton *>(QStringLiteral("updateSubmit"))->isEnabled());
    QTest::qWait(100);
    QVERIFY(sink->uploads().isEmpty());
}

void tst_UploadStream::refusedConnection()
{
    // A port that was just free: nothing listens there.
    QTcpServer probe;
    QVERIFY(probe.listen(QHostAddress::LocalHost, 0));
    const quint16 closedPort = probe.serverPort();
    probe.close();
    unlock(QStringLiteral("Winbond"), closedPort);
    submit(writeFile(QStringLiteral("f.bin"), 5000), 0, nullptr);
    QTest::qWait(300);
    QVERIFY2(!QApplication::activeModalWidget(), "a refused connection shows no box");
    QVERIFY(!window->findChild<QPushButton *>(QStringLiteral("updateSubmit"))->isEnabled());

    // Still responsive: the next upload to a live camera goes through.
    unlock(QStringLiteral("Winbond"), sink->port());
    testsupport::SeenBox box;
    const QString path = writeFile(QStringLiteral("g.bin"), 9000);
    submit(path, 0, &box);
    QVERIFY(waitForUploads(1));
    QCOMPARE(sink->uploads().first().received,
             expectedUpload(QStringLiteral("Winbond"), 0, path, sink->port()));
}

void tst_UploadStream::peerHangsUpHalfway()
{
    sink->setHangUpAfter(256 * 1024);
    unlock(QStringLiteral("Haisi"), sink->port());
    testsupport::SeenBox box;
    submit(writeFile(QStringLiteral("first.pkg"), 4 << 20), 0, &box);
    QVERIFY(waitForUploads(1));
    QTRY_VERIFY(box.seen);
    QVERIFY(sink->uploads().first().received.size() < (4 << 20));

    sink->setHangUpAfter(0);
    unlock(QStringLiteral("Haisi"), sink->port());
    const QString path = writeFile(QStringLiteral("second.pkg"), 1 << 20);
    submit(path, 1, &box);
    QVERIFY(waitForUploads(2));
    QCOMPARE(sink->uploads().at(1).received,
             expectedUpload(QStringLiteral("Haisi"), 1, path, sink->port()));
}

QTEST_MAIN(tst_UploadStream)
#include "tst_uploadstream.moc"
