#include "sdcard/sdmanager.h"

#include "sdcard/sdlisting.h"
#include "sdcard/sdtransfer.h"
#include "ui_sdmanager.h"

#include <QCloseEvent>
#include <QFileDialog>
#include <QHeaderView>
#include <QMessageBox>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPixmap>

namespace {

const char kButtonStyle[] =
    "QPushButton{ font-family:'Microsoft YaHei';font-size:12px;color:0;"
    "background-color:#ffffff;border-radius:3px;border:1px;font-weight:bold;}";
const char kHeaderStyle[] = "QHeaderView::section {background-color:#fdfdfd;color: black;"
                            "padding:3px 3px;border: 1px solid #d5d5d5;border-right:none;}";
const QColor kNameColor(0, 0, 255);
const QColor kHoverColor(73, 178, 235);
const QColor kOddRowColor(245, 245, 245);
const QColor kEvenRowColor(255, 255, 255);

QString defaultDirectory(QWidget *parent)
{
    return QFileDialog::getExistingDirectory(
        parent, sdmanager::tr("Open Directory"), QStringLiteral("/home"),
        QFileDialog::ShowDirsOnly | QFileDialog::DontResolveSymlinks);
}

} // namespace

sdmanager::BusyScope::BusyScope(sdmanager *owner) : owner(owner)
{
    ++owner->busyDepth;
}

sdmanager::BusyScope::~BusyScope()
{
    if (--owner->busyDepth == 0 && owner->closeRequested)
        owner->deleteLater();
}

sdmanager::sdmanager(QWidget *parent)
    : QWidget(parent), ui(new Ui::sdmanager), manager(new QNetworkAccessManager),
      chooseDirectory(defaultDirectory)
{
    ui->setupUi(this);
    setWindowIcon(QIcon(QStringLiteral(":images/about.ico")));
    setStyleSheet(QStringLiteral("background-color:#dcdcdc"));
    for (QPushButton *button : {ui->download, ui->format, ui->selectallBtn, ui->deselectallBtn})
        button->setStyleSheet(QLatin1String(kButtonStyle));
    ui->tableShowSdInfo->horizontalHeader()->setStyleSheet(QLatin1String(kHeaderStyle));
    for (QWidget *hidden :
         {static_cast<QWidget *>(ui->imgShow), static_cast<QWidget *>(ui->fileNameShow),
          static_cast<QWidget *>(ui->fileSizeShow), static_cast<QWidget *>(ui->back),
          static_cast<QWidget *>(ui->selectallBtn), static_cast<QWidget *>(ui->deselectallBtn)})
        hidden->hide();
    connect(ui->tableShowSdInfo, &QTableWidget::cellEntered, this, &sdmanager::mycellsdClicked);
    connect(ui->tableShowSdInfo, &QTableWidget::cellClicked, this, &sdmanager::mycellfileClicked);
    connect(ui->tableShowSdInfo, &QTableWidget::cellDoubleClicked, this,
            &sdmanager::mycellsdDoubleClicked);
}

sdmanager::~sdmanager()
{
    delete manager;
    delete ui;
}

void sdmanager::setDirectoryChooser(std::function<QString(QWidget *)> chooser)
{
    chooseDirectory = std::move(chooser);
}

void sdmanager::closeEvent(QCloseEvent *event)
{
    // The window is created without owner; it goes when closed, but not under
    // the feet of a transfer that is still waiting inside one of its functions.
    event->accept();
    if (busyDepth > 0)
        closeRequested = true;
    else
        deleteLater();
}

void sdmanager::setData(QStringList data)
{
    camera.ip = data.value(0);
    camera.port = data.value(1);
    camera.password = data.value(2);
    camera.user = data.value(3);
    requestListing(QString(), &sdmanager::getSdCardMountedReply);
}

