#include "harness.h"

#include "app/mainwindow.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPushButton>
#include <QTableWidget>
#include <QTextStream>
#include <QTimer>

Harness::Harness(MainWindow *window, const QVector<camsimfleet::Camera> &fleet)
    : window(window), fleet(fleet)
{
    for (const camsimfleet::Camera &camera : fleet)
        haisi = camera.family == QLatin1String("Haisi") ? camera : haisi;
    window->findChild<QComboBox *>(QStringLiteral("wifiComboBox"))
        ->setCurrentText(qEnvironmentVariable("VELTOR_TOOL_IP"));
    searchTable = window->findChild<QTableWidget *>(QStringLiteral("tableWidgetSearch_4"));
    // Whatever the tool says in a box, the run goes on.
    auto *closer = new QTimer(window);
    QObject::connect(closer, &QTimer::timeout, [this] { closeBoxes(); });
    closer->start(100);
}

void Harness::answerLogin()
{
    QWidget *dialog = QApplication::activeModalWidget();
    auto *ok = dialog ? dialog->findChild<QPushButton *>(QStringLiteral("userok")) : nullptr;
    if (!ok || dialog == answeredDialog)
        return;
    answeredDialog = dialog;
    dialog->findChild<QLineEdit *>(QStringLiteral("user"))->setText(login.first);
    dialog->findChild<QLineEdit *>(QStringLiteral("pass"))->setText(login.second);
    // Queued: a timer's slot does not run again while it waits in a nested loop.
    QMetaObject::invokeMethod(ok, "click", Qt::QueuedConnection);
}

void Harness::closeBoxes()
{
    answerLogin();
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        auto *box = qobject_cast<QMessageBox *>(widget);
        if (box && box->isVisible() && !box->buttons().isEmpty()) {
            boxes << box->text();
            // The default answer: "Ok" of a question, the only button of a notice.
            QAbstractButton *button =
                box->defaultButton() ? box->defaultButton() : box->buttons().first();
            QMetaObject::invokeMethod(button, "click", Qt::QueuedConnection);
        }
    }
}

QByteArray Harness::get(const camsimfleet::Camera &camera, const QString &pathAndQuery,
                        int timeoutMs)
{
    QNetworkAccessManager manager;
    QNetworkRequest request(QUrl(
        QStringLiteral("http://%1:%2%3").arg(camera.ip).arg(camera.httpPort).arg(pathAndQuery)));
    request.setTransferTimeout(timeoutMs);
    QNetworkReply *reply = manager.get(request);
    waitFor([reply] { return reply->isFinished(); }, timeoutMs + 1000);
    const QByteArray body = reply->readAll();
    delete reply;
    return body;
}

bool Harness::waitFor(const std::function<bool()> &done, int timeoutMs)
{
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > timeoutMs)
            return false;
        QEventLoop loop;
        QTimer::singleShot(20, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return true;
}

void Harness::search()
{
    QMetaObject::invokeMethod(window, "on_searchButton_clicked");
}

int Harness::row(const QString &ip) const
{
    for (int row = 0; row < searchTable->rowCount(); ++row) {
        if (searchTable->item(row, 1) && searchTable->item(row, 1)->text() == ip)
            return row;
    }
    return -1;
}

bool Harness::unlock(const camsimfleet::Camera &camera, const char *clickSlot)
{
    login = {camera.user, camera.password};
    // A new search locks every camera again, so that the dialog is shown.
    search();
    waitFor([] { return false; }, 3000);
    const QObject *before = answeredDialog;
    if (row(camera.ip) < 0)
        return false; // the search did not find it again
    // Queued: the dialog's exec() must not block this function.
    QMetaObject::invokeMethod(window, clickSlot, Qt::QueuedConnection, Q_ARG(int, row(camera.ip)),
                              Q_ARG(int, 1));
    return waitFor([&] { return answeredDialog != before && !QApplication::activeModalWidget(); },
                   10000);
}

Outcome Harness::begin(const QString &scenario)
{
    boxes.clear();
    stall.reset();
    Outcome outcome;
    outcome.scenario = scenario;
    QTextStream(stderr) << "hostile-matrix: " << scenario << '\n';
    return outcome;
}

void Harness::end(Outcome *outcome)
{
    outcome->stallMs = stall.longestStallMs();
    outcome->rssKb = peakRssKb();
}
