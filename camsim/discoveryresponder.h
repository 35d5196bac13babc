#pragma once

#include "camsim/simcamera.h"

#include <QObject>
#include <QSet>
#include <QVector>

class QUdpSocket;

namespace veltor::camsim {

// The search side of a whole fleet: one socket on UDP 10000 and one joined to
// the HDS group on 8002, shared by every camera of the process, as many
// cameras on one LAN all hear the same broadcast. A search is handed to every
// camera that speaks its protocol; any other datagram (configuration commands)
// goes to the cameras' datagram handlers, each taking what is meant for it.
class DiscoveryResponder : public QObject
{
    Q_OBJECT

public:
    explicit DiscoveryResponder(QObject *parent = nullptr);

    // With `everyLink` the HDS group is joined on every link, for a camera
    // namespace joined to the tool by several: membership is per link.
    bool start(bool everyLink, QString *error);
    void addCamera(SimCamera *camera);
    // Datagrams from these addresses are our own cameras' replies coming back.
    void ignoreSenders(const QSet<QHostAddress> &addresses) { ownAddresses = addresses; }

    void dispatch(const SimDatagram &datagram);

signals:
    void searchReceived(veltor::camsim::Family protocol);
    // Neither a search nor taken by any camera.
    void unhandledDatagram(const veltor::camsim::SimDatagram &datagram);

private:
    QUdpSocket *openShared(quint16 port, QString *error);
    static bool joinGroup(QUdpSocket *socket, bool everyLink);

    QVector<SimCamera *> cameras;
    QSet<QHostAddress> ownAddresses;
};

} // namespace veltor::camsim
