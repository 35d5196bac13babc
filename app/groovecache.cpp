#include "app/groovecache.h"

#include <QEvent>
#include <QProgressBar>
#include <QStyleOptionProgressBar>
#include <QStylePainter>

namespace {

// Exposes the style option QProgressBar fills for its own painting.
class OptionReader : public QProgressBar
{
public:
    using QProgressBar::initStyleOption;
};

} // namespace

GrooveCache::GrooveCache(QProgressBar *bar) : QObject(bar), bar(bar)
{
    bar->installEventFilter(this);
}

bool GrooveCache::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != bar || event->type() != QEvent::Paint)
        return false;
    paint();
    return true;
}

void GrooveCache::paint()
{
    QStyleOptionProgressBar option;
    static_cast<OptionReader *>(bar)->initStyleOption(&option);
    const qreal ratio = bar->devicePixelRatioF();
    const QString key = QStringLiteral("%1x%2@%3 %4 %5 %6")
                            .arg(bar->width())
                            .arg(bar->height())
                            .arg(ratio)
                            .arg(int(option.state))
                            .arg(bar->palette().cacheKey())
                            .arg(quintptr(bar->style()));
    if (key != grooveKey) {
        groove = QPixmap(bar->size() * ratio);
        groove.setDevicePixelRatio(ratio);
        groove.fill(Qt::transparent);
        QPainter painter(&groove);
        QStyleOptionProgressBar grooveOption = option;
        grooveOption.rect =
            bar->style()->subElementRect(QStyle::SE_ProgressBarGroove, &option, bar);
        bar->style()->drawControl(QStyle::CE_ProgressBarGroove, &grooveOption, &painter, bar);
        grooveKey = key;
    }
    QStylePainter painter(bar);
    painter.drawPixmap(0, 0, groove);
    QStyleOptionProgressBar part = option;
    part.rect = bar->style()->subElementRect(QStyle::SE_ProgressBarContents, &option, bar);
    painter.drawControl(QStyle::CE_ProgressBarContents, part);
    if (option.textVisible) {
        part.rect = bar->style()->subElementRect(QStyle::SE_ProgressBarLabel, &option, bar);
        painter.drawControl(QStyle::CE_ProgressBarLabel, part);
    }
}
