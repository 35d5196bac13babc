#include "ipconfharness.h"

#include "app/mainwindow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QNetworkInterface>
#include <QPushButton>
#include <QTableWidget>
#include <QTimer>

BoxRecorder::BoxRecorder(QObject *parent) : QObject(parent), poll(new QTimer(this))
{
    connect(poll, &QTimer::timeout, this, [this] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box || !box->isVisible() || box->property("recorded").toBool())
            return;
        box->setProperty("recorded", true);
        titles << box->windowTitle();
        texts << box->text();
        QAbstractButton *button = box->defaultButton();
        if (!button && !box->buttons().isEmpty())
            button = box->buttons().first();
        if (button)
            button->click();
    });
    poll->start(10);
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
