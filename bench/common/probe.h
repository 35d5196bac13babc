#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

// The tool process's responsiveness: a 10 ms timer, and the longest gap
// between its ticks beyond those 10 ms since the last reset().
class StallMeter : public QObject
{
public:
    StallMeter();
    void reset();
    qint64 longestStallMs() const { return longest; }

private:
    void tick();

    QTimer timer;
    QElapsedTimer clock;
    qint64 last = 0;
    qint64 longest = 0;
};

// VmHWM of /proc/self/status in KiB; 0 when unreadable.
qint64 peakRssKb();
