#pragma once

#include "discovery/devicerecord.h"

#include <QHostAddress>
#include <QStringList>
#include <QVector>

// Both searches on several interfaces at once, for front ends without a
// window: every reply is kept with the interface that received it and its
// source address, and cameras are merged by MAC.
namespace veltor {

struct SearchInterface
{
    QString name;
    QHostAddress address;
    QHostAddress netmask;
    QHostAddress broadcast; // the subnet-directed broadcast
};

// Every up IPv4 interface that can broadcast (loopback excluded).
QVector<SearchInterface> broadcastInterfaces();

struct SeenCamera
{
    DeviceRecord record;
    QString family;                // kWinbondFamily or kHaisiFamily
    QHostAddress interfaceAddress; // of the interface that received the reply
    QHostAddress source;           // the reply's source address
    QStringList findings;          // e.g. "ip-conflict", "other-subnet", "source-differs"
};

struct SearchStats
{
    int interfaces = 0;
    int binarySent = 0;
    int hdsSent = 0;
    int replies = 0;
    int duplicates = 0;
    int malformed = 0;
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
