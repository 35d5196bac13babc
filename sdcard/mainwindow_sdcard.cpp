#include "app/mainwindow.h"

#include "discovery/protocolconstants.h"
#include "sdcard/sdmanager.h"
#include "sdcard/sdrequest.h"
#include "sdcard/sdstatus.h"
#include "ui_mainwindow.h"

#include <QMessageBox>
#include <QNetworkAccessManager>
#include <QNetworkReply>

QString MainWindow::getSDCardDataHandle(QString text)
{
    return veltor::quotedValue(text);
}

void MainWindow::mycellClickedSdmanager(int row, int column)
{
    highlightClickedRow(ui->tableWidgetSearch_4, row, column);
    const QTableWidgetItem *ipItem = ui->tableWidgetSearch_4->item(row, 1);
    const QString ip = ipItem ? ipItem->text() : QString();
    checkIpLock(ip);
    const veltor::StoredCamera camera = storedCamera(ip);
    if (camera.family == QLatin1String(veltor::kWinbondFamily)) {
        sdStatusMessage = tr("VGA-Cameras do not support SD cards");
        // A card confirmed for the camera selected before is not this one's:
        // Show Files must give the message, not open the other camera's card.
        sdNeedsCheck = true;
        return;
    }
    showStoredCamera(camera);
    if (lockState.value(ip) == QLatin1String("lock")) {
        for (QLabel *label : {ui->totalMenorySize, ui->leftMemorySize, ui->UsedMemorySize})
            label->clear();
        askCredentials(ip, &MainWindow::receiveCamSdCard);
    } else {
        requestSdCardStatus(ip);
    }
}

void MainWindow::receiveCamSdCard(QStringList cameraStatus)
{
    acceptCredentials(ui->ipFixSd->text(), cameraStatus);
}

void MainWindow::postSdCardStatus(QString ip, QString user, QString password, QString port)
{
    auto *manager = new QNetworkAccessManager(this);
    connect(manager, &QNetworkAccessManager::finished, this, &MainWindow::checkSdCardMountedReply);
    connect(manager, &QNetworkAccessManager::finished, manager, &QObject::deleteLater);
    const veltor::SdCamera camera{ip, port, user, password};
    // The timeout makes a silent camera end in the error path rather than never.
    veltor::sdGet(manager, camera.statusUrl(), veltor::kSdStatusTimeoutMs,
                  veltor::kSdStatusMaxBytes);
}

void MainWindow::checkSdCardMountedReply(QNetworkReply *reply)
{
    if (reply->error() != QNetworkReply::NoError) {
        sdStatusMessage = tr("Could not retrieve SD card information");
        return;
    }
    // Filed under the camera selected now, which may not be the one asked.
    const QString key = ui->ipFixSd->text();
    const veltor::SdStatus status = veltor::parseSdStatus(reply->read(veltor::kSdStatusMaxBytes));
    const veltor::SdSizeLabels labels = veltor::sdSizeLabels(status);
    ui->totalMenorySize->setText(labels.total);
    ui->leftMemorySize->setText(labels.free);
    ui->UsedMemorySize->setText(labels.used);
    for (const QLabel *label : {ui->totalMenorySize, ui->leftMemorySize, ui->UsedMemorySize})
        sdInfoCache.insert(key, label->text());
    if (!status.ready()) {
        sdStatusMessage = tr("No SD card detected");
        checkIpLock(key);
    } else {
        sdNeedsCheck = false;
    }
}

void MainWindow::on_viewFilesBtn_clicked()
{
    const QString key = ui->ipFixSd->text();
    if (sdNeedsCheck) {
        QMessageBox::information(this, tr("Message"), sdStatusMessage, QMessageBox::Ok);
    } else {
        const veltor::CameraLogin login = newestLogin(key);
        auto *browser = new sdmanager;
        browser->setData({key, login.port, login.password, login.user});
        browser->setWindowTitle(tr("SD Card Information"));
        browser->setWindowFlags(Qt::Tool | Qt::WindowCloseButtonHint);
        browser->setWindowModality(Qt::ApplicationModal);
        browser->show();
    }
    sdNeedsCheck = true;
    mycellClickedSdmanager(lastClickedRow, 0);
}
