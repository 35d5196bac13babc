#include "app/mainwindow.h"

#include "discovery/discoveroutput.h"
#include "discovery/rowmarkers.h"
#include "ui_mainwindow.h"

#include <QAction>
#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QStatusBar>
#include <QStyle>
#include <algorithm>

namespace {

QString rowText(const QTableWidget *table, int row)
{
    QStringList cells;
    for (int column = 0; column < table->columnCount(); ++column) {
        const QTableWidgetItem *item = table->item(row, column);
        cells << (item ? item->text() : QString());
    }
    return cells.join(QLatin1Char('\t'));
}

} // namespace

// Everything here comes after the form's own menus and layout: the findings'
// markers, an entry at the end of the View menu, a status bar below the
// window's rows, and a context menu and Ctrl+C on the four tables.
void MainWindow::setUpTableActions()
{
    rowMarkers =
        new RowMarkers(deviceTables(), style()->standardIcon(QStyle::SP_MessageBoxWarning), this);
    searchSummary = new QLabel(this);
    searchSummary->setObjectName(QStringLiteral("searchSummary"));
    statusBar()->addWidget(searchSummary, 1);

    exportAction = new QAction(tr("Export cameras…"), this);
    exportAction->setObjectName(QStringLiteral("actionExportCameras"));
    connect(exportAction, &QAction::triggered, this, [this] { exportCameras(); });
    ui->menuView->addSeparator();
    ui->menuView->addAction(exportAction);

    // The tables never take the focus, so the shortcut is the window's; a
    // focused text field still copies its own text first.
    auto *copy = new QAction(this);
    copy->setShortcut(QKeySequence::Copy);
    connect(copy, &QAction::triggered, this, [this] {
        const QTableWidget *table = deviceTables().value(ui->tabWidget->currentIndex());
        if (table)
            copyRows(table, rowsToCopy(table));
    });
    addAction(copy);

    for (QTableWidget *table : deviceTables()) {
        table->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(table, &QWidget::customContextMenuRequested, this,
                [this, table](const QPoint &position) { showTableMenu(table, position); });
    }
}

void MainWindow::showTableMenu(QTableWidget *table, const QPoint &position)
{
    const int row = table->rowAt(position.y());
    QMenu menu(this);
    QAction *open = menu.addAction(tr("Open web page"), this,
                                   [this, table, row] { openCameraPage(table, row); });
    QAction *copy = menu.addAction(tr("Copy"), this, [this, table, row] {
        QList<int> rows = rowsToCopy(table);
        copyRows(table, rows.contains(row) ? rows : QList<int>{row});
    });
    copy->setShortcut(QKeySequence::Copy);
    open->setEnabled(row >= 0);
    copy->setEnabled(row >= 0);
    menu.addSeparator();
    menu.addAction(exportAction);
    menu.exec(table->viewport()->mapToGlobal(position));
}

// The selected rows; without a selection, the camera last clicked.
QList<int> MainWindow::rowsToCopy(const QTableWidget *table) const
{
    QList<int> rows;
    for (const QModelIndex &index : table->selectionModel()->selectedIndexes()) {
        if (!rows.contains(index.row()))
            rows << index.row();
    }
    if (rows.isEmpty() && table->item(lastClickedRow, 0))
        rows << lastClickedRow;
    std::sort(rows.begin(), rows.end());
    return rows;
}

void MainWindow::copyRows(const QTableWidget *table, QList<int> rows)
{
    QString text;
    for (int row : qAsConst(rows))
        text += rowText(table, row) % QLatin1Char('\n');
    if (!text.isEmpty())
        QGuiApplication::clipboard()->setText(text);
}

// The very output of `veltor-cli discover --format csv|json`, chosen by the
// file's suffix or else by the filter (whose suffix is then added).
void MainWindow::exportCameras()
{
    const QString csv = tr("CSV files (*.csv)");
    const QString json = tr("JSON files (*.json)");
    QString filter = csv;
    QString path = QFileDialog::getSaveFileName(this, tr("Export cameras"), QString(),
                                                csv % QLatin1String(";;") % json, &filter);
    if (path.isEmpty())
        return;
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix != QLatin1String("csv") && suffix != QLatin1String("json"))
        path += filter == json ? QLatin1String(".json") : QLatin1String(".csv");
    const veltor::OutputFormat format = path.endsWith(QLatin1String(".json"), Qt::CaseInsensitive)
                                            ? veltor::OutputFormat::Json
                                            : veltor::OutputFormat::Csv;
    refreshFindings();
    QString error;
    if (!veltor::saveDiscoverOutput(path, format, heardCameras.listed(rowMacs()), &error))
        QMessageBox::critical(this, tr("Error"),
                              tr("The cameras could not be written to %1: %2").arg(path, error));
}
