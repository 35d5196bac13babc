#include "discovery/eventwait.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

namespace veltor {

void waitProcessingEvents(unsigned msec, int sliceMs)
{
    const QDeadlineTimer deadline(qint64(msec), Qt::PreciseTimer);
    while (!deadline.hasExpired()) {
        QEventLoop slice;
        QTimer::singleShot(int(qMin<qint64>(sliceMs, deadline.remainingTime())), Qt::PreciseTimer,
                           &slice, &QEventLoop::quit);
        slice.exec();
    }
}

} // namespace veltor
