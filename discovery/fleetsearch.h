#pragma once

#include "discovery/devicerecord.h"

#include <QHostAddress>
#include <QStringList>
#include <QVector>
#include <optional>

// Both searches on several interfaces at once, for front ends without a
// window: every reply is kept with the interface that received it and its
// source address, and cameras are merged by MAC.
namespace veltor {

struct SearchInterface
{
    QString name;
    QHostAddress address;
    QHostAddress netmask;
    QHostAddress broadcast; // the subnet-directed broadcast; null on a link without one
    int index = 0;          // the system's interface index

    bool contains(const QHostAddress &host) const;
};

// Every up IPv4 interface that can broadcast (loopback excluded).
QVector<SearchInterface> broadcastInterfaces();

// The interface holding `address`, broadcast-capable or not (loopback is
// allowed, for cameras simulated on this host).
std::optional<SearchInterface> interfaceWithAddress(const QHostAddress &address);

// Findings flagged per camera.
constexpr char kFindingIpConflict[] = "ip-conflict";       // another MAC claims the same IP
constexpr char kFindingOtherSubnet[] = "other-subnet";     // outside every receiving subnet
constexpr char kFindingSourceDiffers[] = "source-differs"; // claimed IP is not the source

struct SeenCamera
{
    DeviceRecord record;
    QString family;                // kWinbondFamily or kHaisiFamily
    QHostAddress interfaceAddress; // of the interface that received the reply
    QHostAddress source;           // the reply's source address
    QStringList findings;          // kFinding* texts
    // Every interface that received its replies, `interfaceAddress` first.
    QVector<QHostAddress> receivedOn;
};

struct SearchStats
{
    int interfaces = 0;
    int binarySent = 0;
    int hdsSent = 0;
    int replies = 0;    // every datagram read, whatever became of it
    int duplicates = 0; // replies of a camera already seen (by MAC)
    int malformed = 0;
    int ignored = 0; // received on an interface that was not searched
};

struct FleetSearchOptions
{
    QVector<SearchInterface> interfaces;
    int rounds = 2;
    int waitMs = 2000; // after each round's datagrams
};

struct FleetSearchResult
{
    QVector<SeenCamera> cameras; // ordered by address, as the window lists them
    SearchStats stats;
    QStringList errors; // e.g. a port that could not be bound
};

// Runs the searches in a local event loop and returns when the last wait ends.
FleetSearchResult searchFleet(const FleetSearchOptions &options);

} // namespace veltor
