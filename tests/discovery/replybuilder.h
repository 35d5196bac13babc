#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVector>

// Camera replies as the cameras send them, for the tests of the search.
namespace replybuilder {

struct WinbondFields
{
    QByteArray mac = "000A1B2C3D4E"; // twelve ASCII characters
    QByteArray name = "Cam1";        // zero-padded to 22 bytes
    QVector<int> ip{192, 168, 1, 20}, subnet{255, 255, 255, 0}, gateway{192, 168, 1, 1},
        dns{8, 8, 8, 8}, firmware{1, 2, 3, 4}, webui{5, 6, 7, 8};
    int port = 80;
    int dhcp = 0;
};

// The 88 bytes that carry every field; bytes the tool does not read are zero.
QByteArray winbondReply(const WinbondFields &fields = WinbondFields());

// The default reply with another IP (dotted text) and MAC.
QByteArray winbondAt(const QString &ip, const QByteArray &mac);

// "HDS/1.0 200 OK" followed by the given lines, each ended by "\r\n".
QByteArray hdsReply(const QList<QByteArray> &lines);

// A full HDS reply for a camera with the given IP and MAC.
QByteArray hdsCamera(const QString &ip, const QString &mac, const QString &name = "Haisi1");

} // namespace replybuilder
