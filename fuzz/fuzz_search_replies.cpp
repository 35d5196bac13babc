// Search replies come from anyone on the network: both parsers and the field
// decoder must take any datagram without crashing or reading past its end.
#include "discovery/fleetmerge.h"
#include "discovery/hdsreply.h"
#include "discovery/protocolconstants.h"
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
    // The command line's merge and findings take the same datagrams, on both ports.
    veltor::FleetMerge merge;
    const QHostAddress source(QStringLiteral("10.0.0.9"));
    const QHostAddress interface(QStringLiteral("10.0.0.1"));
    for (const quint16 port : {veltor::kBinarySearchPort, veltor::kHdsPort}) {
        merge.add({datagram, port, source, interface});
        merge.add({datagram, port, interface, interface});
    }
    QVector<veltor::SeenCamera> cameras = merge.cameras();
    veltor::SearchInterface link;
    link.address = interface;
    link.netmask = QHostAddress(QStringLiteral("255.255.255.0"));
    veltor::flagFindings(&cameras, {link});
    return 0;
}