QNetworkReply *sdmanager::requestListing(const QString &path, ReplySlot slot)
{
    auto *listingManager = new QNetworkAccessManager(this);
    connect(listingManager, &QNetworkAccessManager::finished, this, slot);
    connect(listingManager, &QNetworkAccessManager::finished, listingManager,
            &QObject::deleteLater);
    return veltor::sdGet(listingManager, camera.sdUrl(path), veltor::kSdListingTimeoutMs,
                         veltor::kSdListingMaxBytes);
}

bool sdmanager::listingBody(QNetworkReply *reply, QByteArray *body)
{
    if (reply->error() != QNetworkReply::NoError) {
        QMessageBox::critical(this, tr("Request error"),
                              tr("Could not retrieve SD card information"), QMessageBox::Ok);
        return false;
    }
    *body = reply->readAll();
    return true;
}

void sdmanager::getSdCardMountedReply(QNetworkReply *reply)
{
    QByteArray body;
    if (!listingBody(reply, &body))
        return;
    rootRows.clear();
    for (const veltor::SdEntry &entry : veltor::parseSdListing(body, veltor::SdLevel::Root))
        rootRows.append({entry.name, entry.time, QString()});
    showRows(rootRows, false);
    level = QStringLiteral("first");
    setLevelButtons(false);
}

void sdmanager::getSdCardfolderReply(QNetworkReply *reply)
{
    QByteArray body;
    if (!listingBody(reply, &body))
        return;
    folderRows.clear();
    for (const veltor::SdEntry &entry : veltor::parseSdListing(body, veltor::SdLevel::Folder))
        folderRows.append({entry.name, entry.time, QString()});
    showRows(folderRows, false);
    level = QStringLiteral("second");
    setLevelButtons(true);
}

void sdmanager::getSdCardfileReply(QNetworkReply *reply)
{
    QByteArray body;
    if (!listingBody(reply, &body))
        return;
    QVector<QStringList> rows;
    const auto entries = veltor::parseSdListing(body, veltor::SdLevel::SubFolder, secondFolder);
    for (const veltor::SdEntry &entry : entries)
        rows.append({entry.name, entry.time, entry.size});
    showRows(rows, true);
    level = QStringLiteral("third");
    setLevelButtons(true);
}

void sdmanager::setLevelButtons(bool inFolder)
{
    ui->back->setVisible(inFolder);
    ui->selectallBtn->setVisible(inFolder);
    ui->deselectallBtn->setVisible(inFolder);
}

void sdmanager::setFolderColumns()
{
    QTableWidget *table = ui->tableShowSdInfo;
    table->setColumnCount(3);
    table->setHorizontalHeaderLabels({tr("File Name"), tr("Modified Time"), tr("state")});
    table->setColumnWidth(1, 180);
    table->setColumnWidth(2, 180);
}

void sdmanager::showRows(const QVector<QStringList> &rows, bool withSize)
{
    QTableWidget *table = ui->tableShowSdInfo;
    table->clear();
    table->setRowCount(0);
    hoveredRow = -1;
    if (withSize) {
        table->setColumnCount(4);
        table->setHorizontalHeaderLabels(
            {tr("File Name"), tr("Modified Time"), tr("Size"), tr("state")});
        table->setColumnWidth(2, 80);
        table->setColumnWidth(3, 80);
    } else {
        setFolderColumns();
    }
    const int columns = table->columnCount();
    for (const QStringList &texts : rows) {
        const int row = table->rowCount();
        table->insertRow(row);
        for (int c = 0; c + 1 < columns; ++c)
            table->setItem(row, c, new QTableWidgetItem(texts.value(c)));
        table->item(row, 0)->setForeground(kNameColor);
        // Editable only: the click handlers tick the box, not the user directly.
        auto *box = new QTableWidgetItem;
        box->setFlags(Qt::ItemIsEditable);
        box->setCheckState(Qt::Unchecked);
        table->setItem(row, columns - 1, box);
    }
}

QTableWidgetItem *sdmanager::checkItem(int row, int column) const
{
    return ui->tableShowSdInfo->item(row, column);
}

