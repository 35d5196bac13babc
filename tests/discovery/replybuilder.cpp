#include "replybuilder.h"

#include <QStringList>

namespace replybuilder {

QByteArray winbondReply(const WinbondFields &fields)
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

QByteArray winbondAt(const QString &ip, const QByteArray &mac)
{
    WinbondFields fields;
    fields.ip.clear();
    for (const QString &part : ip.split(QLatin1Char('.')))
        fields.ip << part.toInt();
    fields.mac = mac;
    return winbondReply(fields);
}

QByteArray hdsReply(const QList<QByteArray> &lines)
{
    QByteArray reply = "HDS/1.0 200 OK\r\n";
    for (const QByteArray &line : lines)
        reply += line + "\r\n";
    return reply;
}

QByteArray hdsCamera(const QString &ip, const QString &mac, const QString &name)
{
    return hdsReply({"Device-Name=" + name.toUtf8(), "Device-ID=ID-" + mac.toUtf8(),
                     "IP=" + ip.toUtf8(), "MAC=" + mac.toUtf8(), "MASK=255.255.255.0",
                     "Gateway=192.168.1.1", "Fdns=192.168.1.1", "Http-Port=81", "Dhcp=1",
                     "Software-Version=V1.2", "Web-Version=W3.4"});
}

} // namespace replybuilder
