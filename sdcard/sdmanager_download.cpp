#include "sdcard/sdmanager.h"

#include "app/loaddialog.h"
#include "discovery/eventwait.h"
#include "discovery/protocolconstants.h"
#include "sdcard/sdfolderdownload.h"
#include "sdcard/sdlisting.h"
#include "ui_sdmanager.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>

namespace {

const char kBusyStyle[] =
    "QPushButton{ font-family:'Microsoft YaHei';font-size:12px;color:#fff;"
    "background-color:#ce771c;border-radius:3px;border:none;font-weight:bold;}";
const char kIdleStyle[] =
    "QPushButton{ font-family:'Microsoft YaHei';font-size:12px;color:#fff;"
    "background-color:#ffa03e;border-radius:3px;border:none;font-weight:bold;}";
constexpr unsigned kListingPauseMs = 1000;
constexpr int kFailuresListed = 20;

} // namespace

void sdmanager::on_download_clicked()
{
    myprocedure();
}

void sdmanager::myprocedure()
{
    localFolder.clear();
    localSubFolder.clear();
    if (QMessageBox::question(this, tr("Download"), tr("Do you want to download these files?"),
                              QMessageBox::Ok | QMessageBox::Cancel,
                              QMessageBox::Ok) != QMessageBox::Ok)
        return;
    const QString chosen = chooseDirectory(this);
    if (chosen.isEmpty()) {
        QMessageBox::critical(this, tr("Download"), tr("Please choose "));
        return;
    }
    downloadBase = chosen + QLatin1Char('/') +
                   QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMddhhmmss"));
    if (QDir(downloadBase).exists()) {
        QMessageBox::warning(this, tr("New directory"), tr("This directory already exists"));
        return;
    }
    if (!QDir().mkdir(downloadBase)) {
        QMessageBox::critical(this, tr("New directory"), tr("Failed to create a new directory"));
        return;
    }
    failures.clear();
    if (level == QLatin1String("first") || level == QLatin1String("second"))
        downloadedFolder();
    else if (level == QLatin1String("third"))
        downloadTickedFiles();
    else
        QMessageBox::critical(this, tr("Error"),
                              tr("Unexpected error: Wrong parameters in sdmanager: procedure"));
}

void sdmanager::setDownloadBusy(bool busy)
{
    ui->download->setText(busy ? tr("Please wait! Downloading...") : tr("Download"));
    ui->download->setStyleSheet(QLatin1String(busy ? kBusyStyle : kIdleStyle));
    // No second download may start inside the waits of the first.
    ui->download->setEnabled(!busy);
    ui->format->setEnabled(!busy);
}

QStringList sdmanager::tickedNames(int column) const
{
    QStringList names;
    const QTableWidget *table = ui->tableShowSdInfo;
    for (int row = 0; row < table->rowCount(); ++row) {
        const QTableWidgetItem *box = table->item(row, column);
        const QTableWidgetItem *name = table->item(row, 0);
        if (box && box->checkState() == Qt::Checked && name && !name->text().isEmpty())
            names.append(name->text());
    }
    return names;
}

void sdmanager::downloadTickedFiles()
{
    BusyScope busy(this);
    setDownloadBusy(true);
    auto *busyDialog = new loadDialog(this);
    busyDialog->show();
    // Taken before the first wait: browsing on meanwhile must not change what is fetched.
    const QString folder = firstFolder + secondFolder;
    for (const QString &name : tickedNames(3))
        downloadFile(camera.sdUrl(folder + name).toString(QUrl::FullyEncoded), downloadBase);
    setDownloadBusy(false);
    busyDialog->close();
    busyDialog->deleteLater();
    reportDownload(tr("Download successful!"));
}

void sdmanager::downloadedFolder()
{
    BusyScope busy(this);
    window()->setEnabled(false);
    auto *busyDialog = new loadDialog(this);
    busyDialog->show();
    setDownloadBusy(true);
    const int mode = level == QLatin1String("first") ? 1 : 2;
    for (const QString &name : tickedNames(2)) {
        localFolder = downloadBase + QLatin1Char('/') + veltor::sdLocalName(name);
        getFolder(name, mode);
        sleep(kListingPauseMs);
    }
    // Unlike the first camera tool, success is only reported once every listing
    // and file of the download has arrived.
    setDownloadBusy(false);
    busyDialog->close();
    busyDialog->deleteLater();
    reportDownload(tr("Download Successful!"));
    window()->setEnabled(true);
}

