// Replies to the search come from anyone on the LAN: both parsers, and the
// field decoder on any hex text, must take any bytes.
#include "discovery/hdsreply.h"
#include "discovery/winbondreply.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray datagram(reinterpret_cast<const char *>(data), int(size));
    veltor::parseWinbondReply(datagram);
    veltor::parseHdsReply(datagram);
    const QString hex = QString::fromLatin1(datagram.left(256));
    for (const char *key : {"mac", "name", "ip", "port", "dhcp", "frimware", "webui", "other"})
        veltor::winbondDataHandle(hex, QLatin1String(key));
    return 0;
}
