#include "sdcard/sdstatus.h"

#include <QStringList>

#include <iomanip>
#include <locale>
#include <sstream>

namespace veltor {

namespace {

constexpr qint64 kKilobytesShownAsKb = 1024;

// Formatted like C's "%.6g" in the C locale: QString::number rounds an exact
// half away from zero (1953.125 would show as 1953.13, the camera tool always
// showed 1953.12), and printf itself would follow the user's locale.
QString megabytes(qint64 kilobytes)
{
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << std::setprecision(6) << double(kilobytes) * 0.0009765625;
    return QString::fromStdString(text.str()) + QLatin1String("MB");
}

} // namespace

QString quotedValue(const QString &text)
{
    return text.split(QLatin1Char('"')).value(1);
}

SdStatus parseSdStatus(const QByteArray &body)
{
    QString statusPair;
    QString totalPair;
    QString freePair;
    const QStringList parts = QString::fromLatin1(body).split(QLatin1Char(';'));
    for (const QString &part : parts) {
        const QString key = part.section(QLatin1Char('='), 0, 0);
        const QString value = part.section(QLatin1Char('='), 1, 1);
        // A later match replaces an earlier one; "sdtotalspace" does not
        // contain "sdstatus", so the order of the tests does not matter.
        if (key.contains(QLatin1String("sdstatus")))
            statusPair = value;
        if (key.contains(QLatin1String("sdtotalspace")))
            totalPair = value;
        if (key.contains(QLatin1String("sdfreespace")))
            freePair = value;
    }
    SdStatus status;
    status.status = quotedValue(statusPair);
    status.totalText = quotedValue(totalPair);
    status.freeText = quotedValue(freePair);
    status.total = status.totalText.toLongLong();
    status.free = status.freeText.toLongLong();
    return status;
}

SdSizeLabels sdSizeLabels(const SdStatus &status)
{
    // Without both sizes there is nothing true to show: no "KB" without a
    // number, no used space from a missing free count.
    if (status.totalText.isEmpty() || status.freeText.isEmpty())
        return {};
    const bool smallCard = status.total <= kKilobytesShownAsKb;
    const qint64 used = status.used();
    SdSizeLabels labels;
    labels.total = smallCard ? status.totalText + QLatin1String("KB") : megabytes(status.total);
    labels.free = smallCard ? status.freeText + QLatin1String("KB") : megabytes(status.free);
    labels.used =
        used <= kKilobytesShownAsKb ? QString::number(used) + QLatin1String("KB") : megabytes(used);
    return labels;
}

} // namespace veltor
