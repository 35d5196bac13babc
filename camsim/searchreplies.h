#pragma once

#include "camsim/camerasettings.h"

#include <QByteArray>

// The camera side of the search protocols: what a camera accepts as a search
// and the exact bytes it answers with. Written apart from the tool's own
// parsers on purpose, so each checks the other.
namespace veltor::camsim {

// The 27-byte "MO_I" search; only this exact datagram is answered.
QByteArray binarySearchRequest();
// The 112-byte "SEARCH * HDS/1.0" request; only this exact datagram is answered.
QByteArray hdsSearchRequest();

bool isBinarySearch(const QByteArray &datagram);
bool isHdsSearch(const QByteArray &datagram);

// Winbond reply, 88 bytes: MAC at 23, name at 35, addresses at 57..72,
// versions at 77 and 81, port byte at 86, DHCP byte at 87.
QByteArray winbondReply(const CameraSettings &camera);

// "HDS/1.0 200 OK" reply. Its lines are laid out so that Software-Version is
// line 18 and Web-Version line 19 (counting from 1): readers that go by
// position rather than by key see the same values.
QByteArray hdsReply(const CameraSettings &camera);

// The reply of `family` as this camera sends it, spoiled as its behaviour asks.
QByteArray searchReply(const CameraSettings &camera, Family family);

// Four bytes from dotted text ("1.2.3.4"); missing or bad parts give 0, each
// part is cut to one byte.
QByteArray dottedBytes(const QString &dotted);

} // namespace veltor::camsim
