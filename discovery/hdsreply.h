#pragma once

#include "discovery/devicerecord.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <optional>

// The "HDS/1.0 200 OK" reply of "Haisi" cameras to the SEARCH request.
namespace veltor {

constexpr char kHdsOkStatus[] = "HDS/1.0 200 OK";
// The status line, the fields and the empty part after the last "\r\n".
constexpr int kHdsMinParts = 8;

using HdsFields = QHash<QString, QString>;

// The reply as text: the bytes before the first zero byte, as UTF-8. This is
// what the window keeps of every HDS datagram, accepted or not.
QString hdsReplyText(const QByteArray &datagram);

// key=value fields of an accepted reply. Keys and values are not trimmed; a
// value ends at its first "=", and a repeated key keeps the later value.
std::optional<HdsFields> parseHdsFields(const QString &text);

// The camera of an accepted reply. The name stays empty when the camera sent
// none: the window shows its translated default instead.
std::optional<DeviceRecord> hdsRecordFromText(const QString &text);
std::optional<DeviceRecord> parseHdsReply(const QByteArray &datagram);

} // namespace veltor
