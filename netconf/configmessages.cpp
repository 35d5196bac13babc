#include "netconf/configmessages.h"

#include "discovery/protocolconstants.h"
#include "netconf/validators.h"

#include <QStringList>
#include <QtEndian>

namespace veltor {

namespace {

// Offsets of the Winbond configuration datagram.
constexpr int kCommandOffset = 4;
constexpr int kLengthOffsets[] = {15, 19};
constexpr quint32 kPayloadLength = 61;
constexpr int kMacOffset = 27;
constexpr int kUserOffset = 40;
constexpr int kPasswordOffset = 53;
constexpr int kAddressOffset = 66;
constexpr int kAddressBytes = 16;
constexpr int kPortOffset = 82;

bool fitsTextField(const QString &text)
{
    return text.toUtf8().size() < kWinbondTextField;
}

void putText(QByteArray *datagram, int offset, const QByteArray &text)
{
    datagram->replace(offset, text.size(), text);
}

// IP, mask, gateway and DNS, one byte per part; empty when a part is invalid.
QByteArray packAddresses(const NetworkSettings &s)
{
    QByteArray scratch;
    int start = 0;
    for (const QString *address : {&s.ip, &s.subnet, &s.gateway, &s.dns}) {
        const QStringList parts = address->split(QLatin1Char('.'));
        if (parts.size() != 4 || !appendWinbondIP(parts, &scratch, start))
            return QByteArray();
        start += 4;
    }
    return scratch.left(kAddressBytes);
}

} // namespace

QString adjustGateway(const QString &ip, const QString &gateway)
{
    const QStringList ipParts = ip.split(QLatin1Char('.'));
    const QStringList gwParts = gateway.split(QLatin1Char('.'));
    if (ipParts.size() < 4 || gwParts.size() < 4)
        return gateway;
    if (ipParts.mid(0, 3) == gwParts.mid(0, 3))
        return gateway;
    return ipParts.at(0) % QLatin1Char('.') % ipParts.at(1) % QLatin1Char('.') % ipParts.at(2) %
           QLatin1Char('.') % gwParts.at(3);
}

QByteArray netconfBody(const NetworkSettings &s, const QString &mac)
{
    if (s.dhcp)
        return QByteArrayLiteral("netconf set -dhcp on");
    const QString body = QLatin1String("netconf set -dhcp off -ipaddr ") % s.ip %
                         QLatin1String(" -netmask ") % s.subnet % QLatin1String(" -gateway ") %
                         adjustGateway(s.ip, s.gateway) % QLatin1String(" -hwaddr ") % mac %
                         QLatin1String(" -fdnsip ") % s.dns;
    return body.toUtf8();
}

QByteArray httpPortBody(const QString &port)
{
    return QByteArrayLiteral("httpport set -httpport ") + port.toUtf8();
}

QByteArray hdsCmdRequest(quint32 cseq, const QString &user, const QString &password,
                         const QString &deviceId, const QByteArray &body)
{
    QByteArray request = QByteArrayLiteral("CMD * HDS/1.0\r\nCSeq:");
    request += QByteArray::number(cseq);
    request += QByteArrayLiteral("\r\nClient-ID:");
    request += kHdsClientId;
    request += QByteArrayLiteral("\r\nAccept-Type:text/HDP\r\nAuthorization:Basic ");
    request += user.toUtf8() + ':' + password.toUtf8();
    request += QByteArrayLiteral("\r\nDevice-ID:") + deviceId.toUtf8();
    request += QByteArrayLiteral("\r\nContent-Length:") + QByteArray::number(body.size());
    request += QByteArrayLiteral("\r\n\r\n") + body;
    return request;
}

WinbondFieldProblem checkWinbondFields(const QString &mac, const QString &user,
                                       const QString &password)
{
    if (macToHex(mac).size() != kWinbondTextField - 1)
        return WinbondFieldProblem::Mac;
    if (!fitsTextField(user))
        return WinbondFieldProblem::User;
    if (!fitsTextField(password))
        return WinbondFieldProblem::Password;
    return WinbondFieldProblem::None;
}

QByteArray winbondConfigDatagram(const QString &mac, const QString &user, const QString &password,
                                 const NetworkSettings &settings)
{
    if (checkWinbondFields(mac, user, password) != WinbondFieldProblem::None)
        return QByteArray();
    QByteArray datagram(kWinbondDatagramSize, '\0');
    putText(&datagram, 0, QByteArrayLiteral("MO_I"));
    qToLittleEndian<quint16>(2, datagram.data() + kCommandOffset);
    for (const int offset : kLengthOffsets)
        qToLittleEndian<quint32>(kPayloadLength, datagram.data() + offset);
    putText(&datagram, kMacOffset, macToHex(mac));
    putText(&datagram, kUserOffset, user.toUtf8());
    putText(&datagram, kPasswordOffset, password.toUtf8());
    if (!settings.dhcp) {
        const QByteArray addresses = packAddresses(settings);
        if (addresses.size() != kAddressBytes)
            return QByteArray();
        putText(&datagram, kAddressOffset, addresses);
    }
    // Through a buffer of its own: GCC 12 takes a write into data() after the
    // early returns above for one into an empty array (-Wstringop-overflow).
    char port[2];
    qToBigEndian<quint16>(settings.port.toUShort(nullptr, 10), port);
    putText(&datagram, kPortOffset, QByteArray(port, sizeof port));
    return datagram;
}

QByteArray winbondToHex(const QString &value, const QString &key)
{
    if (key == QLatin1String("mac"))
        return macToHex(value);
    static const QStringList dotted = {QStringLiteral("ip"), QStringLiteral("subnet"),
                                       QStringLiteral("gateway"), QStringLiteral("dns"),
                                       QStringLiteral("port")};
    if (!dotted.contains(key))
        return QByteArray();
    QByteArray hex;
    for (const QString &part : value.trimmed().split(QLatin1Char('.'))) {
        const char byte = char(part.toUInt(nullptr, 10) & 0xff);
        hex += QByteArray(1, byte).toHex();
    }
    return hex;
}

QByteArray macToHex(const QString &mac)
{
    QByteArray text;
    for (const QString &part : mac.trimmed().split(QLatin1Char(':')))
        text += part.toUtf8();
    return text;
}

} // namespace veltor
