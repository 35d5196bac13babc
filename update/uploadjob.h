#pragma once

#include "update/uploadrequest.h"

#include <QFile>
#include <QObject>
#include <QTcpSocket>
#include <QTimer>

// One file to one camera, as the Update tab sends it: the hand-built request
// head in one write, then the file in 4096-byte pieces, one per bytesWritten,
// so memory stays small whatever the image's size; then the closing line.
// Unlike the tab it listens briefly for the camera's answer, so that a camera
// refusing the file is reported rather than taken for a success.
namespace veltor {

class UploadJob : public QObject
{
    Q_OBJECT

public:
    static constexpr qint64 kPieceSize = 4096;
    static constexpr int kConnectTimeoutMs = 10000;
    static constexpr int kStallTimeoutMs = 30000; // no byte taken by the camera for this long
    static constexpr int kAnswerWaitMs = 5000;    // a rebooting camera may never answer

    // `target` without file name and size: they are taken from `path`.
    UploadJob(const UploadTarget &target, const QString &path, QObject *parent = nullptr);

    // Opens the file and connects; `finished` follows exactly once.
    void start();

signals:
    void progress(qint64 fileBytesSent, qint64 fileSize);
    // `sent` when the whole request went out and the camera did not refuse it.
    void finished(bool sent, const QString &error);

private:
    void startStream();
    void onBytesWritten(qint64 count);
    bool sendNextPiece();
    void onReadyRead();
    void onSocketError();
    void onTimeout();
    void finish(bool sent, const QString &error);

    enum class Phase { Idle, Connecting, Streaming, AwaitingAnswer, Done };

    UploadTarget target;
    QFile file;
    QTcpSocket socket;
    QTimer watchdog;
    UploadRequest request;
    Phase phase = Phase::Idle;
    qint64 written = 0;     // head and file bytes the socket has sent
    qint64 fileLeft = 0;    // file bytes not yet handed to the socket
    qint64 streamBytes = 0; // head and file together
};

// The first line of an HTTP answer judged: empty when it says 2xx, else a
// printable description of it for the user.
QString uploadAnswerProblem(const QByteArray &statusLine);

} // namespace veltor
