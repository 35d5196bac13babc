#include "discovery/hdsreply.h"

#include <QStringList>

namespace veltor {

QString hdsReplyText(const QByteArray &datagram)
{
    const int end = datagram.indexOf('\0');
    return QString::fromUtf8(end < 0 ? datagram : datagram.left(end));
}

std::optional<HdsFields> parseHdsFields(const QString &text)
{
    const QStringList lines = text.split(QStringLiteral("\r\n"));
    if (lines.size() < kHdsMinParts || lines.first() != QLatin1String(kHdsOkStatus))
        return std::nullopt;
    HdsFields fields;
    for (const QString &line : lines) {
        if (!line.contains(QLatin1Char('=')))
            continue;
        const QStringList pieces = line.split(QLatin1Char('='));
        fields.insert(pieces.at(0), pieces.at(1));
    }
    return fields;
}

std::optional<DeviceRecord> hdsRecordFromText(const QString &text)
{
    const std::optional<HdsFields> fields = parseHdsFields(text);
    if (!fields)
        return std::nullopt;
    auto value = [&fields](const char *key) { return fields->value(QLatin1String(key)); };
    DeviceRecord record;
    record.name = value("Device-Name");
    record.deviceId = value("Device-ID");
    record.ip = value("IP");
    record.mac = value("MAC");
    record.subnet = value("MASK");
    record.gateway = value("Gateway");
    record.dns = value("Fdns");
    record.port = value("Http-Port");
    record.dhcp = dhcpText(value("Dhcp"));
    record.firmware = value("Software-Version");
    record.webui = value("Web-Version");
    return record;
}

std::optional<DeviceRecord> parseHdsReply(const QByteArray &datagram)
{
    return hdsRecordFromText(hdsReplyText(datagram));
}

} // namespace veltor
