#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <memory>

namespace veltor::camsim {

enum class Family { Winbond, Haisi };

// The exact family texts the tool compares against.
QString familyName(Family family);

// Ways a simulated camera can answer a search badly, to test the tool's parsers.
enum class Malformed {
    None,
    Truncated, // Winbond: exactly 27 bytes; Haisi: the first six lines only
    Random,    // reproducible noise of the reply's length
    Status,    // Haisi: a status line other than "HDS/1.0 200 OK"; Winbond: a foreign header
};

// When a camera takes on network settings it was sent: like a real one after
// a short restart (or at "/reboot.cgi"), at once, web server included, or
// never (it ignores configuration messages).
enum class ApplyMode { Later, Instantly, Never };

// How a camera answers a search; all of it is set per camera.
struct ReplyBehaviour
{
    bool unicast = false;       // to the searcher's address and port instead of broadcast/group
    bool bothProtocols = false; // also answers the other family's search, with the same MAC
    int repeat = 1;             // copies sent per search
    int delayMs = 0;            // wait before the first copy
    int repeatIntervalMs = 10;  // between copies
    // The IP its replies claim when not empty; they still leave from its own
    // address, as from a camera whose settings and socket disagree.
    QString claimedIp;
    Malformed malformed = Malformed::None;
    // Replies never leave this host (demo without a private network): Winbond
    // replies go to loopback's broadcast, Haisi replies to the group with TTL 0.
    bool hostOnly = false;
};

// The card in the camera's SD slot. Only the status numbers live here; the SD
// card feature adds its own content (folders, files) to `files`, keyed by the
// path below "/sd/".
struct SdCardSlot
{
    bool present = true;
    QString status = QStringLiteral("Ready");
    qint64 totalKb = 15558144;
    qint64 freeKb = 7779072;
    QMap<QString, QByteArray> files;
};

// Everything a camera reports or checks. Texts travel as text, as on the wire.
struct CameraSettings
{
    Family family = Family::Winbond;
    int index = 0; // position in the fleet, stable between runs
    QString name;
    QString mac; // "02:56:4C:00:00:01"; Winbond sends it without the colons
    QString ip;
    QString mask;
    QString gateway;
    QString dns;
    quint16 httpPort = 80;
    bool dhcp = false;
    QString firmwareVersion; // four dotted numbers for Winbond
    QString webVersion;
    QString deviceId;
    QString user;
    QString password;
    // After an upload it accepts: the versions it then reports (empty: kept)
    // and how long it stays silent to searches while it restarts.
    QString upgradeFirmwareVersion;
    QString upgradeWebVersion;
    int upgradeRebootMs = 0;
    ApplyMode apply = ApplyMode::Later;
    ReplyBehaviour behaviour;
    std::shared_ptr<SdCardSlot> sdCard = std::make_shared<SdCardSlot>();
};

} // namespace veltor::camsim
