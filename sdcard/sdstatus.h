#pragma once

#include <QByteArray>
#include <QString>

// The camera's answer to "/param.cgi?cmd=getserverinfo": a run of
// `var key="value";` assignments, of which three keys matter here.
namespace veltor {

// Text between the first and the second double quote (empty when there is none).
QString quotedValue(const QString &text);

struct SdStatus
{
    QString status;    // e.g. Ready; empty when the key is missing
    QString totalText; // kilobytes as sent, quotes removed
    QString freeText;
    qint64 total = 0; // a number that does not parse counts as 0
    qint64 free = 0;

    qint64 used() const { return total - free; }
    // Substring test on purpose: "NotReady" counts as ready.
    bool ready() const { return status.contains(QLatin1String("Ready")); }
};

SdStatus parseSdStatus(const QByteArray &body);

// Texts of the three size labels.
struct SdSizeLabels
{
    QString total;
    QString free;
    QString used;
};

// "<n>KB" up to 1024, else n/1024 in 'g' with 6 digits and "MB". The free
// label picks its unit by the total, as the camera tool always has: a card
// above 1024 KB shows its free space in MB even when less is free. All three
// are empty when the answer lacks the total or the free size.
SdSizeLabels sdSizeLabels(const SdStatus &status);

} // namespace veltor
