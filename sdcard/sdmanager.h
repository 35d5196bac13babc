#pragma once

#include "sdcard/sdrequest.h"

#include <QColor>
#include <QStringList>
#include <QVector>
#include <QWidget>
#include <functional>

class QNetworkAccessManager;
class QNetworkReply;
class QTableWidgetItem;

namespace Ui {
class sdmanager;
}

// The SD card browser of one camera: three listing levels ("first": day
// folders, "second": their sub-folders, "third": files), a picture preview,
// download of ticked entries and formatting. Implementation:
//   sdcard/sdmanager.cpp           listings, table, clicks, preview, back
//   sdcard/sdmanager_download.cpp  download, select/deselect, format, sleep
class sdmanager : public QWidget
{
    Q_OBJECT

public:
    explicit sdmanager(QWidget *parent = nullptr);
    ~sdmanager() override;

    // [ip, port, password, user]; requests the root listing.
    void setData(QStringList data);
    void setRowColor(int row, QColor background, QColor text);
    void setNetworkPic(QString name);

    void myprocedure();
    void downloadedFolder();
    void getFolder(QString name, int mode);
    // True when the whole file arrived and was written.
    bool downloadFile(QString const &url, QString const &directory);
    void doFormatRequest();
    void sleep(unsigned int milliseconds);

    // Source of the download directory; the directory dialog by default.
    void setDirectoryChooser(std::function<QString(QWidget *)> chooser);

public slots:
    void getSdCardMountedReply(QNetworkReply *reply);
    void getSdCardfolderReply(QNetworkReply *reply);
    void getSdCardfileReply(QNetworkReply *reply);
    void mycellsdClicked(int row, int column);
    void mycellfileClicked(int row, int column);
    void mycellsdDoubleClicked(int row, int column);
    // A download's folder and sub-folder listings as they finish: a failed
    // one is told at once (the walk itself goes on with the rest).
    void getfolderReply(QNetworkReply *reply);
    void getfileReply(QNetworkReply *reply);
    void sdFormatReply(QNetworkReply *reply);

    void on_back_clicked();
    void on_download_clicked();
    void on_format_clicked();
    void on_selectallBtn_clicked();
    void on_deselectallBtn_clicked();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    using ReplySlot = void (sdmanager::*)(QNetworkReply *);
    // Keeps the window alive while one of its nested waits runs; a close in
    // the meantime deletes it once the outermost wait has returned.
    class BusyScope
    {
    public:
        explicit BusyScope(sdmanager *owner);
        ~BusyScope();

    private:
        sdmanager *owner;
    };

    QNetworkReply *requestListing(const QString &path, ReplySlot slot);
    bool listingBody(QNetworkReply *reply, QByteArray *body);
    void setFolderColumns();
    void showRows(const QVector<QStringList> &rows, bool withSize);
    void setLevelButtons(bool inFolder);
    QTableWidgetItem *checkItem(int row, int column) const;
    void toggleCheck(int row, int column);
    QStringList tickedNames(int column) const;
    void setAllChecks(Qt::CheckState state, const char *failureText);
    void hidePreview();

    void setDownloadBusy(bool busy);
    void downloadTickedFiles();
    void reportDownload(const QString &successText);

    Ui::sdmanager *ui;
    veltor::SdCamera camera;
    QString level;
    QString firstFolder;
    QString secondFolder;
    QString selectedFileName;
    QString selectedFileSize;
    int hoveredRow = -1;
    QVector<QStringList> rootRows;
    QVector<QStringList> folderRows;
    // File and picture transfers share it, so files of one folder reuse the connection.
    QNetworkAccessManager *manager;

    QString downloadBase;
    QString localFolder;
    QString localSubFolder;
    QString downloadFolderA;
    QString downloadFolderB;
    // What a download could not fetch, named in its final message.
    QStringList failures;
    std::function<QString(QWidget *)> chooseDirectory;

    int busyDepth = 0;
    bool closeRequested = false;
};
