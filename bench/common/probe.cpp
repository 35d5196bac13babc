#include "probe.h"

#include <QFile>

StallMeter::StallMeter()
{
    clock.start();
    connect(&timer, &QTimer::timeout, this, &StallMeter::tick);
    timer.setTimerType(Qt::PreciseTimer);
    timer.start(10);
}

void StallMeter::reset()
{
    last = clock.elapsed();
    longest = 0;
}

void StallMeter::tick()
{
    const qint64 now = clock.elapsed();
    longest = qMax(longest, now - last - 10);
    last = now;
}

qint64 peakRssKb()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').value(0).toLongLong();
    }
    return 0;
}
