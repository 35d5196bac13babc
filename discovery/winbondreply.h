#pragma once

#include "discovery/devicerecord.h"

#include <QByteArray>
#include <QString>
#include <optional>

// The binary search reply of "Winbond" cameras. Replies are kept as hex text
// (the window stores them so and the configuration tabs decode them later), so
// decoding works on hex text of either case.
namespace veltor {

// A reply whose hex text is not longer than this (27 bytes) is stored but never parsed.
constexpr int kWinbondShortReplyHexChars = 54;
// The last field read is the DHCP byte at offset 87; a shorter reply is truncated.
constexpr int kWinbondReplyMinSize = 88;

// Name shown for a camera whose 22 name bytes are all zero.
constexpr char kWinbondDefaultName[] = "VELTOR VGA Series";

// Decodes one field given as hex text. Keys: "mac", "name", "ip", "port",
// "dhcp", "subnet", "gateway", "dns", "frimware" (sic), "webui". The hex is cut
// into pieces of two characters (a trailing single one is a piece too); "name"
// and "mac" turn pieces into Latin-1 characters ("name" drops "00"), the
// others into decimal numbers joined by "."; "mac" puts ":" after every second
// piece. The result is trimmed.
QString winbondDataHandle(const QString &hex, const QString &key);

// The camera of a stored reply; nullopt when the reply is too short to hold
// every field. DHCP is "on"/"off" or empty for any other flag byte.
std::optional<DeviceRecord> winbondRecordFromHex(const QString &hex);
std::optional<DeviceRecord> parseWinbondReply(const QByteArray &datagram);

} // namespace veltor
