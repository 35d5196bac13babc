// A camera's web server answering badly: the SD status request and the
// credential check.
#include "scenarios.h"

#include "app/mainwindow.h"

#include <QApplication>
#include <QLabel>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPushButton>
#include <QSet>
#include <QTableWidget>
#include <QTimer>

namespace {

constexpr int kPatienceMs = 15000;
constexpr int kCheckMs = 6000;

QWidget *openLoginDialog()
{
    QWidget *modal = QApplication::activeModalWidget();
    return modal && modal->findChild<QPushButton *>(QStringLiteral("userok")) ? modal : nullptr;
}

QString labels(const MainWindow *window)
{
    QStringList texts;
    for (const char *name : {"totalMenorySize", "UsedMemorySize", "leftMemorySize"})
        texts << window->findChild<QLabel *>(QLatin1String(name))->text();
    return texts.join(QLatin1Char('/'));
}

} // namespace

void judge(Outcome *outcome, qint64 rssBeforeKb, qint64 maxGrowthKb)
{
    constexpr qint64 kFrozenMs = 200; // the longest the window may keep input waiting
    const qint64 growth = peakRssKb() - rssBeforeKb;
    if (outcome->stallMs > kFrozenMs && outcome->result == QLatin1String("ok"))
        outcome->fail(QStringLiteral("window stalled over %1 ms").arg(kFrozenMs));
    if (growth > maxGrowthKb && outcome->result == QLatin1String("ok"))
        outcome->fail(QStringLiteral("peak memory grew by %1 MiB").arg(growth / 1024));
}

Outcome sdStatus(Harness &harness, const QString &mode)
{
    const camsimfleet::Camera &camera = harness.haisi;
    harness.get(camera, QStringLiteral("/camsim/hostile?mode=") + mode);
    const qint64 rssBefore = peakRssKb();
    Outcome outcome = harness.begin(QStringLiteral("SD status: ") + mode);
    const auto before = harness.window->findChildren<QNetworkAccessManager *>();
    harness.window->postSdCardStatus(camera.ip, camera.user, camera.password,
                                     QString::number(camera.httpPort));
    bool finished = false;
    for (QNetworkAccessManager *manager : harness.window->findChildren<QNetworkAccessManager *>()) {
        if (before.contains(manager))
            continue;
        QObject::connect(manager, &QNetworkAccessManager::finished, [&](QNetworkReply *reply) {
            finished = true;
            outcome.note = reply->error() ? reply->errorString() : labels(harness.window);
        });
    }
    if (!Harness::waitFor([&] { return finished; }, kPatienceMs))
        outcome.note = QStringLiteral("still waiting after %1 s").arg(kPatienceMs / 1000);
    harness.end(&outcome);
    judge(&outcome, rssBefore, 32 * 1024);
    harness.get(camera, QStringLiteral("/camsim/hostile?mode=off"));
    return outcome;
}

Outcome credentials(Harness &harness, const QString &mode)
{
    const camsimfleet::Camera &camera = harness.haisi;
    harness.get(camera, QStringLiteral("/camsim/hostile?mode=") + mode);
    const qint64 rssBefore = peakRssKb();
    Outcome outcome = harness.begin(QStringLiteral("credential check: ") + mode);
    harness.login = {camera.user, camera.password};
    // A new search locks every camera again, so that the dialog is shown.
    harness.search();
    Harness::waitFor([] { return false; }, 3000);
    if (harness.row(camera.ip) < 0)
        outcome.fail(QStringLiteral("camera not listed by the search"));
    // Queued: the dialog's exec() must not block this function.
    QMetaObject::invokeMethod(harness.window, "mycellClickedSdmanager", Qt::QueuedConnection,
                              Q_ARG(int, harness.row(camera.ip)), Q_ARG(int, 1));
    // The dialog's exec() runs inside the wait below; a timer ends it.
    bool stillOpen = false;
    QTimer::singleShot(kCheckMs, [&] {
        QWidget *dialog = openLoginDialog();
        stillOpen = dialog != nullptr;
        if (dialog)
            QMetaObject::invokeMethod(dialog, "reject", Qt::QueuedConnection);
    });
    Harness::waitFor([] { return false; }, kCheckMs + 1000);
    Harness::waitFor([] { return !openLoginDialog(); }, 5000);
    outcome.note = harness.boxes.join(QStringLiteral("; "));
    if (stillOpen)
        outcome.note += QStringLiteral(" dialog still open after %1 s").arg(kCheckMs / 1000);
    harness.end(&outcome);
    judge(&outcome, rssBefore, 32 * 1024);
    harness.get(camera, QStringLiteral("/camsim/hostile?mode=off"));
    return outcome;
}
