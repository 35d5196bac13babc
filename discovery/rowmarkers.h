#pragma once

#include "discovery/fleetsearch.h"

#include <QHash>
#include <QIcon>
#include <QList>
#include <QObject>
#include <QVector>
#include <functional>

class QTableWidget;

// Puts a marker (icon and tooltip) on the name cells of the device tables, a
// few rows at a time between events, so that marking thousands of cameras
// never holds the window. A row is found by its MAC, since rows listed
// meanwhile move the others down.
class RowMarkers : public QObject
{
public:
    // The tooltip of a camera's findings; empty: no marker.
    using ToolTip = std::function<QString(const veltor::SeenCamera &)>;

    RowMarkers(const QList<QTableWidget *> &tables, const QIcon &icon, QObject *parent);

    // The texts are made as the rows are marked, by the newest `toolTip`.
    void post(const QVector<veltor::SeenCamera> &cameras, const ToolTip &toolTip);
    void clear(); // a new search: the rows are gone

private:
    void markSlice();
    int rowOf(const QString &mac);

    QList<QTableWidget *> tables;
    QIcon icon;
    ToolTip toolTip;
    QVector<veltor::SeenCamera> pending;
    int next = 0;
    bool sliceQueued = false;
    QHash<QString, int> rowByMac; // rebuilt when a row is not where it was
};
