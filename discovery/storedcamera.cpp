#include "discovery/storedcamera.h"

#include "discovery/protocolconstants.h"

namespace veltor {

namespace {

// Character offsets in the hex text of a binary search reply (twice the byte offset).
constexpr int kIpChars = 114;
constexpr int kSubnetChars = 122;
constexpr int kGatewayChars = 130;
constexpr int kDnsChars = 138;
constexpr int kFirmwareChars = 154;
constexpr int kWebUiChars = 162;
constexpr int kPortChars = 172;
constexpr int kDhcpChars = 174;
constexpr int kAddressChars = 8;
constexpr int kByteChars = 2;
// Replies of 27 bytes or less carry no camera.
constexpr int kShortestCameraReply = 55;

constexpr int kHdsMinLines = 8;
constexpr int kWebUiKind = 1; // index of "WebUI" in the update kind box
constexpr int kFirmwareLine = 17; // the 18th line
constexpr int kWebUiLine = 18;

bool fillFromWinbond(const QString &hex, const QString &ip, const WinbondDecoder &decode,
                     StoredCamera *camera)
{
    if (hex.size() < kShortestCameraReply)
        return false;
    auto field = [&](int at, int length, const char *key) {
        return decode(hex.mid(at, length), QLatin1String(key));
    };
    if (field(kIpChars, kAddressChars, "ip") != ip)
        return false;
    camera->family = QLatin1String(kWinbondFamily);
    camera->ip = ip;
    camera->subnet = field(kSubnetChars, kAddressChars, "subnet");
    camera->gateway = field(kGatewayChars, kAddressChars, "gateway");
    camera->dns = field(kDnsChars, kAddressChars, "dns");
    camera->port = field(kPortChars, kByteChars, "port");
    camera->dhcp = field(kDhcpChars, kByteChars, "dhcp");
    camera->firmware = field(kFirmwareChars, kAddressChars, "frimware");
    camera->webui = field(kWebUiChars, kAddressChars, "webui");
    camera->firmwareByLine = camera->firmware;
    camera->webuiByLine = camera->webui;
    return true;
}

// Key and value as the search reads them: split at every "=", first two pieces.
QString valueOf(const QString &line)
{
    return line.split(QLatin1Char('=')).value(1);
}

bool fillFromHds(const QString &reply, const QString &ip, StoredCamera *camera)
{
    const QStringList lines = reply.split(QLatin1String("\r\n"));
    if (lines.size() < kHdsMinLines || !lines.contains(QLatin1String("IP=") + ip))
        return false;
    StoredCamera found;
    found.family = QLatin1String(kHaisiFamily);
    const std::pair<const char *, QString *> keys[] = {{"IP", &found.ip},
                                                       {"MASK", &found.subnet},
                                                       {"Gateway", &found.gateway},
                                                       {"Fdns", &found.dns},
                                                       {"Http-Port", &found.port},
                                                       {"Dhcp", &found.dhcp},
                                                       {"Software-Version", &found.firmware},
                                                       {"Web-Version", &found.webui}};
    for (const QString &line : lines) {
        if (!line.contains(QLatin1Char('=')))
            continue;
        const QString key = line.split(QLatin1Char('=')).first();
        for (const auto &entry : keys) {
            if (key == QLatin1String(entry.first))
                *entry.second = valueOf(line);
        }
    }
    found.firmwareByLine = valueOf(lines.value(kFirmwareLine));
    found.webuiByLine = valueOf(lines.value(kWebUiLine));
    *camera = found;
    return true;
}

} // namespace

StoredCamera findStoredCamera(const QStringList &winbondReplies, const QStringList &hdsReplies,
                              const QString &ip, const WinbondDecoder &decode)
{
    StoredCamera camera;
    for (int i = 1; i < winbondReplies.size(); ++i)
        fillFromWinbond(winbondReplies.at(i), ip, decode, &camera);
    if (!camera.family.isEmpty())
        return camera;
    for (int i = 1; i < hdsReplies.size(); ++i)
        fillFromHds(hdsReplies.at(i), ip, &camera);
    return camera;
}

QString versionForKind(const StoredCamera &camera, int kind)
{
    return kind == kWebUiKind ? camera.webui : camera.firmware;
}

QString versionByLineForKind(const StoredCamera &camera, int kind)
{
    return kind == kWebUiKind ? camera.webuiByLine : camera.firmwareByLine;
}

} // namespace veltor
