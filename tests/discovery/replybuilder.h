#pragma once

#include <QStringList>
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
inline QByteArray winbondReply(const WinbondFields &fields = WinbondFields())
{
    QByteArray reply(88, '\0');
    reply.replace(0, 4, "MO_I");
    reply.replace(23, 12, fields.mac.leftJustified(12, '\0', true));
    reply.replace(35, 22, fields.name.leftJustified(22, '\0', true));
    for (const auto &[offset, values] :
         {std::make_pair(57, &fields.ip), std::make_pair(61, &fields.subnet),
          std::make_pair(65, &fields.gateway), std::make_pair(69, &fields.dns),
          std::make_pair(77, &fields.firmware), std::make_pair(81, &fields.webui)}) {
        for (int i = 0; i < values->size(); ++i)
            reply[offset + i] = char(values->at(i));
    }
    reply[86] = char(fields.port);
    reply[87] = char(fields.dhcp);
    return reply;
}
// The default reply with another IP (dotted text) and MAC.
inline QByteArray winbondAt(const QString &ip, const QByteArray &mac)
{
    WinbondFields fields;
    fields.ip.clear();
    for (const QString &part : ip.split(QLatin1Char('.')))
        fields.ip << part.toInt();
    fields.mac = mac;
    return winbondReply(fields);
}
// "HDS/1.0 200 OK" followed by the given lines, each ended by "\r\n".
inline QByteArray hdsReply(const QList<QByteArray> &lines)
{
    QByteArray reply = "HDS/1.0 200 OK\r\n";
    for (const QByteArray &line : lines)
        reply += line + "\r\n";
    return reply;
}
// A full HDS reply for a camera with the given IP and MAC.
inline QByteArray hdsCamera(const QString &ip, const QString &mac, const QString &name = "Haisi1")
{
    return hdsReply({"Device-Name=" + name.toUtf8(), "Device-ID=ID-" + mac.toUtf8(),
                     "IP=" + ip.toUtf8(), "MAC=" + mac.toUtf8(), "MASK=255.255.255.0",
                     "Gateway=192.168.1.1", "Fdns=192.168.1.1", "Http-Port=81", "Dhcp=1",
                     "Software-Version=V1.2", "Web-Version=W3.4"});
}

} // namespace replybuilder
