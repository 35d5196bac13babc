#include "update/storedversions.h"

#include "discovery/winbondreply.h"
#include "update/uploadrequest.h"

namespace veltor {

namespace {

// Character ranges in the hex text of a binary search reply (twice the byte offsets).
constexpr int kIpChars = 114;
constexpr int kFirmwareChars = 154;
constexpr int kWebUiChars = 162;
constexpr int kFieldChars = 8;

constexpr int kHdsMinLines = 8;
constexpr int kFirmwareLine = 17; // the 18th line
constexpr int kWebUiLine = 18;

bool fromWinbond(const QString &hex, const QString &ip, StoredVersions *found)
{
    if (hex.size() <= kWinbondShortReplyHexChars ||
        winbondDataHandle(hex.mid(kIpChars, kFieldChars), QStringLiteral("ip")) != ip)
        return false;
    found->family = QLatin1String(kWinbondFamily);
    found->firmware =
        winbondDataHandle(hex.mid(kFirmwareChars, kFieldChars), QStringLiteral("frimware"));
    found->webui = winbondDataHandle(hex.mid(kWebUiChars, kFieldChars), QStringLiteral("webui"));
    found->firmwareByLine = found->firmware;
    found->webuiByLine = found->webui;
    return true;
}

// As the search reads a line: split at every "=", the second piece is the value.
QString valueOf(const QString &line)
{
    return line.split(QLatin1Char('=')).value(1);
}

bool fromHds(const QString &reply, const QString &ip, StoredVersions *found)
{
    const QStringList lines = reply.split(QLatin1String("\r\n"));
    if (lines.size() < kHdsMinLines || !lines.contains(QLatin1String("IP=") + ip))
        return false;
    *found = StoredVersions();
    found->family = QLatin1String(kHaisiFamily);
    for (const QString &line : lines) {
        const QString key = line.section(QLatin1Char('='), 0, 0);
        if (key == QLatin1String("Software-Version"))
            found->firmware = valueOf(line);
        else if (key == QLatin1String("Web-Version"))
            found->webui = valueOf(line);
    }
    found->firmwareByLine = valueOf(lines.value(kFirmwareLine));
    found->webuiByLine = valueOf(lines.value(kWebUiLine));
    return true;
}

} // namespace

QString StoredVersions::forKind(int kind) const
{
    return kind == WebUiUpdate ? webui : firmware;
}

QString StoredVersions::byLineForKind(int kind) const
{
    return kind == WebUiUpdate ? webuiByLine : firmwareByLine;
}

StoredVersions findStoredVersions(const QStringList &winbondReplies, const QStringList &hdsReplies,
                                  const QString &ip)
{
    StoredVersions found;
    for (int i = 1; i < winbondReplies.size(); ++i)
        fromWinbond(winbondReplies.at(i), ip, &found);
    if (!found.family.isEmpty())
        return found;
    for (int i = 1; i < hdsReplies.size(); ++i)
        fromHds(hdsReplies.at(i), ip, &found);
    return found;
}

} // namespace veltor
