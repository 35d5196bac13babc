#pragma once

#include "discovery/protocolconstants.h"

#include <QByteArray>
#include <QString>

// The raw HTTP requests that carry a firmware or web-interface file to a
// camera. The cameras' upload CGIs are picky about framing, so every byte is
// fixed here by hand: no header is added or dropped, no value escaped unless
// stated.
namespace veltor {

// Index of the update kind in the Update tab's combo box.
enum UpdateKind { FirmwareUpdate = 0, WebUiUpdate = 1 };

constexpr char kWinbondFirmwarePath[] = "/upgrade_firmware.cgi";
constexpr char kWinbondWebUiPath[] = "/upgrade_htmls.cgi";
constexpr char kHaisiUpgradePath[] = "/web/cgi-bin/hi3510/upgrade.cgi";

// Everything the request needs to know of the camera and the file.
struct UploadTarget
{
    QString family;
    int kind = FirmwareUpdate;
    QString ip;
    QString port;
    QString user;
    QString password;
    QString fileName; // last path component; Haisi sends it, Winbond always says "upgrade.bin"
    qint64 fileSize = 0;
};

// Request line, headers and multipart opening up to the first file byte
// (`head`), and the closing boundary line sent after the last one (`trailer`).
// Both are empty for an unknown family or kind: nothing is to be sent.
struct UploadRequest
{
    QByteArray head;
    QByteArray trailer;
    bool isValid() const { return !head.isEmpty(); }
};

UploadRequest buildUploadRequest(const UploadTarget &target);

// Winbond: user and password go into the query exactly as typed (the camera
// does not decode them).
QByteArray winbondUploadHead(const char *path, const QString &user, const QString &password,
                             qint64 fileSize);
QByteArray winbondUploadTrailer();

// Haisi: a browser-like request; the file name is percent-encoded in the query
// but raw (UTF-8) in the part header.
QByteArray haisiUploadHead(const UploadTarget &target);
QByteArray haisiUploadTrailer();

} // namespace veltor
