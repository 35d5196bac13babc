#include "discovery/searchmessages.h"

#include "discovery/protocolconstants.h"

#include <QtEndian>

namespace veltor {

QByteArray binarySearchDatagram()
{
    QByteArray datagram(kBinarySearchSize, '\0');
    datagram.replace(0, 4, QByteArrayLiteral("MO_I"));
    qToLittleEndian<quint32>(4, datagram.data() + 15);
    qToLittleEndian<quint32>(4, datagram.data() + 19);
    datagram[26] = '\x01';
    return datagram;
}

QByteArray hdsSearchRequest()
{
    return QByteArray("SEARCH * HDS/1.0\r\n"
                      "CSeq:0\r\n"
                      "Client-ID:") +
           kHdsClientId +
           "\r\n"
           "Accept-Type:text/HDP\r\n"
           "Content-Length:0\r\n\r\n";
}

} // namespace veltor
