// Search replies come from anyone on the network: both parsers and the field
// decoder must take any datagram without crashing or reading past its end.
#include "discovery/hdsreply.h"
#include "discovery/winbondreply.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray datagram =
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), int(size));
    veltor::parseWinbondReply(datagram);
    veltor::parseHdsReply(datagram);
    // Stored replies are decoded again from text that may be odd or not hex.
    const QString text = QString::fromLatin1(datagram.left(256));
    veltor::winbondRecordFromHex(text);
    for (const char *key : {"mac", "name", "ip", "port", "other"})
        veltor::winbondDataHandle(text, QLatin1String(key));
    return 0;
}
