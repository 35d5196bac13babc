#pragma once

#include <QString>

namespace veltor {

// One camera as listed: the ten cells of its row, the same in all four device
// tables, plus the HDS "Device-ID" (kept per MAC, never shown).
struct DeviceRecord
{
    static constexpr int kColumnCount = 10;

    QString name;
    QString ip;
    QString port;
    QString mac;
    QString dhcp; // "on", "off" or empty when the camera sent neither flag
    QString subnet;
    QString gateway;
    QString dns;
    QString firmware;
    QString webui;
    QString deviceId;

    // Cell text of table column `column` (0 Name .. 9 WebUI Version).
    QString column(int column) const;
};

// "1" gives "on", "0" gives "off", anything else the empty text.
QString dhcpText(const QString &flag);

} // namespace veltor
