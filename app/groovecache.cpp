#include "app/groovecache.h"

#include <QEvent>
#include <QProgressBar>
#include <QStyleOptionProgressBar>
#include <QStylePainter>

namespace {

// What QProgressBar::initStyleOption (protected) fills in for its own painting.
QStyleOptionProgressBar styleOption(const QProgressBar *bar)
{
    QStyleOptionProgressBar option;
    option.initFrom(bar);
    if (bar->orientation() == Qt::Horizontal)
        option.state |= QStyle::State_Horizontal;
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    option.orientation = bar->orientation();
#endif
    option.minimum = bar->minimum();
    option.maximum = bar->maximum();
    option.progress = bar->value();
    option.textAlignment = bar->alignment();
    option.textVisible = bar->isTextVisible();
    option.text = bar->text();
    option.invertedAppearance = bar->invertedAppearance();
    option.bottomToTop = bar->textDirection() == QProgressBar::BottomToTop;
    return option;
}

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
    const QStyleOptionProgressBar option = styleOption(bar);
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
