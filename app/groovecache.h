#pragma once

#include <QObject>
#include <QPixmap>

class QProgressBar;

// Paints a progress bar with its groove kept in a pixmap. The style draws the
// groove (a gradient and a frame) at every step, and a search steps the bar
// 303 times: that drawing was nearly all the CPU an idle search used. The
// groove changes only with the bar's size, state or palette, so it is drawn
// once for each of those and the rest is drawn by the style as before.
class GrooveCache : public QObject
{
public:
    explicit GrooveCache(QProgressBar *bar);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void paint();

    QProgressBar *bar;
    QPixmap groove;
    QString grooveKey;
};
