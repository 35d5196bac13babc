#pragma once

#include "camsim/camerasettings.h"

#include <QMap>
#include <QStringList>
#include <QVector>

namespace veltor::camsim {

// What the command line asks for; the same cameras come out of the same options.
struct FleetOptions
{
    int winbond = 0;
    int haisi = 0;
    // Addresses of the first cameras; with several, the cameras take turns
    // between the ranges (camera i gets the (i / n)-th address of range i % n).
    QStringList baseIps{QStringLiteral("10.78.1.1")};
    QString mask = QStringLiteral("255.255.0.0");
    QString gateway = QStringLiteral("10.78.0.1");
    QString dns = QStringLiteral("10.78.0.1");
    bool bindEachIp = false;
    bool everyLink = false; // hear HDS searches on every link, not only the default one
    QString listenAddress = QStringLiteral("0.0.0.0"); // when not binding each IP
    quint16 httpPort = 80;
    bool dhcp = false;
    QString user = QStringLiteral("admin");
    QString password = QStringLiteral("admin");
    QString firmwareVersion = QStringLiteral("2.1.0.14");
    QString webVersion = QStringLiteral("1.0.3.7");
    QString namePrefix = QStringLiteral("VELTOR-");
    QString upgradeFirmwareVersion; // reported after an accepted upload; empty: unchanged
    QString upgradeWebVersion;
    int upgradeRebootMs = 0;
    ApplyMode apply = ApplyMode::Later;
    ReplyBehaviour behaviour;
    int spreadMs = 0;                 // cameras' first replies spread evenly over this window
    QMap<int, QStringList> overrides; // fleet index -> "key=value" texts
    QString statusFile;
    bool listAddresses = false;
};

// Fills `options` from the program's arguments; false with a message on bad input.
bool parseFleetOptions(const QStringList &arguments, FleetOptions *options, QString *error);

// The cameras, Winbond first then Haisi, fleet index counting across both.
// Without --bind-each-ip all cameras share one address, so each gets its own
// HTTP port (base port + index).
bool makeCameraSettings(const FleetOptions &options, QVector<CameraSettings> *cameras,
                        QString *error);

// "none", "truncated", "random" or "status".
bool parseMalformed(const QString &text, Malformed *kind);

// "later", "instantly" or "never".
bool parseApplyMode(const QString &text, ApplyMode *mode);

// One "key=value" of --camera; false with a message for unknown keys or values.
bool applyOverride(CameraSettings &camera, const QString &assignment, QString *error);

} // namespace veltor::camsim
