#include "ipconfharness.h"

#include "app/mainwindow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QNetworkInterface>
#include <QPushButton>
#include <QRegularExpression>
#include <QTableWidget>
#include <QTimer>

BoxRecorder::BoxRecorder(QObject *parent) : QObject(parent), poll(new QTimer(this))
{
    connect(poll, &QTimer::timeout, this, [this] {
        QWidget *modal = QApplication::activeModalWidget();
        if (modal && modal->isVisible() && !modal->property("answered").toBool())
            answer(modal);
    });
    poll->start(10);
}

void BoxRecorder::answer(QWidget *modal)
{
    if (auto *box = qobject_cast<QMessageBox *>(modal)) {
        box->setProperty("answered", true);
        titles << box->windowTitle();
        texts << box->text();
        QAbstractButton *button = box->defaultButton();
        if (!button && !box->buttons().isEmpty())
            button = box->buttons().first();
        if (button)
            button->click();
        return;
    }
    auto *ok = modal->findChild<QPushButton *>(QStringLiteral("userok"));
    if (ok && !ok->isEnabled())
        return; // a check is running; its answer comes first
    if (!modal->property("seen").toBool()) {
        modal->setProperty("seen", true);
        dialogTitles << modal->windowTitle();
    }
    if (dialogActions.isEmpty()) {
        modal->setProperty("answered", true);
        if (auto *dialog = qobject_cast<QDialog *>(modal))
            dialog->reject();
        return;
    }
    dialogActions.takeFirst()(modal);
}

QString secondsAsN(const QString &text)
{
    return QString(text).replace(QRegularExpression(QStringLiteral("\\b\\d+ s\\b")),
                                 QStringLiteral("N s"));
}

std::function<void(QWidget *)> typeCredentials(const QString &user, const QString &password)
{
    return [user, password](QWidget *dialog) {
        dialog->findChild<QLineEdit *>(QStringLiteral("user"))->setText(user);
        dialog->findChild<QLineEdit *>(QStringLiteral("pass"))->setText(password);
        dialog->findChild<QPushButton *>(QStringLiteral("userok"))->click();
    };
}

bool sendingIsHermetic(QString *why)
{
    if (!qEnvironmentVariableIsSet("VELTOR_PRIVATE_NETNS")) {
        *why = QStringLiteral("not in the private network namespace of run-in-netns.sh");
        return false;
    }
    for (const QNetworkInterface &iface : QNetworkInterface::allInterfaces()) {
        if (!(iface.flags() & QNetworkInterface::IsLoopBack)) {
            *why = QStringLiteral("interface %1 could reach other machines").arg(iface.name());
            return false;
        }
    }
    return true;
}

void prepareCamera(MainWindow *window, const QString &ip, const QString &mac,
                   const QStringList &credentials)
{
    auto *table = window->findChild<QTableWidget *>(QStringLiteral("tableWidgetSearch_2"));
    table->setRowCount(1);
    table->setItem(0, 1, new QTableWidgetItem(ip));
    table->setItem(0, 3, new QTableWidgetItem(mac));
    window->findChild<QLineEdit *>(QStringLiteral("ipFixEdit"))->setText(ip);
    QMetaObject::invokeMethod(window, "receiveCamConfIp", Q_ARG(QStringList, credentials));
}

void fillForm(MainWindow *window, bool dhcp, const QString &port, const QStringList &addresses)
{
    window->findChild<QCheckBox *>(QStringLiteral("dhcpCheckbox"))->setChecked(dhcp);
    window->findChild<QLineEdit *>(QStringLiteral("httpport"))->setText(port);
    const char *names[] = {"ipaddress", "subnet", "gateway", "dns"};
    for (int i = 0; i < 4; ++i)
        window->findChild<QLineEdit *>(QLatin1String(names[i]))->setText(addresses.value(i));
}