void sdmanager::toggleCheck(int row, int column)
{
    if (QTableWidgetItem *box = checkItem(row, column))
        box->setCheckState(box->checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked);
}

void sdmanager::mycellsdDoubleClicked(int row, int /*column*/)
{
    const QTableWidgetItem *item = ui->tableShowSdInfo->item(row, 0);
    if (!item)
        return;
    if (level == QLatin1String("first")) {
        firstFolder = item->text();
        requestListing(firstFolder, &sdmanager::getSdCardfolderReply);
    } else if (level == QLatin1String("second")) {
        secondFolder = item->text();
        requestListing(firstFolder + secondFolder, &sdmanager::getSdCardfileReply);
    }
    // A file at level "third" has nothing below it: nothing happens.
}

void sdmanager::mycellfileClicked(int row, int /*column*/)
{
    QTableWidget *table = ui->tableShowSdInfo;
    if (level == QLatin1String("first")) {
        // One day folder at a time.
        for (int r = 0; r < table->rowCount(); ++r) {
            if (QTableWidgetItem *box = checkItem(r, 2))
                box->setCheckState(r == row ? Qt::Checked : Qt::Unchecked);
        }
    } else if (level == QLatin1String("second")) {
        toggleCheck(row, 2);
    } else if (level == QLatin1String("third")) {
        const QTableWidgetItem *name = table->item(row, 0);
        const QTableWidgetItem *size = table->item(row, 2);
        selectedFileName = name ? name->text() : QString();
        selectedFileSize = size ? size->text() : QString();
        if (selectedFileName.contains(QLatin1String("jpg"))) {
            ui->imgShow->show();
            setNetworkPic(selectedFileName);
        }
        ui->fileNameShow->setText(selectedFileName);
        ui->fileSizeShow->setText(selectedFileSize);
        toggleCheck(row, 3);
    } else {
        QMessageBox::critical(
            this, tr("Error"),
            tr("Unexpected Error: Wrong parameters occured in sdmanager f: mycellfileClicked"),
            QMessageBox::Ok);
    }
}

void sdmanager::setRowColor(int row, QColor background, QColor text)
{
    QTableWidget *table = ui->tableShowSdInfo;
    for (int c = 0; c < table->columnCount(); ++c) {
        if (QTableWidgetItem *item = table->item(row, c)) {
            item->setBackground(background);
            item->setForeground(text);
        }
    }
}

void sdmanager::mycellsdClicked(int row, int column)
{
    setRowColor(hoveredRow, hoveredRow % 2 ? kOddRowColor : kEvenRowColor, Qt::black);
    hoveredRow = row;
    const QTableWidgetItem *item = ui->tableShowSdInfo->item(row, column);
    if (item && !item->isSelected() && !item->text().isEmpty())
        setRowColor(row, kHoverColor, Qt::white);
}

void sdmanager::setNetworkPic(QString name)
{
    BusyScope busy(this);
    const QUrl url = camera.sdUrl(firstFolder + secondFolder + name);
    const QByteArray body =
        veltor::fetchBody(manager, url, veltor::kSdListingTimeoutMs, veltor::kSdPictureMaxBytes);
    if (closeRequested)
        return;
    QPixmap picture;
    picture.loadFromData(body);
    if (!picture.isNull())
        picture =
            picture.scaled(ui->imgShow->size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    ui->imgShow->setPixmap(picture);
}

void sdmanager::hidePreview()
{
    ui->imgShow->hide();
    ui->fileNameShow->hide();
    ui->fileSizeShow->hide();
}

void sdmanager::on_back_clicked()
{
    if (level == QLatin1String("third")) {
        showRows(folderRows, false);
        level = QStringLiteral("second");
    } else if (level == QLatin1String("second")) {
        showRows(rootRows, false);
        setLevelButtons(false);
        level = QStringLiteral("first");
    } else {
        // Nothing above the root: the table keeps its rows.
        setFolderColumns();
    }
    hidePreview();
}
