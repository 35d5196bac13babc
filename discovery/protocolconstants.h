#pragma once

#include <QtGlobal>

// Addresses, ports and timings of the camera protocols, in one place.
namespace veltor {

constexpr quint16 kBinarySearchPort = 10000; // "MO_I" search and Winbond configuration
constexpr quint16 kHdsPort = 8002;           // HDS/1.0 SEARCH and CMD
constexpr char kHdsGroup[] = "239.255.250.150";
constexpr char kBroadcastAddress[] = "255.255.255.255";
// Camera families, named after the protocol they answered; compared case-sensitively.
constexpr char kWinbondFamily[] = "Winbond";
constexpr char kHaisiFamily[] = "Haisi";

constexpr int kAutoSearchIntervalMs = 6000;
constexpr int kSearchRounds = 3;
constexpr unsigned kProgressStepMs = 20;  // 101 steps: about two seconds a round
constexpr int kReplySliceMs = 10;         // longest run of reply listing between events
constexpr int kMaxQueuedReplies = 100000; // beyond this a flood is dropped, as the kernel would
constexpr int kMaxEventSliceMs = 100;     // longest slice of event processing in sleep()

// Credential check and configuration follow-up over HTTP.
constexpr int kCredentialCheckTimeoutMs = 5000;
// Reboot progress: 101 steps, about 30 s for Winbond and 150 s for Haisi.
constexpr unsigned kWinbondRebootStepMs = 300;
constexpr unsigned kHaisiRebootStepMs = 1500;
// Meanwhile, and for a while after it, the changed camera is searched for.
constexpr int kChangeSearchIntervalMs = 1500;
constexpr int kChangeGraceMs = 10000;
constexpr unsigned kChangeLookMs = 100;

// Discovery: the Client-ID sent by every HDS/1.0 request (SEARCH and CMD alike),
// and the kernel buffer of the search receivers, large enough that a burst of
// replies waits there while the GUI thread fills the tables.
constexpr char kHdsClientId[] = "TzLqRbHwXeNcKvUaPmYdGsJoFiWnBhVr";
constexpr int kReceiveBufferBytes = 4 * 1024 * 1024;

} // namespace veltor
