#include "camsim/searchreplies.h"

#include <QRandomGenerator>
#include <QStringList>
#include <QtEndian>

namespace veltor::camsim {

namespace {

constexpr int kWinbondReplySize = 88;
constexpr int kMacOffset = 23;
constexpr int kMacSize = 12;
constexpr int kNameOffset = 35;
constexpr int kNameSize = 22;
constexpr int kAddressOffset = 57; // IP, mask, gateway, DNS: four bytes each
constexpr int kFirmwareOffset = 77;
constexpr int kWebOffset = 81;
constexpr int kPortOffset = 86;
constexpr int kDhcpOffset = 87;
constexpr int kTruncatedBinarySize = 27; // long enough to be stored, too short to be read
constexpr int kTruncatedHdsLines = 6;

const char kClientId[] = "TzLqRbHwXeNcKvUaPmYdGsJoFiWnBhVr";

void putLe32(QByteArray &bytes, int offset, quint32 value)
{
    qToLittleEndian(value, bytes.data() + offset);
}

void putField(QByteArray &bytes, int offset, const QByteArray &field, int size)
{
    bytes.replace(offset, size, field.left(size).leftJustified(size, '\0'));
}

QByteArray winbondHeader(quint16 command, quint32 length)
{
    QByteArray bytes(23, '\0');
    bytes.replace(0, 4, "MO_I");
    qToLittleEndian(command, bytes.data() + 4);
    putLe32(bytes, 15, length);
    putLe32(bytes, 19, length);
    return bytes;
}

QByteArray macCharacters(const QString &mac)
{
    return QString(mac)
        .remove(QLatin1Char(':'))
        .toLatin1()
        .left(kMacSize)
        .leftJustified(kMacSize, '0');
}

QByteArray noise(const CameraSettings &camera, int size)
{
    QRandomGenerator random(quint32(qHash(camera.mac)) ^ quint32(camera.index));
    QByteArray bytes(size, '\0');
    for (char &byte : bytes)
        byte = char(random.bounded(256));
    bytes[0] = '\0'; // never a valid status line or header by chance
    return bytes;
}

QByteArray spoil(const QByteArray &reply, const CameraSettings &camera, Family family)
{
    const bool winbond = family == Family::Winbond;
    switch (camera.behaviour.malformed) {
    case Malformed::None:
        return reply;
    case Malformed::Truncated:
        if (winbond)
            return reply.left(kTruncatedBinarySize);
        return reply.split('\n').mid(0, kTruncatedHdsLines).join('\n') + '\n';
    case Malformed::Random:
        return noise(camera, reply.size());
    case Malformed::Status:
        if (winbond)
            return QByteArray(reply).replace(0, 4, "MO_X");
        return QByteArray(reply).replace(0, reply.indexOf("\r\n"), "HDS/1.0 404 Not Found");
    }
    return reply;
}

} // namespace

QByteArray binarySearchRequest()
{
    QByteArray bytes = winbondHeader(0, 4);
    bytes.append(QByteArray(3, '\0'));
    bytes.append('\x01');
    return bytes;
}

QByteArray hdsSearchRequest()
{
    return QByteArrayLiteral("SEARCH * HDS/1.0\r\nCSeq:0\r\nClient-ID:") + kClientId +
           QByteArrayLiteral("\r\nAccept-Type:text/HDP\r\nContent-Length:0\r\n\r\n");
}

bool isBinarySearch(const QByteArray &datagram)
{
    return datagram == binarySearchRequest();
}

bool isHdsSearch(const QByteArray &datagram)
{
    return datagram == hdsSearchRequest();
}

QByteArray dottedBytes(const QString &dotted)
{
    QByteArray bytes(4, '\0');
    const QStringList parts = dotted.split(QLatin1Char('.'));
    for (int i = 0; i < 4 && i < parts.size(); ++i)
        bytes[i] = char(parts.at(i).toUInt() & 0xFF);
    return bytes;
}

QByteArray winbondReply(const CameraSettings &camera)
{
    QByteArray bytes = winbondHeader(1, kWinbondReplySize - kMacOffset);
    bytes.append(QByteArray(kWinbondReplySize - bytes.size(), '\0'));
    putField(bytes, kMacOffset, macCharacters(camera.mac), kMacSize);
    putField(bytes, kNameOffset, camera.name.toLatin1(), kNameSize);
    const QString addresses[] = {camera.ip, camera.mask, camera.gateway, camera.dns};
    for (int i = 0; i < 4; ++i)
        putField(bytes, kAddressOffset + 4 * i, dottedBytes(addresses[i]), 4);
    putField(bytes, kFirmwareOffset, dottedBytes(camera.firmwareVersion), 4);
    putField(bytes, kWebOffset, dottedBytes(camera.webVersion), 4);
    bytes[kPortOffset] = char(camera.httpPort & 0xFF); // a port above 255 cannot be carried
    bytes[kDhcpOffset] = char(camera.dhcp ? 1 : 0);
    return bytes;
}

QByteArray hdsReply(const CameraSettings &camera)
{
    // Body lines 7..19 of the datagram; the header block takes lines 1..6.
    const QString body =
        QStringLiteral("Device-ID=") % camera.deviceId % QStringLiteral("\r\nDevice-Name=") %
        camera.name % QStringLiteral("\r\nDevice-Type=IPCAM\r\nIP=") % camera.ip %
        QStringLiteral("\r\nMASK=") % camera.mask % QStringLiteral("\r\nMAC=") % camera.mac %
        QStringLiteral("\r\nGateway=") % camera.gateway % QStringLiteral("\r\nFdns=") % camera.dns %
        QStringLiteral("\r\nSdns=0.0.0.0\r\nDhcp=") % QLatin1String(camera.dhcp ? "1" : "0") %
        QStringLiteral("\r\nHttp-Port=") % QString::number(camera.httpPort) %
        QStringLiteral("\r\nSoftware-Version=") % camera.firmwareVersion %
        QStringLiteral("\r\nWeb-Version=") % camera.webVersion % QStringLiteral("\r\n");
    const QByteArray bodyBytes = body.toUtf8();
    return QByteArrayLiteral("HDS/1.0 200 OK\r\nCSeq:0\r\nClient-ID:") + kClientId +
           QByteArrayLiteral("\r\nAccept-Type:text/HDP\r\nContent-Length:") +
           QByteArray::number(bodyBytes.size()) + QByteArrayLiteral("\r\n\r\n") + bodyBytes;
}

QByteArray searchReply(const CameraSettings &camera, Family family)
{
    const QByteArray reply = family == Family::Winbond ? winbondReply(camera) : hdsReply(camera);
    return spoil(reply, camera, family);
}

QString familyName(Family family)
{
    return family == Family::Winbond ? QStringLiteral("Winbond") : QStringLiteral("Haisi");
}

} // namespace veltor::camsim
