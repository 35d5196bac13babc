#pragma once

#include "netconf/configmessages.h"

#include <QByteArray>
#include <QString>
#include <optional>

// Readers of the configuration messages, for the camera side (the simulator)
// and the fuzzers. They never read past the end and reject rather than guess.
namespace veltor {

struct HdsCmd
{
    quint32 cseq = 0;
    QString clientId;
    QString user;
    QString password;
    QString deviceId;
    QByteArray body;
};

// A "CMD * HDS/1.0" request whose Content-Length matches its body.
std::optional<HdsCmd> parseHdsCmd(const QByteArray &datagram);

// A camera console command carried in a CMD body.
struct CameraCommand
{
    enum Kind { Netconf, HttpPort } kind = Netconf;
    NetworkSettings settings; // Netconf: dhcp, or the addresses; HttpPort: port
    QString mac;              // the -hwaddr of a DHCP-off netconf
};

std::optional<CameraCommand> parseCameraCommand(const QByteArray &body);

struct WinbondConfig
{
    QString mac;
    QString user;
    QString password;
    NetworkSettings settings; // all-zero addresses read as DHCP on
};

std::optional<WinbondConfig> parseWinbondConfig(const QByteArray &datagram);

} // namespace veltor
