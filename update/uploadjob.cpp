#include "update/uploadjob.h"

#include <QFileInfo>
#include <algorithm>

namespace veltor {

namespace {

constexpr int kLongestStatusLine = 200;

// A hostile camera's words reach a terminal: control characters are dropped.
QString printable(const QByteArray &bytes)
{
    QString text = QString::fromUtf8(bytes.left(kLongestStatusLine)).trimmed();
    for (QChar &c : text) {
        if (!c.isPrint())
            c = QLatin1Char('?');
    }
    return text;
}

// Winbond credentials travel unescaped in the request line, where a blank
// or line break would end it early.
bool fitsRequestLine(const QString &text)
{
    return std::none_of(text.cbegin(), text.cend(), [](QChar c) {
        return c.isSpace() || c.category() == QChar::Other_Control;
    });
}

} // namespace

QString uploadAnswerProblem(const QByteArray &statusLine)
{
    const QList<QByteArray> words = statusLine.trimmed().split(' ');
    if (words.size() >= 2 && words.at(0).startsWith("HTTP/") && words.at(1).size() == 3 &&
        words.at(1).startsWith('2'))
        return QString();
    if (statusLine.trimmed().isEmpty())
        return QStringLiteral("the camera answered with an empty line");
    return QStringLiteral("the camera refused the file: \"%1\"").arg(printable(statusLine));
}

UploadJob::UploadJob(const UploadTarget &target, const QString &path, QObject *parent)
    : QObject(parent), target(target), file(path)
{
    watchdog.setSingleShot(true);
    connect(&watchdog, &QTimer::timeout, this, &UploadJob::onTimeout);
    connect(&socket, &QTcpSocket::connected, this, &UploadJob::startStream);
    connect(&socket, &QTcpSocket::bytesWritten, this, &UploadJob::onBytesWritten);
    connect(&socket, &QTcpSocket::readyRead, this, &UploadJob::onReadyRead);
    connect(&socket, &QTcpSocket::errorOccurred, this, &UploadJob::onSocketError);
}

void UploadJob::start()
{
    if (!file.open(QIODevice::ReadOnly)) {
        finish(false,
               QStringLiteral("cannot read %1: %2").arg(file.fileName(), file.errorString()));
        return;
    }
    target.fileName = QFileInfo(file.fileName()).fileName();
    target.fileSize = file.size();
    if (target.family == QLatin1String(kWinbondFamily) &&
        !(fitsRequestLine(target.user) && fitsRequestLine(target.password))) {
        finish(false, QStringLiteral("the user name or password holds a blank or control "
                                     "character, which a Winbond camera's upload request "
                                     "cannot carry"));
        return;
    }
    request = buildUploadRequest(target);
    if (!request.isValid()) {
        finish(
            false,
            QStringLiteral("no upload request for a camera of family \"%1\"").arg(target.family));
        return;
    }
    phase = Phase::Connecting;
    watchdog.start(kConnectTimeoutMs);
    socket.connectToHost(target.ip, target.port.toUShort());
}

void UploadJob::startStream()
{
    phase = Phase::Streaming;
    fileLeft = target.fileSize;
    streamBytes = request.head.size() + target.fileSize;
    watchdog.start(kStallTimeoutMs);
    socket.write(request.head);
}

void UploadJob::onBytesWritten(qint64 count)
{
    if (phase != Phase::Streaming)
        return;
    watchdog.start(kStallTimeoutMs);
    written += count;
    emit progress(qMax<qint64>(0, written - request.head.size()), target.fileSize);
    if (fileLeft > 0 && !sendNextPiece()) {
        finish(false, QStringLiteral("cannot read %1 to its end").arg(file.fileName()));
        return;
    }
    // The trailer only once every file byte has left: the camera's parser
    // looks for the closing line right behind the last one.
    if (fileLeft < 1 && written >= streamBytes) {
        phase = Phase::AwaitingAnswer;
        socket.write(request.trailer);
        watchdog.start(kAnswerWaitMs);
    }
}

bool UploadJob::sendNextPiece()
{
    const QByteArray piece = file.read(qMin(fileLeft, kPieceSize));
    if (piece.isEmpty())
        return false;
    const qint64 taken = socket.write(piece);
    if (taken < 0)
        return false;
    fileLeft -= taken;
    return true;
}

void UploadJob::onReadyRead()
{
    if (phase != Phase::AwaitingAnswer && phase != Phase::Streaming)
        return;
    if (!socket.canReadLine() && socket.bytesAvailable() < kLongestStatusLine)
        return;
    const QString problem = uploadAnswerProblem(socket.readLine(kLongestStatusLine));
    // An answer before the end means the camera gave up on the request.
    if (problem.isEmpty() && phase == Phase::Streaming)
        finish(false, QStringLiteral("the camera answered before the file was complete"));
    else
        finish(problem.isEmpty(), problem);
}

void UploadJob::onSocketError()
{
    // A camera that restarts at once drops the connection after the last byte.
    if (phase == Phase::AwaitingAnswer &&
        socket.error() == QAbstractSocket::RemoteHostClosedError) {
        finish(true, QString());
        return;
    }
    if (phase != Phase::Done)
        finish(false, socket.errorString());
}

void UploadJob::onTimeout()
{
    switch (phase) {
    case Phase::Connecting:
        finish(false, QStringLiteral("no connection to %1:%2").arg(target.ip, target.port));
        break;
    case Phase::Streaming:
        finish(false, QStringLiteral("the camera stopped taking data"));
        break;
    case Phase::AwaitingAnswer:
        finish(true, QString()); // silence after the whole file: it is restarting
        break;
    case Phase::Idle:
    case Phase::Done:
        break;
    }
}

void UploadJob::finish(bool sent, const QString &error)
{
    if (phase == Phase::Done)
        return;
    phase = Phase::Done;
    watchdog.stop();
    file.close();
    socket.abort();
    emit finished(sent, error);
}

} // namespace veltor