void sdmanager::getFolder(QString name, int mode)
{
    if (mode != 1 && mode != 2)
        return;
    veltor::SdFolderDownload walk(manager, camera);
    walk.onListing = [this](QNetworkReply *reply, veltor::SdLevel listed) {
        if (listed == veltor::SdLevel::Folder)
            getfolderReply(reply);
        else
            getfileReply(reply);
    };
    if (mode == 1) {
        downloadFolderA = name;
        walk.fetchFolder(name, downloadBase);
    } else {
        // The folder being browsed, not one left over from an earlier download:
        // the ticked sub-folder lies there.
        downloadFolderA = firstFolder;
        downloadFolderB = name;
        walk.fetchSubFolder(downloadFolderA, downloadFolderB, downloadBase);
    }
    failures << walk.failures;
}

void sdmanager::getfolderReply(QNetworkReply *reply)
{
    if (reply->error() != QNetworkReply::NoError)
        QMessageBox::critical(this, tr("Request error"), tr("Download error! Try again!"));
}

void sdmanager::getfileReply(QNetworkReply *reply)
{
    if (reply->error() != QNetworkReply::NoError)
        QMessageBox::critical(this, tr("Request error"), tr("Download error!Try again!"));
}

bool sdmanager::downloadFile(QString const &url, QString const &directory)
{
    BusyScope busy(this);
    veltor::SdFolderDownload one(manager, camera);
    const bool arrived = one.fetchFile(QUrl(url), directory);
    failures << one.failures;
    return arrived;
}

void sdmanager::reportDownload(const QString &successText)
{
    if (failures.isEmpty()) {
        QMessageBox::information(this, tr("Download"), successText);
        return;
    }
    QStringList listed = failures.mid(0, kFailuresListed);
    if (failures.size() > kFailuresListed)
        listed << tr("... and %1 more").arg(failures.size() - kFailuresListed);
    failures.clear();
    QMessageBox::critical(
        this, tr("Download"),
        tr("These files or folders were not downloaded:\n%1").arg(listed.join(QLatin1Char('\n'))));
}

void sdmanager::setAllChecks(Qt::CheckState state, const char *failureText)
{
    int column = -1;
    if (level == QLatin1String("second"))
        column = 2;
    else if (level == QLatin1String("third"))
        column = 3;
    if (column < 0) {
        QMessageBox::critical(this, tr("Error"), tr(failureText));
        return;
    }
    for (int row = 0; row < ui->tableShowSdInfo->rowCount(); ++row) {
        if (QTableWidgetItem *box = checkItem(row, column))
            box->setCheckState(state);
    }
}

void sdmanager::on_selectallBtn_clicked()
{
    setAllChecks(
        Qt::Checked,
        QT_TR_NOOP("Unexpected Error: Wrong parameters in sdmanager:on_selectallBtn_clicked"));
}

void sdmanager::on_deselectallBtn_clicked()
{
    setAllChecks(
        Qt::Unchecked,
        QT_TR_NOOP("Unexpected Error: Wrong parameters in sdmanager:on_delectallBtn_clicked"));
}

void sdmanager::on_format_clicked()
{
    if (QMessageBox::question(this, tr("SD Format"), tr("All files will be lost, are you sure?"),
                              QMessageBox::Ok | QMessageBox::Cancel,
                              QMessageBox::Ok) == QMessageBox::Ok)
        doFormatRequest();
}

void sdmanager::doFormatRequest()
{
    window()->setEnabled(false);
    auto *formatManager = new QNetworkAccessManager(this);
    connect(formatManager, &QNetworkAccessManager::finished, this, &sdmanager::sdFormatReply);
    connect(formatManager, &QNetworkAccessManager::finished, formatManager, &QObject::deleteLater);
    veltor::sdGet(formatManager, camera.formatUrl(), veltor::kSdFormatTimeoutMs,
                  veltor::kSdStatusMaxBytes);
}

void sdmanager::sdFormatReply(QNetworkReply *reply)
{
    if (reply->error() != QNetworkReply::NoError) {
        // The window stays disabled until it is closed, as it always has.
        QMessageBox::critical(this, tr("SD Format"), tr("Unexpected error occured"));
        return;
    }
    QMessageBox::information(this, tr("SD Format"), tr("Success!"));
    window()->setEnabled(true);
    hidePreview();
    for (QWidget *control :
         {ui->download, ui->back, ui->selectallBtn, ui->deselectallBtn, ui->format})
        control->hide();
    ui->tableShowSdInfo->setRowCount(0);
    rootRows.clear();
    folderRows.clear();
}

void sdmanager::sleep(unsigned int milliseconds)
{
    veltor::waitProcessingEvents(milliseconds, veltor::kMaxEventSliceMs);
}
