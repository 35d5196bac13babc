#include "app/mainwindow.h"

#include "ui_mainwindow.h"
#include "update/uploadrequest.h"

#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QTcpSocket>

// The firmware upload stream: the hand-built request head in one write, then
// the file in pieces of `uploadChunkSize`, one per bytesWritten signal, so a
// large image never sits in memory; the camera's answer is not read.

void MainWindow::startTransfer()
{
    const QString ip = ui->iplabel->text();
    const veltor::CameraLogin login = newestLogin(ip);
    const QString path = ui->fileEdit->text();
    delete localFile;
    localFile = new QFile(path, this);
    if (path.isEmpty()) {
        failUpload(tr("Please choose a file!"));
        return;
    }
    if (!localFile->open(QIODevice::ReadOnly)) {
        failUpload(tr("An error occured while trying to open the file!"));
        return;
    }
    totalBytes = localFile->size();
    bytesToWrite = totalBytes;
    fileName = QFileInfo(path).fileName();

    veltor::UploadTarget target;
    target.family = login.family;
    target.port = login.port;
    target.password = login.password;
    target.user = login.user;
    target.kind = ui->selectBox->currentIndex();
    target.ip = ip;
    target.fileName = fileName;
    target.fileSize = totalBytes;
    const veltor::UploadRequest request = veltor::buildUploadRequest(target);
    // An unknown family writes nothing, so no bytesWritten ever starts the file.
    if (request.isValid()) {
        uploadTrailer = request.trailer;
        tcpClient->write(request.head);
    }

    // Modal on purpose: its event loop keeps the socket's signals, and so the
    // stream, going while the user reads it.
    QMessageBox::information(
        this, tr("Camera rebooting!"),
        tr("The camera is rebooting now! Please wait a few minutes and search again!"));
    outBlock.clear();
}

void MainWindow::failUpload(const QString &text)
{
    QMessageBox::critical(this, tr("Error"), text);
    ui->updateSubmit->setEnabled(true);
}

void MainWindow::updateClientProgress(qint64 numBytes)
{
    // A closing socket still reports its last flushes; the upload is over then.
    if (!localFile || !tcpClient->isOpen())
        return;
    bytesWritten += numBytes;
    if (bytesToWrite < 1) {
        localFile->close();
    } else if (!sendNextPiece()) {
        qWarning("Firmware upload stopped: the file could not be read to its end");
        localFile->close();
        tcpClient->abort();
        ui->updateSubmit->setEnabled(true);
        return;
    }
    // bytesWritten counts the head as well, totalBytes the file only. The
    // second test keeps a head longer than one piece (long credentials) from
    // sending the trailer before the file's last piece.
    if (bytesWritten >= totalBytes && bytesToWrite < 1)
        endUpload();
}

bool MainWindow::sendNextPiece()
{
    outBlock = localFile->read(qMin(bytesToWrite, uploadChunkSize));
    if (outBlock.isEmpty())
        return false;
    const qint32 taken = qint32(tcpClient->write(outBlock));
    outBlock.clear();
    if (taken < 0)
        return false;
    bytesToWrite -= taken;
    return true;
}

void MainWindow::endUpload()
{
    tcpClient->write(uploadTrailer);
    localFile->close();
    // close() flushes what is still buffered before the connection goes.
    tcpClient->close();
}

void MainWindow::displayError(QAbstractSocket::SocketError)
{
    tcpClient->close();
    if (localFile)
        localFile->close();
}
