#pragma once

#include <QString>
#include <QStringList>
#include <functional>

// A camera looked up afresh in the raw replies of the last search, so the tabs
// never show a version older than what the camera last announced.
namespace veltor {

// One field of a binary reply: hex text (two characters a byte) and key in,
// decoded text out. The window passes its WinbondDataHandle.
using WinbondDecoder = std::function<QString(const QString &hex, const QString &key)>;

struct StoredCamera
{
    QString family; // "Winbond", "Haisi", or empty when no reply names the address
    QString ip;
    QString subnet;
    QString gateway;
    QString dns;
    QString port;
    QString dhcp; // "0", "1" or anything the camera sent
    QString firmware;
    QString webui;
    // What the kind switch shows: for Haisi the values of the 18th and 19th
    // reply lines whatever their keys, for Winbond the same as above.
    QString firmwareByLine;
    QString webuiByLine;
};

// Winbond replies are searched first, then the text replies; in each list the
// first element is never consulted and a later match replaces an earlier one.
StoredCamera findStoredCamera(const QStringList &winbondReplies, const QStringList &hdsReplies,
                              const QString &ip, const WinbondDecoder &decode);

// The version `versionEdit` shows for an update kind: web interface for 1,
// firmware otherwise.
QString versionForKind(const StoredCamera &camera, int kind);
QString versionByLineForKind(const StoredCamera &camera, int kind);

} // namespace veltor
