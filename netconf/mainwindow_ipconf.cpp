#include "app/mainwindow.h"

#include "auth/usercheckdialog.h"
#include "discovery/winbondreply.h"
#include "netconf/configmessages.h"
#include "ui_mainwindow.h"

namespace {

// Where the fields the form needs sit in a binary search reply (byte offset, size).
struct WinbondField
{
    const char *key;
    int offset;
    int size;
};
constexpr WinbondField kWinbondIp{"ip", 57, 4};
constexpr WinbondField kWinbondFormFields[] = {
    {"subnet", 61, 4}, {"gateway", 65, 4}, {"dns", 69, 4}, {"port", 86, 1}, {"dhcp", 87, 1}};

QString fieldHex(const QString &replyHex, const WinbondField &field)
{
    return replyHex.mid(field.offset * 2, field.size * 2);
}

} // namespace

void MainWindow::mycellClickedIpConf(int row, int column)
{
    highlightClickedRow(ui->tableWidgetSearch_2, row, column);
    const QTableWidgetItem *ipItem = ui->tableWidgetSearch_2->item(row, 1);
    const QString ip = ipItem ? ipItem->text() : QString();
    checkIpLock(ip);
    // A camera found among the binary replies is a Winbond one, whatever else answered.
    if (!fillFromWinbondReply(ip))
        fillFromHdsReply(ip);

    const QString lock = lockState.value(ip);
    if (lock == QLatin1String("unlock")) {
        on_dhcpCheckbox_toggled(ui->dhcpCheckbox->isChecked());
    } else {
        for (QWidget *field :
             {static_cast<QWidget *>(ui->dhcpCheckbox), static_cast<QWidget *>(ui->ipaddress),
              static_cast<QWidget *>(ui->subnet), static_cast<QWidget *>(ui->gateway),
              static_cast<QWidget *>(ui->dns)})
            field->setEnabled(false);
    }
    if (lock != QLatin1String("lock")) {
        const QStringList credentials = newestCredentials(ip);
        postSdCardStatus(ip, credentials.at(0), credentials.at(1), credentials.at(2));
        return;
    }
    askCredentialsIpConf(ip);
}

bool MainWindow::fillFromWinbondReply(const QString &ip)
{
    // Element 0 is never a camera.
    for (int i = 1; i < winbondReplies.size(); ++i) {
        const QString &reply = winbondReplies.at(i);
        if (reply.size() < veltor::kWinbondReplyMinSize * 2 ||
            WinbondDataHandle(fieldHex(reply, kWinbondIp), QLatin1String(kWinbondIp.key)) != ip)
            continue;
        showCameraAddress(ip);
        QLineEdit *edits[] = {ui->subnet, ui->gateway, ui->dns, ui->httpport};
        for (int f = 0; f < 4; ++f) {
            const WinbondField &field = kWinbondFormFields[f];
            edits[f]->setText(WinbondDataHandle(fieldHex(reply, field), QLatin1String(field.key)));
        }
        cameraPort = ui->httpport->text();
        const WinbondField &dhcp = kWinbondFormFields[4];
        setDhcpBox(WinbondDataHandle(fieldHex(reply, dhcp), QLatin1String(dhcp.key)));
        cameraFamily = QStringLiteral("Winbond");
        return true;
    }
    return false;
}

bool MainWindow::fillFromHdsReply(const QString &ip)
{
    const QString ipLine = QLatin1String("IP=") % ip;
    for (int i = 1; i < hdsReplies.size(); ++i) {
        const QStringList lines = hdsReplies.at(i).split(QStringLiteral("\r\n"));
        if (lines.size() <= 7 || !lines.contains(ipLine))
            continue;
        for (const QString &line : lines) {
            const int eq = line.indexOf(QLatin1Char('='));
            if (eq < 0)
                continue;
            const QStringRef key = line.leftRef(eq);
            const QString value = line.mid(eq + 1);
            if (key == QLatin1String("IP"))
                showCameraAddress(value);
            else if (key == QLatin1String("MASK"))
                ui->subnet->setText(value);
            else if (key == QLatin1String("Gateway"))
                ui->gateway->setText(value);
            else if (key == QLatin1String("Fdns"))
                ui->dns->setText(value);
            else if (key == QLatin1String("Http-Port"))
                ui->httpport->setText(cameraPort = value);
            else if (key == QLatin1String("Dhcp"))
                setDhcpBox(value);
        }
        cameraFamily = QStringLiteral("Haisi");
        return true;
    }
    return false;
}

