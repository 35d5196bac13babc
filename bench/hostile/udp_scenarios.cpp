// Garbage and floods of datagrams from the cameras' side during a search.
#include "scenarios.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTableWidget>

namespace {

constexpr int kSettleMs = 2500;
constexpr int kFlood = 1000; // made-up cameras in the flood

int sent(const QByteArray &answer)
{
    return QJsonDocument::fromJson(answer).object().value(QStringLiteral("sent")).toInt();
}

} // namespace

Outcome udpSizes(Harness &harness)
{
    const qint64 rssBefore = peakRssKb();
    Outcome outcome = harness.begin(QStringLiteral("UDP garbage 0..65507 B to 10000/8002"));
    harness.search();
    const int count = sent(harness.get(harness.haisi, QStringLiteral("/camsim/hostile?udp=sizes")));
    Harness::waitFor([] { return false; }, kSettleMs);
    const int rows = harness.searchTable->rowCount();
    outcome.note = QStringLiteral("%1 datagrams, %2 rows").arg(count).arg(rows);
    if (count == 0)
        outcome.fail(QStringLiteral("nothing was sent"));
    else if (rows != harness.fleet.size())
        outcome.fail(QStringLiteral("%1 rows for %2 cameras").arg(rows).arg(harness.fleet.size()));
    harness.end(&outcome);
    judge(&outcome, rssBefore, 64 * 1024);
    return outcome;
}

Outcome replyFlood(Harness &harness)
{
    const qint64 rssBefore = peakRssKb();
    Outcome outcome = harness.begin(QStringLiteral("10000 replies/s for 5 s, 1/5 garbage"));
    harness.search();
    const int count = sent(harness.get(
        harness.haisi, QStringLiteral("/camsim/hostile?udp=flood&rate=10000&seconds=5")));
    Harness::waitFor([] { return false; }, kSettleMs);
    const int rows = harness.searchTable->rowCount();
    outcome.note = QStringLiteral("%1 datagrams, %2 rows").arg(count).arg(rows);
    if (count == 0)
        outcome.fail(QStringLiteral("nothing was sent"));
    else if (rows < harness.fleet.size() || rows > harness.fleet.size() + kFlood)
        outcome.fail(QStringLiteral("%1 rows for %2 cameras and %3 made-up ones")
                         .arg(rows)
                         .arg(harness.fleet.size())
                         .arg(kFlood));
    harness.end(&outcome);
    judge(&outcome, rssBefore, 128 * 1024);
    return outcome;
}
