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
            QMetaObject::invokeMethod(box->buttons().first(), "click", Qt::QueuedConnection);
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
