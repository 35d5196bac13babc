#pragma once

#include <QDialog>
#include <QStringList>

class QNetworkAccessManager;
class QNetworkReply;

namespace Ui {
class userCheckDialog;
}

// Asks for a camera's user name and password, checks them against the
// camera's CGI and hands them back through sendData: user, password, port,
// family. A timeout or a camera outside the PC's /24 still hands them back
// (unverified); a refused check keeps the dialog open for another try.
class userCheckDialog : public QDialog
{
    Q_OBJECT

public:
    explicit userCheckDialog(QWidget *parent = nullptr);
    ~userCheckDialog() override;

    // [0] camera IP, [1] HTTP port, [2] family.
    void setData(QStringList cameraData);
    // The PC's address on the interface chosen for the search.
    void setNetwork(QString address);

    // A check still running when the dialog closes must not deliver afterwards.
    void done(int result) override;

signals:
    void sendData(QStringList credentials);

private slots:
    void on_userok_clicked();
    void on_usercancel_clicked();
    void replyFinished(QNetworkReply *reply);

private:
    void deliver();

    Ui::userCheckDialog *ui;
    QNetworkAccessManager *manager = nullptr;
    QString cameraFamily;
    QString cameraIp;
    QString cameraPort;
    QString userName;
    QString password;
    QString localAddress;
};
