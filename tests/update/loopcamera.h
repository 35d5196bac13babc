// Simulated cameras on loopback and what they report about uploads.
#pragma once
#include "camsim/features.h"
#include "camsim/simcamera.h"

#include "camsimfleet.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QRandomGenerator>
#include <QtTest>

// An in-process camera, and the same camera as the fleet helpers see it.
struct LoopCamera
{
    std::unique_ptr<veltor::camsim::SimCamera> sim;
    camsimfleet::Camera seen;
};

inline LoopCamera startCamera(veltor::camsim::Family family, const QString &password)
{
    veltor::camsim::CameraSettings settings;
    settings.family = family;
    settings.ip = QStringLiteral("127.0.0.1");
    settings.user = QStringLiteral("admin");
    settings.password = password;
    settings.httpPort = 0; // a free port: tests side by side never meet
    LoopCamera camera{std::make_unique<veltor::camsim::SimCamera>(settings), {}};
    veltor::camsim::installFeatures(*camera.sim);
    QString error;
    if (!camera.sim->startHttp(QHostAddress::LocalHost, 0, &error))
        qWarning("no camera: %s", qPrintable(error));
    camera.seen.ip = settings.ip;
    camera.seen.user = settings.user;
    camera.seen.password = password;
    camera.seen.httpPort = camera.sim->http().serverPort();
    return camera;
}

inline QJsonArray uploads(const camsimfleet::Camera &camera)
{
    return camsimfleet::fetchJson(camera, "/camsim/uploads").value("uploads").toArray();
}

// Upload number `n` (from 1) once the camera and the standard parser have judged it.
inline QJsonObject upload(const camsimfleet::Camera &camera, int n)
{
    QJsonObject found;
    (void)QTest::qWaitFor(
        [&] {
            found = uploads(camera).at(n - 1).toObject();
            return found["done"].toBool() && found["standardCheck"].toString() != "pending";
        },
        30000);
    return found;
}

// A file of random bytes; its SHA-256 in hex.
inline QString writeFile(const QString &path, int size)
{
    QByteArray content(size, '\0');
    for (char &c : content)
        c = char(QRandomGenerator::global()->generate());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != size)
        return QString();
    return QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex();
}

// What the camera stored is the file, and a standard parser took it if one is there.
inline void compareStored(const QJsonObject &record, const QString &sha)
{
    QCOMPARE(record["error"].toString(), QString());
    QVERIFY(record["ok"].toBool());
    QCOMPARE(record["sha256"].toString(), sha);
    const QString standard = record["standardCheck"].toString();
    QVERIFY2(standard == "passed" || standard.startsWith("unavailable"), qPrintable(standard));
}
