#include "app/mainwindow.h"

#include "auth/usercheckdialog.h"
#include "sdcard/sdmanager.h"
#include "sdcard/sdrequest.h"
#include "sdcard/sdstatus.h"
#include "ui_mainwindow.h"

#include <QMessageBox>
#include <QNetworkAccessManager>
#include <QNetworkReply>

namespace {

// Where a Winbond search reply (hex text) holds the camera's address.
constexpr int kWinbondIpHexOffset = 114;
constexpr int kWinbondIpHexLength = 8;

} // namespace

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
    if (ip.isEmpty())
        return;
    if (isWinbondCamera(ip)) {
        sdStatusMessage = tr("VGA-Cameras do not support SD cards");
        // A card confirmed for the camera selected before is not this one's:
        // Show Files must give the message, not open the other camera's card.
        sdNeedsCheck = true;
        return;
    }
    // The other tabs show the camera as the IP Conf. tab would.
    const bool known = fillFromHdsReply(ip);
    if (known)
        lockAddressFields(ip);
    if (lockState.value(ip) != QLatin1String("unlock")) {
        for (QLabel *label : {ui->totalMenorySize, ui->leftMemorySize, ui->UsedMemorySize})
            label->clear();
        // A camera missing from the stored replies keeps the port of its row.
        const QTableWidgetItem *portItem = ui->tableWidgetSearch_4->item(row, 2);
        openSdCredentialDialog(ip, known || !portItem ? cameraPort : portItem->text());
        return;
    }
    sdInfoCache.clear();
    const QStringList credentials = cameraCredentials.values(ip); // newest first
    postSdCardStatus(ip, credentials.value(3), credentials.value(2), credentials.value(1));
}

bool MainWindow::isWinbondCamera(const QString &ip)
{
    for (int i = 1; i < winbondReplies.size(); ++i) {
        const QString hex = winbondReplies.at(i).mid(kWinbondIpHexOffset, kWinbondIpHexLength);
        if (WinbondDataHandle(hex, QStringLiteral("ip")) == ip)
            return true;
    }
    return false;
}

void MainWindow::lockAddressFields(const QString &ip)
{
    if (lockState.value(ip) == QLatin1String("unlock")) {
        on_dhcpCheckbox_toggled(ui->dhcpCheckbox->isChecked());
        return;
    }
    for (QWidget *control :
         {static_cast<QWidget *>(ui->dhcpCheckbox), static_cast<QWidget *>(ui->ipaddress),
          static_cast<QWidget *>(ui->subnet), static_cast<QWidget *>(ui->gateway),
          static_cast<QWidget *>(ui->dns)})
        control->setEnabled(false);
}

void MainWindow::openSdCredentialDialog(const QString &ip, const QString &port)
{
    auto *dialog = new userCheckDialog(this);
    dialog->setNetwork(getNetwork());
    dialog->setData({ip, port, QStringLiteral("Haisi")});
    dialog->setWindowTitle(tr("Authentication required"));
    dialog->setWindowFlags(Qt::Window | Qt::WindowCloseButtonHint);
    connect(dialog, &userCheckDialog::sendData, this, &MainWindow::receiveCamSdCard);
    dialog->exec();
}

void MainWindow::receiveCamSdCard(QStringList cameraStatus)
{
    const QString key = ui->ipFixSd->text();
    for (int i = 0; i < 4; ++i)
        cameraCredentials.insert(key, cameraStatus.value(i));
    lockState.insert(key, QStringLiteral("unlock"));
    // checkIpLock opens every control of an unlocked camera but the address
    // fields, which follow the DHCP box.
    checkIpLock(key);
    on_dhcpCheckbox_toggled(ui->dhcpCheckbox->isChecked());
    postSdCardStatus(key, cameraStatus.value(0), cameraStatus.value(1), cameraStatus.value(2));
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
        const QStringList credentials = cameraCredentials.values(key); // newest first
        auto *browser = new sdmanager;
        browser->setData({key, credentials.value(1), credentials.value(2), credentials.value(3)});
        browser->setWindowTitle(tr("SD Card Information"));
        browser->setWindowFlags(Qt::Tool | Qt::WindowCloseButtonHint);
        browser->setWindowModality(Qt::ApplicationModal);
        browser->show();
    }
    sdNeedsCheck = true;
    mycellClickedSdmanager(lastClickedRow, 0);
}
