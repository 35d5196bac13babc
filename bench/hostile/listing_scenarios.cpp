// The SD browser fed listings no camera should send.
#include "scenarios.h"

#include "sdcard/sdmanager.h"

#include <QTableWidget>
#include <memory>

Outcome sdListing(Harness &harness, const QString &mode)
{
    constexpr int kPatienceMs = 30000;
    const camsimfleet::Camera &camera = harness.haisi;
    harness.get(camera, QStringLiteral("/camsim/hostile?mode=") + mode);
    const qint64 rssBefore = peakRssKb();
    Outcome outcome = harness.begin(QStringLiteral("SD listing: ") + mode);
    auto browser = std::make_unique<sdmanager>();
    browser->setData({camera.ip, QString::number(camera.httpPort), camera.user, camera.password});
    auto *list = browser->findChild<QTableWidget *>(QStringLiteral("tableShowSdInfo"));
    if (!Harness::waitFor([&] { return list->rowCount() > 0 || !harness.boxes.isEmpty(); },
                          kPatienceMs))
        outcome.note = QStringLiteral("nothing after %1 s; ").arg(kPatienceMs / 1000);
    outcome.note += QStringLiteral("%1 rows listed").arg(list->rowCount());
    if (!harness.boxes.isEmpty())
        outcome.note += QStringLiteral("; said: ") + harness.boxes.join(QStringLiteral("; "));
    harness.end(&outcome);
    judge(&outcome, rssBefore, 96 * 1024);
    browser.reset();
    harness.get(camera, QStringLiteral("/camsim/hostile?mode=off"));
    return outcome;
}
