#pragma once

#include "discovery/fleetsearch.h"

#include <QByteArray>
#include <QHash>
#include <QHostAddress>

// The pure half of the fleet search: what becomes of each datagram, and the
// findings over the merged cameras. No sockets here.
namespace veltor {

struct ReceivedReply
{
    QByteArray data;
    quint16 port = 0; // kBinarySearchPort or kHdsPort: the protocol, hence the parser
    QHostAddress source;
    QHostAddress interfaceAddress;
};

class FleetMerge
{
public:
    enum Outcome { NewCamera, Duplicate, Malformed, OwnSearch };

    // Our own searches come back to us (broadcast and multicast loop back on
    // this host); they are neither cameras nor malformed.
    Outcome add(const ReceivedReply &reply);

    // In the window's order: by ordering key, a later camera before earlier
    // ones with an equal key.
    QVector<SeenCamera> cameras() const;

private:
    QVector<SeenCamera> seen; // in order of arrival
    QHash<QString, int> byKey;
};

// Flags every camera (see the kFinding* texts) and puts the receiving
// interface whose subnet holds the camera first. A camera seen on several
// interfaces is unreachable only when none of their subnets holds it.
void flagFindings(QVector<SeenCamera> *cameras, const QVector<SearchInterface> &interfaces);

} // namespace veltor
