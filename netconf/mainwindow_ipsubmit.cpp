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

} // namespace

void MainWindow::on_dhcpsubmit_clicked()
{
    if (pendingChange)
        return; // the previous change's credential check has not answered yet
    const QString ip = ui->ipFixEdit->text();
    const ConfigChange change{ip, macOfCamera(ip), newestLogin(ip), formSettings(*ui)};
    const veltor::SubmitCheck check =
        veltor::firstFailedCheck(change.settings, change.login.family);
    if (check != veltor::SubmitCheck::Passed) {
        QMessageBox::critical(this, tr("Error"), veltor::submitCheckMessage(check));
        return;
    }
    if (!configFits(change))
        return;
    // A camera outside the PC's /24 cannot be asked over HTTP: the change goes
    // out unchecked, and the next search shows the result.
    if (!veltor::sameSubnet24(ip, getNetwork())) {
        sendConfiguration(change);
        return;
    }
    pendingChange = change;
    checkBeforeSending(change);
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

// False, after its message, for a family that takes no settings or Winbond
// fields that do not fit the datagram.
bool MainWindow::configFits(const ConfigChange &change)
{
    const veltor::CameraLogin &login = change.login;
    if (login.family == QLatin1String(veltor::kHaisiFamily))
        return true;
    if (login.family != QLatin1String(veltor::kWinbondFamily))
        return false;
    const veltor::WinbondFieldProblem problem =
        veltor::checkWinbondFields(change.mac, login.user, login.password);
    if (problem == veltor::WinbondFieldProblem::None)
        return true;
    QMessageBox::critical(this, tr("Error"), veltor::winbondFieldMessage(problem));
    return false;
}

void MainWindow::sendConfiguration(const ConfigChange &change)
{
    const veltor::CameraLogin &login = change.login;
    if (login.family == QLatin1String(veltor::kWinbondFamily)) {
        broadcastSender->writeDatagram(
            veltor::winbondConfigDatagram(change.mac, login.user, login.password, change.settings),
            QHostAddress(QLatin1String(veltor::kBroadcastAddress)), veltor::kBinarySearchPort);
        return;
    }
    const QString deviceId = deviceIds.value(change.mac);
    const QHostAddress group(QLatin1String(veltor::kHdsGroup));
    const auto send = [&](const QByteArray &body) {
        multicastSender->writeDatagram(
            veltor::hdsCmdRequest(getSeqNum(), login.user, login.password, deviceId, body), group,
            veltor::kHdsPort);
    };
    send(veltor::netconfBody(change.settings, change.mac));
    if (!change.settings.port.isEmpty())
        send(veltor::httpPortBody(change.settings.port));
}

// The configuration goes out over UDP and is never answered, and a camera may
// take it on at once, moving its web server away. So the credentials are
// checked first, at the old address; that reply drives ipConf, which sends
// the change only when they were accepted.
void MainWindow::checkBeforeSending(const ConfigChange &change)
{
    const veltor::CameraLogin &login = change.login;
    if (!configManager)
        configManager = new QNetworkAccessManager(this);
    QNetworkRequest request(veltor::credentialCheckUrl(change.ip, login.port, login.family,
                                                       login.user, login.password));
    request.setTransferTimeout(veltor::kCredentialCheckTimeoutMs);
    QNetworkReply *reply = veltor::getOutcomeOnly(configManager, request);
    connect(reply, &QNetworkReply::finished, this, [this, reply] { ipConf(reply); });
}

void MainWindow::ipConf(QNetworkReply *reply)
{
    reply->deleteLater();
    if (!pendingChange)
        return;
    const ConfigChange change = *std::exchange(pendingChange, std::nullopt);
    if (reply->error() != QNetworkReply::NoError) {
        QMessageBox::critical(this, tr("Error"), tr("Your request has failed, retry please!"));
        return;
    }
    const veltor::CameraLogin &login = change.login;
    changeWatch.emplace(change.mac, login.family,
                        veltor::expectedSettings(change.settings, login.family));
    changeWatch->skipStored(winbondReplies, hdsReplies);
    sendConfiguration(change);
    if (login.family == QLatin1String(veltor::kWinbondFamily)) {
        WinbondRebootProgressBar();
        return;
    }
    QNetworkReply *reboot = veltor::getOutcomeOnly(
        configManager, QNetworkRequest(veltor::cameraUrl(
                           change.ip, login.port, QStringLiteral("/reboot.cgi?user="), login.user,
                           QStringLiteral("&pwd="), login.password)));
    connect(reboot, &QNetworkReply::finished, reboot, &QObject::deleteLater);
    QMessageBox::information(this, tr("Camera rebooting"),
                             tr("The camera is rebooting now, please wait for a moment!"));
    HaisiRebootProgressBar();
}

QByteArray MainWindow::WinbondtoHex(QString value, QString key)
{
    return veltor::winbondToHex(value, key);
}

QByteArray MainWindow::MactoHex(QString mac)
{
    return veltor::macToHex(mac);
}
