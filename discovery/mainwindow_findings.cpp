#include "app/mainwindow.h"

#include "discovery/rowmarkers.h"
#include "discovery/searchsummary.h"
#include "ui_mainwindow.h"

#include <QLabel>
#include <QStatusBar>
#include <QTimer>

namespace {

// Long enough for a burst's slices to end, short enough to feel immediate.
constexpr int kFindingsDelayMs = 100;

QString subnetText(const veltor::SearchInterface &chosen)
{
    return chosen.address.toString() % QLatin1Char('/') %
           QString::number(veltor::prefixLength(chosen.netmask));
}

} // namespace

void MainWindow::noteListedCamera(const veltor::DeviceRecord &record, const char *family,
                                  const QHostAddress &source)
{
    heardCameras.add(veltor::SeenCamera{record, QLatin1String(family), {}, source, {}, {}});
}

void MainWindow::forgetFindings()
{
    heardCameras.clear();
    rowMarkers->clear();
    summaryDue = false;
    if (searchSummary)
        searchSummary->clear();
}

void MainWindow::scheduleFindings()
{
    if (!findingsTimer) {
        findingsTimer = new QTimer(this);
        findingsTimer->setSingleShot(true);
        findingsTimer->setInterval(kFindingsDelayMs);
        connect(findingsTimer, &QTimer::timeout, this, &MainWindow::refreshFindings);
    }
    findingsTimer->start();
}

// The interface searched on; one the host no longer has still names its address.
veltor::SearchInterface MainWindow::chosenInterface()
{
    const QHostAddress address(getNetwork());
    return veltor::interfaceWithAddress(address).value_or(
        veltor::SearchInterface{QString(), address, {}, {}, 0});
}

QStringList MainWindow::rowMacs() const
{
    QStringList macs;
    const QTableWidget *table = ui->tableWidgetSearch_1;
    macs.reserve(table->rowCount());
    for (int row = 0; row < table->rowCount(); ++row) {
        const QTableWidgetItem *mac = table->item(row, 3);
        macs << (mac ? mac->text() : QString());
    }
    return macs;
}

void MainWindow::refreshFindings()
{
    if (findingsTimer)
        findingsTimer->stop();
    const veltor::SearchInterface chosen = chosenInterface();
    rowMarkers->post(heardCameras.reflag(chosen), [this, chosen](const veltor::SeenCamera &camera) {
        return findingsToolTip(camera, chosen);
    });
    if (summaryDue)
        writeSearchSummary(chosen);
}

// What is wrong and what to do; a row without findings has neither marker
// nor tooltip, so a tooltip always means "look here".
QString MainWindow::findingsToolTip(const veltor::SeenCamera &camera,
                                    const veltor::SearchInterface &chosen) const
{
    QStringList lines;
    for (const QString &finding : camera.findings) {
        if (finding == QLatin1String(veltor::kFindingIpConflict))
            lines << tr("Another camera claims %1 too: give one of them another address.")
                         .arg(camera.record.ip);
        else if (finding == QLatin1String(veltor::kFindingOtherSubnet))
            lines << tr("On another subnet than %1: change its address first.")
                         .arg(subnetText(chosen));
        else if (finding == QLatin1String(veltor::kFindingSourceDiffers))
            lines << tr("The reply came from %1, not from the address it claims.")
                         .arg(camera.source.toString());
    }
    return lines.join(QLatin1Char('\n'));
}

void MainWindow::showSearchSummary()
{
    summaryDue = true;
    refreshFindings();
}

void MainWindow::writeSearchSummary(const veltor::SearchInterface &chosen)
{
    const QString where = chosen.name.isEmpty() ? subnetText(chosen) : interfaceText(chosen);
    const veltor::FleetSummary counts = veltor::summarizeFleet(heardCameras.listed(rowMacs()));
    if (counts.cameras() == 0) {
        searchSummary->setText(
            tr("No camera answered on %1. Usual causes: a firewall dropping UDP ports 10000 or "
               "8002, the wrong interface (choose another one below the tables), cameras on "
               "another subnet behind a router.")
                .arg(where));
        return;
    }
    searchSummary->setText(
        tr("Cameras found: %1 (Winbond %2, Haisi %3); need attention: %4 (marked rows); "
           "interface %5")
            .arg(counts.cameras())
            .arg(counts.winbond)
            .arg(counts.haisi)
            .arg(counts.needAttention)
            .arg(where));
}
