#pragma once

#include "auth/cameralogin.h"
#include "discovery/devicerecord.h"
#include "discovery/fleetmerge.h"
#include "discovery/heardcameras.h"
#include "discovery/listedcameras.h"
#include "discovery/storedcamera.h"
#include "netconf/settingsverify.h"

#include <QAbstractSocket>
#include <QByteArray>
#include <QColor>
#include <QElapsedTimer>
#include <QMainWindow>
#include <QMap>
#include <QMultiMap>
#include <QPair>
#include <QQueue>
#include <QString>
#include <QStringList>
#include <optional>

class QFile;
class QNetworkReply;
class QTableWidget;
class QTcpSocket;
class QTimer;
class QUdpSocket;

namespace Ui {
class MainWindow;
}

// The one main window. Its implementation is split by subsystem; each group
// below names the file that holds it:
//   app/mainwindow.cpp               construction, interface list, sequence counter
//   app/mainwindow_menus.cpp         full screen, online help, About
//   netconf/mainwindow_validators.cpp address checks and the lock of the camera controls
//   discovery/mainwindow_search.cpp  search rounds and reply handling
//   discovery/mainwindow_select.cpp  row colouring and opening a camera
//   discovery/mainwindow_findings.cpp findings markers on the rows, the search summary
//   discovery/mainwindow_export.cpp  table context menu, copy, export to CSV/JSON
//   netconf/mainwindow_ipconf.cpp    IP configuration tab (submit: mainwindow_ipsubmit.cpp,
//                                    reboot wait and result: mainwindow_ipverify.cpp)
//   auth/mainwindow_auth.cpp         credential dialog opening, base64_encode
//   update/mainwindow_update.cpp     update tab and the firmware upload stream
//   sdcard/mainwindow_sdcard.cpp     SD card tab
// The slots are declared in the order the meta-object must list them.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent = nullptr);
    ~MainWindow() override;

    // Ordering key and checks of typed addresses (netconf/mainwindow_validators.cpp).
    int IPtoInt(QString *dotted);
    bool checkIp(QString text);
    bool checkSubnet(QString text);
    bool checkGateway(QString text);
    bool checkDns(QString text);
    bool checkPort(QString text);
    void checkIpLock(QString ip);

    // Search (discovery/).
    void searchHaddle();
    void setRowColor(int row, QColor background, QColor foreground);
    void sleep(unsigned int msec);

    // Interface list (app/mainwindow.cpp).
    void init();
    QString getNetwork();

    // IP configuration (netconf/mainwindow_ipconf.cpp).
    void ipConf_right_frame_disable();
    void WinbondRebootProgressBar();
    void HaisiRebootProgressBar();
    QString WinbondDataHandle(QString hex, QString key);
    QByteArray WinbondtoHex(QString value, QString key);
    QByteArray MactoHex(QString mac);

    // Credentials (auth/mainwindow_auth.cpp).
    QString base64_encode(QString text);

    // SD card status (sdcard/mainwindow_sdcard.cpp).
    void postSdCardStatus(QString ip, QString user, QString password, QString port);
    QString getSDCardDataHandle(QString text);

public slots:
    quint32 getSeqNum();
    bool appendWinbondIP(QStringList ipValues, QByteArray *data, int start);
    bool isNum(QString text);
    bool isAddr(QString text);
    void on_searchButton_clicked();
    void processPendingDatagram();
    void on_actionFull_toggled(bool arg1);
    void on_automaticSearchBox_toggled(bool checked);
    void on_actionAbout_triggered();
    void on_actionOnline_triggered();
    void mycellClicked(int row, int column);
    void mycellClickedIpConf(int row, int column);
    void mycellClickedUpdate(int row, int column);
    void mycellClickedSdmanager(int row, int column);
    void mycellDoubleClicked1(int row, int column);
    void mycellDoubleClicked2(int row, int column);
    void mycellDoubleClicked3(int row, int column);
    void mycellDoubleClicked4(int row, int column);
    void receiveCamConfIp(QStringList cameraStatus);
    void receiveCamUpdate(QStringList cameraStatus);
    void receiveCamSdCard(QStringList cameraStatus);
    void on_dhcpCheckbox_toggled(bool checked);
    void on_dhcpsubmit_clicked();
    void ipConf(QNetworkReply *reply);
    void on_fileChoose_clicked();
    void on_updateSubmit_clicked();
    void on_selectBox_currentIndexChanged(int index);
    void on_actionRefresh_triggered();
    void startTransfer();
    void updateClientProgress(qint64 numBytes);
    void displayError(QAbstractSocket::SocketError socketError);
    void on_wifiComboBox_currentTextChanged(const QString &addr);
    void checkSdCardMountedReply(QNetworkReply *reply);
    void on_viewFilesBtn_clicked();

