#pragma once

#include "fakecamera.h"

#include <QMap>

// A small SD card served through FakeCamera: listings in the camera's fixed
// columns, pictures made with QImage, recordings of patterned bytes.
struct FakeCard
{
    FakeCard();

    FakeCamera::Answer answer(const QString &pathAndQuery);
    // Every file under `folder` ("" for all), by its path below "/sd/".
    QMap<QString, QByteArray> filesUnder(const QString &folder) const;

    QMap<QString, QByteArray> files; // "20261123/images001/P...jpg" -> bytes
    QStringList failingPaths;        // answered 404
    QStringList cutPaths;            // answered with half the body, then closed
    QString formatAnswer = QStringLiteral("ok");
    bool formatted = false;
};

QByteArray fakeJpeg(int seed);
QByteArray sha256(const QByteArray &bytes);
