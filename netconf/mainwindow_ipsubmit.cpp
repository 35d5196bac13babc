#include "app/mainwindow.h"

#include "auth/cameraurl.h"
#include "auth/credentialcheck.h"
#include "discovery/protocolconstants.h"
#include "netconf/configmessages.h"
#include "netconf/submitchecks.h"
#include "netconf/submitmessages.h"
#include "ui_mainwindow.h"

#include <QMessageBox>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QUdpSocket>

namespace {

veltor::NetworkSettings formSettings(const Ui::MainWindow &ui)
{
    veltor::NetworkSettings settings;
    settings.ip = ui.ipaddress->text();
    settings.subnet = ui.subnet->text();
    settings.gateway = ui.gateway->text();
    settings.dns = ui.dns->text();
    settings.port = ui.httpport->text();
    settings.dhcp = ui.dhcpCheckbox->isChecked();
    return settings;
}

// Tests shorten the reboot wait through this variable; users get the designed timing.
unsigned rebootStep(unsigned designedMs)
{
    bool ok = false;
    const int override = qEnvironmentVariableIntValue("VELTOR_REBOOT_STEP_MS", &ok);
    return ok && override >= 0 ? unsigned(override) : designedMs;
}

} // namespace

void MainWindow::on_dhcpsubmit_clicked()
{
    const QString ip = ui->ipFixEdit->text();
    const veltor::CameraLogin login = newestLogin(ip);
    const veltor::SubmitCheck check = veltor::firstFailedCheck(formSettings(*ui), login.family);
    if (check != veltor::SubmitCheck::Passed) {
        QMessageBox::critical(this, tr("Error"), veltor::submitCheckMessage(check));
        return;
    }
    const QString mac = macOfCamera(ip);
    if (login.family == QLatin1String(veltor::kWinbondFamily)) {
        if (!sendWinbondConfig(mac, login))
            return;
    } else if (login.family == QLatin1String(veltor::kHaisiFamily)) {
        sendHaisiConfig(mac, login);
    } else {
        return;
    }
    confirmConfiguration(ip, login);
}

QString MainWindow::macOfCamera(const QString &ip) const
{
    // The row of the camera shown in the form, even if another tab's click moved
    // the current row since: its MAC addresses the datagram.
    const QTableWidget *table = ui->tableWidgetSearch_2;
    for (int row = 0; row < table->rowCount(); ++row) {
        const QTableWidgetItem *ipItem = table->item(row, 1);
        const QTableWidgetItem *macItem = table->item(row, 3);
        if (ipItem && macItem && ipItem->text() == ip)
            return macItem->text();
    }
    return QString();
}

bool MainWindow::sendWinbondConfig(const QString &mac, const veltor::CameraLogin &login)
{
    const veltor::WinbondFieldProblem problem =
        veltor::checkWinbondFields(mac, login.user, login.password);
    if (problem != veltor::WinbondFieldProblem::None) {
        QMessageBox::critical(this, tr("Error"), veltor::winbondFieldMessage(problem));
        return false;
    }
    const QByteArray datagram =
        veltor::winbondConfigDatagram(mac, login.user, login.password, formSettings(*ui));
    broadcastSender->writeDatagram(datagram, QHostAddress(QLatin1String(veltor::kBroadcastAddress)),
                                   veltor::kBinarySearchPort);
    return true;
}

void MainWindow::sendHaisiConfig(const QString &mac, const veltor::CameraLogin &login)
{
    const veltor::NetworkSettings settings = formSettings(*ui);
    const QString deviceId = deviceIds.value(mac);
    const QHostAddress group(QLatin1String(veltor::kHdsGroup));
    const auto send = [&](const QByteArray &body) {
        multicastSender->writeDatagram(
            veltor::hdsCmdRequest(getSeqNum(), login.user, login.password, deviceId, body), group,
            veltor::kHdsPort);
    };
    send(veltor::netconfBody(settings, mac));
    if (!settings.port.isEmpty())
        send(veltor::httpPortBody(settings.port));
}

// The configuration goes out over UDP and is never answered. To tell the user
// whether it can have worked, the camera is then asked over HTTP, at its old
// address, to check the same credentials; that reply drives ipConf (reboot and
// progress, or "request failed"). A camera outside the PC's /24 cannot be asked:
// the datagram has still gone out, and the next search shows the result.
void MainWindow::confirmConfiguration(const QString &ip, const veltor::CameraLogin &login)
{
    if (!veltor::sameSubnet24(ip, getNetwork()))
        return;
    if (!configManager)
        configManager = new QNetworkAccessManager(this);
    QNetworkRequest request(
        veltor::credentialCheckUrl(ip, login.port, login.family, login.user, login.password));
    request.setTransferTimeout(veltor::kCredentialCheckTimeoutMs);
    QNetworkReply *reply = veltor::getOutcomeOnly(configManager, request);
    connect(reply, &QNetworkReply::finished, this, [this, reply] { ipConf(reply); });
}

void MainWindow::ipConf(QNetworkReply *reply)
{
    reply->deleteLater();
    if (reply->error() != QNetworkReply::NoError) {
        QMessageBox::critical(this, tr("Error"), tr("Your request has failed, retry please!"));
        return;
    }
    const QString ip = ui->ipFixEdit->text();
    const veltor::CameraLogin login = newestLogin(ip);
    if (login.family == QLatin1String(veltor::kWinbondFamily)) {
        WinbondRebootProgressBar();
        return;
    }
    if (!configManager)
        configManager = new QNetworkAccessManager(this);
    QNetworkReply *reboot = veltor::getOutcomeOnly(
        configManager,
        QNetworkRequest(veltor::cameraUrl(ip, login.port, QStringLiteral("/reboot.cgi?user="),
                                          login.user, QStringLiteral("&pwd="), login.password)));
    connect(reboot, &QNetworkReply::finished, reboot, &QObject::deleteLater);
    QMessageBox::information(this, tr("Camera rebooting"),
                             tr("The camera is rebooting now, please wait for a moment!"));
    HaisiRebootProgressBar();
}

void MainWindow::WinbondRebootProgressBar()
{
    rebootProgress(rebootStep(veltor::kWinbondRebootStepMs));
}

void MainWindow::HaisiRebootProgressBar()
{
    rebootProgress(rebootStep(veltor::kHaisiRebootStepMs));
}

void MainWindow::rebootProgress(unsigned stepMs)
{
    // Disabled, not blocked: replies keep arriving while the camera restarts.
    setEnabled(false);
    ui->progressBar->setValue(0);
    sleep(stepMs);
    for (int value = 1; value <= 100; ++value) {
        ui->progressBar->setValue(value);
        sleep(stepMs);
    }
    ui->progressBar->setValue(0);
    // Enabled before the box, so its button can be pressed.
    setEnabled(true);
    QMessageBox::information(this, tr("IP Configure"),
                             tr("IP Config Successful! Please search again!"));
}

QByteArray MainWindow::WinbondtoHex(QString value, QString key)
{
    return veltor::winbondToHex(value, key);
}

QByteArray MainWindow::MactoHex(QString mac)
{
    return veltor::macToHex(mac);
}