private:
    // discovery/ helpers
    QList<QTableWidget *> deviceTables() const;
    // Takes every waiting reply off a receiver at once (the socket signals
    // again only when drained), then lists them in short slices between
    // events, so a flood of replies never freezes the window.
    void drainReceiver(QUdpSocket *receiver);
    void listQueuedReplies();
    // Each reply is kept raw, then listed once per MAC at its key's position;
    // they give the row listed, or -1.
    int listWinbondReply(const QByteArray &datagram, const QHostAddress &source);
    int listHdsReply(const QByteArray &datagram, const QHostAddress &source);
    // The row a new camera takes, or empty for a MAC listed already.
    std::optional<int> admitDeviceRow(const veltor::DeviceRecord &record);
    void enlargeReceiveBuffers();
    // Steps shared by the four cell-click slots: restore the previous row,
    // paint the clicked one in all four tables, remember it.
    void highlightClickedRow(QTableWidget *table, int row, int column);
    void openCameraPage(const QTableWidget *table, int row);

    // Findings (discovery/mainwindow_findings.cpp): each listed camera's reply
    // is kept; once the queue is drained the findings are redone and only the
    // rows whose findings changed get their marker and tooltip anew, in
    // slices (discovery/rowmarkers.cpp).
    void noteListedCamera(const veltor::DeviceRecord &record, const char *family,
                          const QHostAddress &source);
    void forgetFindings();
    void scheduleFindings();
    void refreshFindings();
    QString findingsToolTip(const veltor::SeenCamera &camera,
                            const veltor::SearchInterface &chosen) const;
    // After the rounds, and again whenever late replies change the findings.
    void showSearchSummary();
    void writeSearchSummary(const veltor::SearchInterface &chosen);
    veltor::SearchInterface chosenInterface();
    QStringList rowMacs() const;

    // Context menu, copy and export (discovery/mainwindow_export.cpp).
    void setUpTableActions();
    void showTableMenu(QTableWidget *table, const QPoint &position);
    void copyRows(const QTableWidget *table, QList<int> rows);
    QList<int> rowsToCopy(const QTableWidget *table) const;
    void exportCameras();

    // netconf/ helpers
    // The submit and its HTTP steps are in mainwindow_ipsubmit.cpp; the reboot
    // wait and the search for the changed camera in mainwindow_ipverify.cpp.
    // A submitted change keeps its own copy of what was sent: the form, the
    // tables and ipFixEdit may change in the waits before it is done.
    struct ConfigChange
    {
        QString ip;
        QString mac;
        veltor::CameraLogin login;
        veltor::NetworkSettings settings;
    };
    QString macOfCamera(const QString &ip) const;
    bool configFits(const ConfigChange &change);
    void sendConfiguration(const ConfigChange &change);
    void checkBeforeSending(const ConfigChange &change);
    void rebootProgress(unsigned stepMs);
    void watchChange();
    void waitForChangedCamera();
    void reportChange(qint64 waitedMs);
    class QNetworkAccessManager *configManager = nullptr;
    // From the submit until its credential check has answered: one change at a time.
    std::optional<ConfigChange> pendingChange;
    // From the datagrams until the result is shown.
    std::optional<veltor::ChangeWatch> changeWatch;
    QElapsedTimer lastWatchSearch;

    // auth/ helpers
    // The chosen camera, shared by the three working tabs (app/mainwindow_camera.cpp).
    veltor::StoredCamera storedCamera(const QString &ip);
    // Fills the IP Conf. form, the Update tab and the SD Card tab from the
    // camera's stored search reply.
    void showStoredCamera(const veltor::StoredCamera &camera);
    // Opens the credential dialog; `receiver` gets its sendData.
    void askCredentials(const QString &ip, void (MainWindow::*receiver)(QStringList));
    // Files accepted credentials, unlocks the camera on all tabs, asks for its SD card.
    void acceptCredentials(const QString &ip, const QStringList &cameraStatus);
    void requestSdCardStatus(const QString &ip);
    veltor::CameraLogin newestLogin(const QString &ip) const;

    // update/ helpers
    // The tab in update/mainwindow_update.cpp; the upload stream (startTransfer,
    // updateClientProgress, displayError) in update/mainwindow_upload.cpp.
    void failUpload(const QString &text);
    bool sendNextPiece();
    void endUpload();

    // sdcard/ helpers

    QStringList winbondReplies;
    QStringList hdsReplies;
    QMap<QString, QString> lockState;
    // Kept from the first design: nothing reads or writes it, and a search leaves it alone.
    QMap<QString, QString> reservedMap;
    QMultiMap<QString, QString> sdInfoCache;
    QMultiMap<QString, QString> cameraCredentials;
    bool sdNeedsCheck = true;
    Ui::MainWindow *ui;
    QUdpSocket *broadcastSender = nullptr;
    QUdpSocket *multicastSender = nullptr;
    QUdpSocket *binaryReceiver = nullptr;
    QUdpSocket *multicastReceiver = nullptr;
    QTimer *autoSearchTimer = nullptr;
    QColor rowTextColor;
    qint32 lastClickedRow = -1;
    QTcpSocket *tcpClient = nullptr;
    qint64 totalBytes = 0;
    qint64 bytesWritten = 0;
    qint64 bytesToWrite = 0;
    qint64 uploadChunkSize = 4096;
    QString fileName;
    QByteArray outBlock;
    QByteArray uploadTrailer;
    quint32 seqNum = 0;
    QMap<QString, QString> deviceIds;
    QString sdStatusMessage;

    // The camera chosen on the IP Conf., Update and SD Card tabs: its HTTP port
    // and family as found in its discovery reply.
    QString cameraPort;
    QString cameraFamily;
    // The file being uploaded; a new one per upload, owned by the window.
    QFile *localFile = nullptr;
    // Replies read but not yet listed, with their source address.
    QQueue<veltor::ReceivedReply> queuedReplies;
    bool listingQueued = false;
    veltor::ListedCameras listedCameras;
    veltor::HeardCameras heardCameras;
    class RowMarkers *rowMarkers = nullptr;
    QTimer *findingsTimer = nullptr;
    bool summaryDue = false; // the rounds have ended: findings update the summary
    class QLabel *searchSummary = nullptr;
    class QAction *exportAction = nullptr;
};
