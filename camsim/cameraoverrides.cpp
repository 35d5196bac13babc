#include "camsim/fleetoptions.h"

#include <QHash>
#include <functional>

namespace veltor::camsim {

namespace {

using Setter = std::function<bool(CameraSettings &, const QString &)>;

// One of a fixed set of words; false, leaving `value` alone, for any other.
template <typename T> bool lookUp(const QHash<QString, T> &words, const QString &text, T *value)
{
    if (!words.contains(text))
        return false;
    *value = words.value(text);
    return true;
}

Setter text(QString CameraSettings::*field)
{
    return [field](CameraSettings &camera, const QString &value) {
        camera.*field = value;
        return true;
    };
}

Setter number(int max, const std::function<void(CameraSettings &, int)> &store)
{
    return [max, store](CameraSettings &camera, const QString &value) {
        bool ok = false;
        const int n = value.toInt(&ok);
        if (!ok || n < 0 || n > max)
            return false;
        store(camera, n);
        return true;
    };
}

Setter flag(const std::function<void(CameraSettings &, bool)> &store)
{
    return [store](CameraSettings &camera, const QString &value) {
        if (value != QLatin1String("0") && value != QLatin1String("1"))
            return false;
        store(camera, value == QLatin1String("1"));
        return true;
    };
}

bool setMalformed(CameraSettings &camera, const QString &value)
{
    return parseMalformed(value, &camera.behaviour.malformed);
}

bool setApply(CameraSettings &camera, const QString &value)
{
    return parseApplyMode(value, &camera.apply);
}

// "none": no card; "ready"/"notready": a card with that status.
bool setSdCard(CameraSettings &camera, const QString &value)
{
    if (value == QLatin1String("none"))
        camera.sdCard->present = false;
    else if (value == QLatin1String("ready"))
        camera.sdCard->status = QStringLiteral("Ready");
    else if (value == QLatin1String("notready"))
        camera.sdCard->status = QStringLiteral("NotInserted");
    else
        return false;
    return true;
}

const QHash<QString, Setter> &setters()
{
    static const QHash<QString, Setter> table{
        {QStringLiteral("name"), text(&CameraSettings::name)},
        {QStringLiteral("mac"), text(&CameraSettings::mac)},
        {QStringLiteral("ip"), text(&CameraSettings::ip)},
        {QStringLiteral("mask"), text(&CameraSettings::mask)},
        {QStringLiteral("gateway"), text(&CameraSettings::gateway)},
        {QStringLiteral("dns"), text(&CameraSettings::dns)},
        {QStringLiteral("firmware"), text(&CameraSettings::firmwareVersion)},
        {QStringLiteral("web"), text(&CameraSettings::webVersion)},
        {QStringLiteral("deviceid"), text(&CameraSettings::deviceId)},
        {QStringLiteral("upgrade"), text(&CameraSettings::upgradeFirmwareVersion)},
        {QStringLiteral("upgradeweb"), text(&CameraSettings::upgradeWebVersion)},
        {QStringLiteral("upgradereboot"),
         number(600000, [](CameraSettings &c, int n) { c.upgradeRebootMs = n; })},
        {QStringLiteral("user"), text(&CameraSettings::user)},
        {QStringLiteral("password"), text(&CameraSettings::password)},
        {QStringLiteral("port"),
         number(65535, [](CameraSettings &c, int n) { c.httpPort = quint16(n); })},
        {QStringLiteral("repeat"),
         number(100, [](CameraSettings &c, int n) { c.behaviour.repeat = n; })},
        {QStringLiteral("delay"),
         number(600000, [](CameraSettings &c, int n) { c.behaviour.delayMs = n; })},
        {QStringLiteral("dhcp"), flag([](CameraSettings &c, bool on) { c.dhcp = on; })},
        {QStringLiteral("unicast"),
         flag([](CameraSettings &c, bool on) { c.behaviour.unicast = on; })},
        {QStringLiteral("both"),
         flag([](CameraSettings &c, bool on) { c.behaviour.bothProtocols = on; })},
        {QStringLiteral("malformed"), setMalformed},
        {QStringLiteral("apply"), setApply},
        {QStringLiteral("claim"),
         [](CameraSettings &c, const QString &ip) {
             c.behaviour.claimedIp = ip;
             return true;
         }},
        {QStringLiteral("sd"), setSdCard},
    };
    return table;
}

} // namespace

bool parseMalformed(const QString &text, Malformed *kind)
{
    static const QHash<QString, Malformed> kinds{
        {QStringLiteral("none"), Malformed::None},
        {QStringLiteral("truncated"), Malformed::Truncated},
        {QStringLiteral("random"), Malformed::Random},
        {QStringLiteral("status"), Malformed::Status}};
    return lookUp(kinds, text, kind);
}

bool parseApplyMode(const QString &text, ApplyMode *mode)
{
    static const QHash<QString, ApplyMode> modes{
        {QStringLiteral("later"), ApplyMode::Later},
        {QStringLiteral("instantly"), ApplyMode::Instantly},
        {QStringLiteral("never"), ApplyMode::Never}};
    return lookUp(modes, text, mode);
}

bool applyOverride(CameraSettings &camera, const QString &assignment, QString *error)
{
    const int equals = assignment.indexOf(QLatin1Char('='));
    const QString key = assignment.left(equals);
    const QString value = equals < 0 ? QString() : assignment.mid(equals + 1);
    const Setter setter = setters().value(key);
    if (equals < 0 || !setter) {
        *error =
            QStringLiteral("camera %1: unknown setting \"%2\"").arg(camera.index).arg(assignment);
        return false;
    }
    if (!setter(camera, value)) {
        *error = QStringLiteral("camera %1: bad value in \"%2\"").arg(camera.index).arg(assignment);
        return false;
    }
    return true;
}

} // namespace veltor::camsim
