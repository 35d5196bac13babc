#include "netconf/configparse.h"

#include <QHash>
#include <QList>
#include <QtEndian>

namespace veltor {

namespace {

QHash<QByteArray, QByteArray> headerFields(const QList<QByteArray> &lines)
{
    QHash<QByteArray, QByteArray> fields;
    for (const QByteArray &line : lines) {
        const int colon = line.indexOf(':');
        if (colon > 0)
            fields.insert(line.left(colon), line.mid(colon + 1));
    }
    return fields;
}

// The user:password pair behind "Basic "; the user name ends at the first ":".
bool splitCredentials(const QByteArray &value, HdsCmd *cmd)
{
    static const QByteArray basic = QByteArrayLiteral("Basic ");
    if (!value.startsWith(basic))
        return false;
    const QByteArray pair = value.mid(basic.size());
    const int colon = pair.indexOf(':');
    if (colon < 0)
        return false;
    cmd->user = QString::fromUtf8(pair.left(colon));
    cmd->password = QString::fromUtf8(pair.mid(colon + 1));
    return true;
}

// "-key value" pairs after the two command words.
std::optional<QHash<QByteArray, QByteArray>> options(const QList<QByteArray> &words)
{
    QHash<QByteArray, QByteArray> result;
    for (int i = 2; i < words.size(); i += 2) {
        if (i + 1 >= words.size() || !words.at(i).startsWith('-'))
            return std::nullopt;
        result.insert(words.at(i).mid(1), words.at(i + 1));
    }
    return result;
}

std::optional<CameraCommand> netconfCommand(const QHash<QByteArray, QByteArray> &opts)
{
    CameraCommand command;
    const QByteArray dhcp = opts.value("dhcp");
    if (dhcp == "on" && opts.size() == 1) {
        command.settings.dhcp = true;
        return command;
    }
    static const QByteArray keys[] = {"ipaddr", "netmask", "gateway", "hwaddr", "fdnsip"};
    for (const QByteArray &key : keys) {
        if (!opts.contains(key))
            return std::nullopt;
    }
    if (dhcp != "off")
        return std::nullopt;
    command.settings.ip = QString::fromUtf8(opts.value("ipaddr"));
    command.settings.subnet = QString::fromUtf8(opts.value("netmask"));
    command.settings.gateway = QString::fromUtf8(opts.value("gateway"));
    command.settings.dns = QString::fromUtf8(opts.value("fdnsip"));
    command.mac = QString::fromUtf8(opts.value("hwaddr"));
    return command;
}

QString zeroEnded(const QByteArray &datagram, int offset, int size)
{
    const QByteArray field = datagram.mid(offset, size);
    const int end = field.indexOf('\0');
    return QString::fromUtf8(end < 0 ? field : field.left(end));
}

QString dottedAt(const QByteArray &datagram, int offset)
{
    QStringList parts;
    for (int i = 0; i < 4; ++i)
        parts << QString::number(quint8(datagram.at(offset + i)));
    return parts.join(QLatin1Char('.'));
}

} // namespace

std::optional<HdsCmd> parseHdsCmd(const QByteArray &datagram)
{
    const int headerEnd = datagram.indexOf("\r\n\r\n");
    if (headerEnd < 0 || !datagram.startsWith("CMD * HDS/1.0\r\n"))
        return std::nullopt;
    QList<QByteArray> lines;
    for (const QByteArray &line : datagram.left(headerEnd).split('\n'))
        lines << (line.endsWith('\r') ? line.chopped(1) : line);
    const QHash<QByteArray, QByteArray> fields = headerFields(lines.mid(1));
    HdsCmd cmd;
    cmd.body = datagram.mid(headerEnd + 4);
    bool seqOk = false;
    bool lengthOk = false;
    cmd.cseq = fields.value("CSeq").toUInt(&seqOk);
    const int length = fields.value("Content-Length").toInt(&lengthOk);
    if (!seqOk || !lengthOk || length != cmd.body.size() ||
        !splitCredentials(fields.value("Authorization"), &cmd))
        return std::nullopt;
    cmd.clientId = QString::fromUtf8(fields.value("Client-ID"));
    cmd.deviceId = QString::fromUtf8(fields.value("Device-ID"));
    return cmd;
}

std::optional<CameraCommand> parseCameraCommand(const QByteArray &body)
{
    const QList<QByteArray> words = body.split(' ');
    if (words.size() < 2 || words.at(1) != "set")
        return std::nullopt;
    const auto opts = options(words);
    if (!opts)
        return std::nullopt;
    if (words.at(0) == "netconf")
        return netconfCommand(*opts);
    if (words.at(0) != "httpport" || opts->size() != 1 || !opts->contains("httpport"))
        return std::nullopt;
    CameraCommand command;
    command.kind = CameraCommand::HttpPort;
    command.settings.port = QString::fromUtf8(opts->value("httpport"));
    return command;
}

std::optional<WinbondConfig> parseWinbondConfig(const QByteArray &datagram)
{
    if (datagram.size() != kWinbondDatagramSize || !datagram.startsWith("MO_I") ||
        qFromLittleEndian<quint16>(datagram.constData() + 4) != 2 || datagram.at(39) != '\0')
        return std::nullopt;
    WinbondConfig config;
    config.mac = QString::fromUtf8(datagram.mid(27, 12));
    config.user = zeroEnded(datagram, 40, kWinbondTextField);
    config.password = zeroEnded(datagram, 53, kWinbondTextField);
    config.settings.dhcp = datagram.mid(66, 16).count('\0') == 16;
    if (!config.settings.dhcp) {
        config.settings.ip = dottedAt(datagram, 66);
        config.settings.subnet = dottedAt(datagram, 70);
        config.settings.gateway = dottedAt(datagram, 74);
        config.settings.dns = dottedAt(datagram, 78);
    }
    config.settings.port = QString::number(qFromBigEndian<quint16>(datagram.constData() + 82));
    return config;
}

} // namespace veltor
