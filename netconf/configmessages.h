#pragma once

#include <QByteArray>
#include <QString>

// The two messages that change a camera's network settings: the HDS/1.0 CMD
// request (Haisi) and the 84-byte "MO_I" datagram (Winbond).
namespace veltor {

// What the user typed on the IP configuration tab, as text.
struct NetworkSettings
{
    QString ip;
    QString subnet;
    QString gateway;
    QString dns;
    QString port;
    bool dhcp = false;
};

// A gateway outside the address's /24 is moved into it, keeping its last part:
// 192.168.2.50 with 192.168.1.1 gives 192.168.2.1.
QString adjustGateway(const QString &ip, const QString &gateway);

// "netconf set -dhcp on", or the full DHCP-off command with the adjusted gateway.
QByteArray netconfBody(const NetworkSettings &settings, const QString &mac);
QByteArray httpPortBody(const QString &port);

// One "CMD * HDS/1.0" request. The Authorization value is user:password in
// plain text, as the cameras expect; Content-Length counts bytes, not characters.
QByteArray hdsCmdRequest(quint32 cseq, const QString &user, const QString &password,
                         const QString &deviceId, const QByteArray &body);

constexpr int kWinbondDatagramSize = 84;
constexpr int kWinbondTextField = 13; // 12 bytes and a terminating zero

enum class WinbondFieldProblem { None, Mac, User, Password };

// A MAC must be 12 characters once ":" is removed; user name and password
// must leave room for the terminator. Refused rather than cut, so the camera
// never sees credentials other than the typed ones.
WinbondFieldProblem checkWinbondFields(const QString &mac, const QString &user,
                                       const QString &password);

// The 84-byte datagram; empty when a field does not fit or, with DHCP off, an
// address part is not a number below 256.
QByteArray winbondConfigDatagram(const QString &mac, const QString &user, const QString &password,
                                 const NetworkSettings &settings);

// Display value to the hex text of a Winbond reply field ("ip", "port", ...),
// or the MAC characters without ":" for "mac". Other keys give nothing.
QByteArray winbondToHex(const QString &value, const QString &key);
QByteArray macToHex(const QString &mac);

} // namespace veltor
