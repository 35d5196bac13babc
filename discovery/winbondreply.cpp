#include "discovery/winbondreply.h"

#include <QStringList>

namespace veltor {

namespace {

struct Span
{
    int offset;
    int size;
};

// Byte positions in the reply; bytes 0..22, 73..76 and 85 are not read.
constexpr Span kMac{23, 12};
constexpr Span kName{35, 22};
constexpr Span kIp{57, 4};
constexpr Span kSubnet{61, 4};
constexpr Span kGateway{65, 4};
constexpr Span kDns{69, 4};
constexpr Span kFirmware{77, 4};
constexpr Span kWebui{81, 4};
constexpr Span kPort{86, 1};
constexpr Span kDhcp{87, 1};

int pieceValue(const QString &piece)
{
    bool ok = false;
    const int value = piece.toInt(&ok, 16);
    return ok && value >= 0 && value <= 255 ? value : 0;
}

QString convertPiece(const QString &piece, const QString &key)
{
    if (key == QLatin1String("name") && piece == QLatin1String("00"))
        return QString();
    if (key == QLatin1String("name") || key == QLatin1String("mac"))
        return QString(QChar(QLatin1Char(char(pieceValue(piece)))));
    return QString::number(pieceValue(piece));
}

bool isDottedKey(const QString &key)
{
    static const QStringList dotted{QStringLiteral("ip"),       QStringLiteral("port"),
                                    QStringLiteral("dhcp"),     QStringLiteral("subnet"),
                                    QStringLiteral("gateway"),  QStringLiteral("dns"),
                                    QStringLiteral("frimware"), QStringLiteral("webui")};
    return dotted.contains(key);
}

QString joinPieces(const QStringList &pieces, const QString &key)
{
    if (isDottedKey(key))
        return pieces.join(QLatin1Char('.'));
    QString joined;
    const bool mac = key == QLatin1String("mac");
    for (int i = 0; i < pieces.size(); ++i) {
        joined += pieces.at(i);
        if (mac && i % 2 == 1 && i != pieces.size() - 1)
            joined += QLatin1Char(':');
    }
    return joined;
}

QString field(const QString &hex, Span span, const QString &key)
{
    return winbondDataHandle(hex.mid(span.offset * 2, span.size * 2), key);
}

} // namespace

QString winbondDataHandle(const QString &hex, const QString &key)
{
    QStringList pieces;
    pieces.reserve((hex.size() + 1) / 2);
    for (int i = 0; i < hex.size(); i += 2)
        pieces << convertPiece(hex.mid(i, 2), key);
    return joinPieces(pieces, key).trimmed();
}

std::optional<DeviceRecord> winbondRecordFromHex(const QString &hex)
{
    if (hex.size() < kWinbondReplyMinSize * 2)
        return std::nullopt;
    DeviceRecord record;
    record.mac = field(hex, kMac, QStringLiteral("mac"));
    const QString nameHex = hex.mid(kName.offset * 2, kName.size * 2);
    record.name = nameHex == QString(kName.size * 2, QLatin1Char('0'))
                      ? QString::fromLatin1(kWinbondDefaultName)
                      : winbondDataHandle(nameHex, QStringLiteral("name"));
    record.ip = field(hex, kIp, QStringLiteral("ip"));
    record.subnet = field(hex, kSubnet, QStringLiteral("subnet"));
    record.gateway = field(hex, kGateway, QStringLiteral("gateway"));
    record.dns = field(hex, kDns, QStringLiteral("dns"));
    record.firmware = field(hex, kFirmware, QStringLiteral("frimware"));
    record.webui = field(hex, kWebui, QStringLiteral("webui"));
    record.port = field(hex, kPort, QStringLiteral("port"));
    record.dhcp = dhcpText(field(hex, kDhcp, QStringLiteral("dhcp")));
    return record;
}

std::optional<DeviceRecord> parseWinbondReply(const QByteArray &datagram)
{
    // Nothing past the DHCP byte is read, however long the datagram.
    return winbondRecordFromHex(QString::fromLatin1(datagram.left(kWinbondReplyMinSize).toHex()));
}

} // namespace veltor
