#include "auth/usercheckdialog.h"

#include "auth/credentialcheck.h"
#include "discovery/protocolconstants.h"
#include "ui_usercheckdialog.h"

#include <QMessageBox>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

namespace {

const char kButtonStyle[] =
    "QPushButton{ font-family:'Microsoft YaHei';height:25px;font-size:12px;color:0;"
    "background-color:#ffffff;border-radius:3px;border:1px;font-weight:bold;}";

} // namespace

userCheckDialog::userCheckDialog(QWidget *parent) : QDialog(parent), ui(new Ui::userCheckDialog)
{
    ui->setupUi(this);
    ui->pass->setEchoMode(QLineEdit::Password);
    setWindowIcon(QIcon(QStringLiteral(":images/about.ico")));
    setStyleSheet(QStringLiteral("background-color:#dcdcdc"));
    ui->userok->setStyleSheet(QLatin1String(kButtonStyle));
    ui->usercancel->setStyleSheet(QLatin1String(kButtonStyle));
}

userCheckDialog::~userCheckDialog()
{
    delete ui;
}

void userCheckDialog::setData(QStringList cameraData)
{
    cameraIp = cameraData.value(0);
    cameraPort = cameraData.value(1);
    cameraFamily = cameraData.value(2);
}

void userCheckDialog::setNetwork(QString address)
{
    localAddress = address;
}

void userCheckDialog::done(int result)
{
    if (manager)
        manager->disconnect(this);
    QDialog::done(result);
}

void userCheckDialog::on_userok_clicked()
{
    userName = ui->user->text();
    password = ui->pass->text();
    // The previous manager's answer, if any is still coming, no longer counts.
    if (manager)
        manager->disconnect(this);
    manager = new QNetworkAccessManager(this);
    connect(manager, &QNetworkAccessManager::finished, this, &userCheckDialog::replyFinished);
    QNetworkRequest request(
        veltor::credentialCheckUrl(cameraIp, cameraPort, cameraFamily, userName, password));
    // A camera that never answers must end in the timeout path, not a hang.
    request.setTransferTimeout(veltor::kCredentialCheckTimeoutMs);
    if (veltor::sameSubnet24(cameraIp, localAddress)) {
        ui->userok->setEnabled(false);
        veltor::getOutcomeOnly(manager, request);
        return;
    }
    QMessageBox::critical(this, tr("Authentication"),
                          tr("Username and password can not be checked, changes might be invalid"));
    deliver();
}

void userCheckDialog::on_usercancel_clicked()
{
    close();
}

void userCheckDialog::replyFinished(QNetworkReply *reply)
{
    reply->deleteLater();
    ui->userok->setEnabled(true);
    const QNetworkReply::NetworkError error = reply->error();
    // Qt reports its own transfer timeout as a cancel; nothing else cancels this request.
    if (error == QNetworkReply::TimeoutError || error == QNetworkReply::OperationCanceledError) {
        QMessageBox::critical(this, tr("Authentication"),
                              tr("Timeout, username and password could not be checked"));
        deliver();
    } else if (error != QNetworkReply::NoError) {
        QMessageBox::critical(this, tr("Authentification"),
                              tr("Your username or password is not correct!"));
    } else {
        deliver();
    }
}

void userCheckDialog::deliver()
{
    emit sendData(QStringList{userName, password, cameraPort, cameraFamily});
    close();
}
