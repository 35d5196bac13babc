// The fleet search's sockets on the loopback of a private network namespace
// (see in-private-netns.sh), where broadcasts and the HDS group stay local.
#include "discovery/fleetsearch.h"
#include "discovery/protocolconstants.h"

#include <QNetworkInterface>
#include <QThread>
#include <QUdpSocket>
#include <QtTest>
#include <atomic>

using namespace veltor;

namespace {

// Sends garbage to the binary search port as fast as it can until stopped.
class Flooder : public QThread
{
public:
    std::atomic<bool> stop{false};
    std::atomic<int> sent{0};

protected:
    void run() override
    {
        QUdpSocket socket;
        const QByteArray noise(80, '\x5a'); // too short for a reply: malformed, every one
        while (!stop) {
            if (socket.writeDatagram(noise.left(20 + sent % 60), QHostAddress::LocalHost,
                                     kBinarySearchPort) > 0)
                ++sent;
        }
    }
};

} // namespace

class TestFleetSearch : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void floodDoesNotHoldTheSearch();

private:
    SearchInterface loopback;
};

void TestFleetSearch::initTestCase()
{
    const QString problem = qEnvironmentVariable("VELTOR_NETNS_UNAVAILABLE");
    if (!problem.isEmpty())
        QSKIP(qPrintable(problem));
    if (QNetworkInterface::allInterfaces().size() != 1)
        QSKIP("not in a private network namespace (run through in-private-netns.sh)");
    const std::optional<SearchInterface> found = interfaceWithAddress(QHostAddress::LocalHost);
    QVERIFY(found);
    loopback = *found;
}

// Replies that never stop must not keep the search from ending when its time is up.
void TestFleetSearch::floodDoesNotHoldTheSearch()
{
    Flooder flooder;
    flooder.start();
    QTRY_VERIFY(flooder.sent > 0);
    FleetSearchOptions options;
    options.interfaces = {loopback};
    options.rounds = 2;
    options.waitMs = 200;
    const FleetSearchResult result = searchFleet(options);
    flooder.stop = true;
    flooder.wait();
    QVERIFY2(result.errors.isEmpty(), qPrintable(result.errors.join('\n')));
    QVERIFY(result.cameras.isEmpty());
    QVERIFY(result.stats.malformed > 0);
    QCOMPARE(result.stats.replies, result.stats.malformed);
    // The directed broadcast, if the link has one, and 255.255.255.255, each round.
    QCOMPARE(result.stats.binarySent, loopback.broadcast.isNull() ? 2 : 4);
    QCOMPARE(result.stats.hdsSent, 2);
}

QTEST_GUILESS_MAIN(TestFleetSearch)
#include "tst_fleetsearch.moc"
