#include "app/mainwindow.h"

#include "auth/usercheckdialog.h"
#include "ui_mainwindow.h"

// The camera chosen on the IP Conf., Update and SD Card tabs: its fields from
// the replies of the last search, its credentials and its lock, shared by the
// three tabs so that a camera unlocked on one is open on all.

veltor::StoredCamera MainWindow::storedCamera(const QString &ip)
{
    return veltor::findStoredCamera(
        winbondReplies, hdsReplies, ip,
        [this](const QString &hex, const QString &key) { return WinbondDataHandle(hex, key); });
}

void MainWindow::showStoredCamera(const veltor::StoredCamera &camera)
{
    // A camera missing from the stored replies leaves the form as it was.
    if (camera.family.isEmpty())
        return;
    cameraFamily = camera.family;
    cameraPort = camera.port;
    for (QLineEdit *edit : {ui->ipFixEdit, ui->ipaddress})
        edit->setText(camera.ip);
    ui->iplabel->setText(camera.ip);
    ui->ipFixSd->setText(camera.ip);
    ui->subnet->setText(camera.subnet);
    ui->gateway->setText(camera.gateway);
    ui->dns->setText(camera.dns);
    ui->httpport->setText(camera.port);
    if (camera.dhcp == QLatin1String("0") || camera.dhcp == QLatin1String("1"))
        ui->dhcpCheckbox->setChecked(camera.dhcp == QLatin1String("1"));
    ui->versionEdit->setText(veltor::versionForKind(camera, ui->selectBox->currentIndex()));

    // Setting the box runs its toggled slot, which must not open the address
    // fields of a camera that is still locked.
    if (lockState.value(camera.ip) == QLatin1String("unlock"))
        on_dhcpCheckbox_toggled(ui->dhcpCheckbox->isChecked());
    else
        checkIpLock(camera.ip);
}

void MainWindow::askCredentials(const QString &ip, void (MainWindow::*receiver)(QStringList))
{
    auto *dialog = new userCheckDialog(this);
    dialog->setNetwork(getNetwork());
    dialog->setData(QStringList{ip, cameraPort, cameraFamily});
    dialog->setWindowTitle(tr("Authentication required"));
    dialog->setWindowFlags(Qt::Window | Qt::WindowCloseButtonHint);
    connect(dialog, &userCheckDialog::sendData, this, receiver);
    dialog->exec();
    // Typed credentials should not linger in a hidden dialog.
    dialog->deleteLater();
}

void MainWindow::acceptCredentials(const QString &ip, const QStringList &cameraStatus)
{
    veltor::storeLogin(&cameraCredentials, ip, cameraStatus);
    lockState.insert(ip, QStringLiteral("unlock"));
    // Opens every camera control on all tabs; the address fields follow the DHCP box.
    checkIpLock(ip);
    on_dhcpCheckbox_toggled(ui->dhcpCheckbox->isChecked());
    requestSdCardStatus(ip);
}

void MainWindow::requestSdCardStatus(const QString &ip)
{
    const veltor::CameraLogin login = newestLogin(ip);
    sdInfoCache.clear();
    postSdCardStatus(ip, login.user, login.password, login.port);
}

veltor::CameraLogin MainWindow::newestLogin(const QString &ip) const
{
    return veltor::newestLogin(cameraCredentials, ip);
}