void MainWindow::showCameraAddress(const QString &ip)
{
    // All three working tabs name the same camera.
    ui->ipaddress->setText(ip);
    ui->ipFixEdit->setText(ip);
    ui->iplabel->setText(ip);
    ui->ipFixSd->setText(ip);
}

void MainWindow::setDhcpBox(const QString &flag)
{
    if (flag == QLatin1String("0"))
        ui->dhcpCheckbox->setChecked(false);
    else if (flag == QLatin1String("1"))
        ui->dhcpCheckbox->setChecked(true);
}

void MainWindow::askCredentialsIpConf(const QString &ip)
{
    auto *dialog = new userCheckDialog(this);
    dialog->setNetwork(getNetwork());
    dialog->setData(QStringList{ip, cameraPort, cameraFamily});
    dialog->setWindowTitle(tr("Authentication required"));
    dialog->setWindowFlags(Qt::Window | Qt::WindowCloseButtonHint);
    connect(dialog, &userCheckDialog::sendData, this, &MainWindow::receiveCamConfIp);
    dialog->exec();
    // Typed credentials should not linger in a hidden dialog.
    dialog->deleteLater();
}

void MainWindow::receiveCamConfIp(QStringList cameraStatus)
{
    const QString key = ui->ipFixEdit->text();
    for (int i = 0; i < 4; ++i)
        cameraCredentials.insert(key, cameraStatus.value(i));
    lockState[key] = QStringLiteral("unlock");
    ui->dhcpCheckbox->setEnabled(true);
    on_dhcpCheckbox_toggled(ui->dhcpCheckbox->isChecked());
    for (QWidget *control :
         {static_cast<QWidget *>(ui->httpport), static_cast<QWidget *>(ui->dhcpsubmit),
          static_cast<QWidget *>(ui->selectBox), static_cast<QWidget *>(ui->fileEdit),
          static_cast<QWidget *>(ui->fileChoose), static_cast<QWidget *>(ui->updateSubmit),
          static_cast<QWidget *>(ui->viewFilesBtn)})
        control->setEnabled(true);
    const QStringList credentials = newestCredentials(key);
    postSdCardStatus(key, credentials.at(0), credentials.at(1), credentials.at(2));
}

QStringList MainWindow::newestCredentials(const QString &ip) const
{
    // Stored one by one, so the newest four read back as family, port, password, user.
    const QStringList newestFirst = cameraCredentials.values(ip);
    return QStringList{newestFirst.value(3), newestFirst.value(2), newestFirst.value(1),
                       newestFirst.value(0)};
}

void MainWindow::on_dhcpCheckbox_toggled(bool checked)
{
    for (QWidget *field : {ui->ipaddress, ui->subnet, ui->gateway, ui->dns})
        field->setEnabled(!checked);
}

void MainWindow::ipConf_right_frame_disable()
{
    // A new search must leave no camera of the earlier list changeable. The box
    // is unchecked first: its toggled slot would enable the address fields again.
    ui->dhcpCheckbox->setChecked(false);
    for (QLineEdit *field : {ui->ipaddress, ui->subnet, ui->gateway, ui->dns, ui->httpport}) {
        field->setEnabled(false);
        field->clear();
    }
    ui->dhcpCheckbox->setEnabled(false);
    ui->dhcpsubmit->setEnabled(false);
    for (QWidget *control :
         {static_cast<QWidget *>(ui->selectBox), static_cast<QWidget *>(ui->fileEdit),
          static_cast<QWidget *>(ui->fileChoose), static_cast<QWidget *>(ui->updateSubmit)})
        control->setEnabled(false);
    ui->selectBox->setCurrentIndex(0);
    ui->versionEdit->clear();
    ui->fileEdit->clear();
    ui->viewFilesBtn->setEnabled(false);
}
