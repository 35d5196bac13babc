#include "discovery/rowmarkers.h"

#include <QElapsedTimer>
#include <QTableWidget>
#include <QTimer>

namespace {

constexpr int kMacColumn = 3;
// Half a listing slice: a slice may follow one of listing before the next
// timer of the window runs.
constexpr int kMarkSliceMs = 10;

QString macAt(const QTableWidget *table, int row)
{
    const QTableWidgetItem *item = table->item(row, kMacColumn);
    return item ? item->text() : QString();
}

} // namespace

RowMarkers::RowMarkers(const QList<QTableWidget *> &tables, const QIcon &icon, QObject *parent)
    : QObject(parent), tables(tables), icon(icon)
{
}

void RowMarkers::post(const QVector<veltor::SeenCamera> &cameras, const ToolTip &makeToolTip)
{
    toolTip = makeToolTip;
    pending += cameras;
    if (!sliceQueued && !pending.isEmpty()) {
        sliceQueued = true;
        QTimer::singleShot(0, this, &RowMarkers::markSlice);
    }
}

void RowMarkers::clear()
{
    pending.clear();
    next = 0;
    rowByMac.clear();
}

void RowMarkers::markSlice()
{
    sliceQueued = false;
    QElapsedTimer slice;
    slice.start();
    while (next < pending.size() && slice.elapsed() < kMarkSliceMs) {
        const veltor::SeenCamera &camera = pending.at(next++);
        const int row = rowOf(camera.record.mac);
        if (row < 0)
            continue;
        const QString text = toolTip(camera);
        // One change signal per cell instead of one per role.
        const QMap<int, QVariant> roles{{Qt::DecorationRole, text.isEmpty() ? QIcon() : icon},
                                        {Qt::ToolTipRole, text}};
        for (QTableWidget *table : qAsConst(tables)) {
            if (table->item(row, 0))
                table->model()->setItemData(table->model()->index(row, 0), roles);
        }
    }
    if (next < pending.size()) {
        sliceQueued = true;
        // A timer, as between the listing's slices: the window's timers run in between.
        QTimer::singleShot(1, Qt::PreciseTimer, this, &RowMarkers::markSlice);
    } else {
        clear();
    }
}

// Rows are looked up once and again only after rows were listed in between.
int RowMarkers::rowOf(const QString &mac)
{
    const QTableWidget *table = tables.first();
    int row = rowByMac.value(mac, -1);
    if (macAt(table, row) != mac) {
        rowByMac.clear();
        for (int each = 0; each < table->rowCount(); ++each)
            rowByMac.insert(macAt(table, each), each);
        row = rowByMac.value(mac, -1);
    }
    return macAt(table, row) == mac ? row : -1;
}
