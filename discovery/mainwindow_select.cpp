#include "app/mainwindow.h"

#include "ui_mainwindow.h"

#include <QDesktopServices>
#include <QUrl>

namespace {

const QColor kHighlight(73, 178, 235, 255);
const QColor kBlack(0, 0, 0);

QUrl cameraUrl(const QTableWidget *table, int row)
{
    const QTableWidgetItem *ip = table->item(row, 1);
    const QTableWidgetItem *port = table->item(row, 2);
    const QString text = QLatin1String("http://") % (ip ? ip->text() : QString()) %
                         QLatin1Char(':') % (port ? port->text() : QString());
    return QUrl(text, QUrl::TolerantMode);
}

} // namespace

void MainWindow::setRowColor(int row, QColor background, QColor foreground)
{
    const int columns = ui->tableWidgetSearch_1->columnCount();
    for (int c = 0; c < columns; ++c) {
        for (QTableWidget *table : {ui->tableWidgetSearch_1, ui->tableWidgetSearch_2,
                                    ui->tableWidgetSearch_3, ui->tableWidgetSearch_4}) {
            // A DHCP cell may hold no item; it is simply not painted.
            if (QTableWidgetItem *item = table->item(row, c)) {
                item->setData(Qt::BackgroundRole, background);
                item->setData(Qt::ForegroundRole, foreground);
            }
        }
    }
}

void MainWindow::highlightClickedRow(QTableWidget *table, int row, int column)
{
    if (table->item(lastClickedRow, 0))
        setRowColor(lastClickedRow, rowTextColor, kBlack);
    const QTableWidgetItem *item = table->item(row, column);
    if (item && !item->isSelected() && !item->text().isEmpty())
        setRowColor(row, kHighlight, rowTextColor);
    lastClickedRow = row;
}

void MainWindow::mycellClicked(int row, int column)
{
    highlightClickedRow(ui->tableWidgetSearch_1, row, column);
}

// The double click's action, also offered by the tables' context menu.
void MainWindow::openCameraPage(const QTableWidget *table, int row)
{
    QDesktopServices::openUrl(cameraUrl(table, row));
}

void MainWindow::mycellDoubleClicked1(int row, int /*column*/)
{
    openCameraPage(ui->tableWidgetSearch_1, row);
}

void MainWindow::mycellDoubleClicked2(int row, int /*column*/)
{
    openCameraPage(ui->tableWidgetSearch_2, row);
}

void MainWindow::mycellDoubleClicked3(int row, int /*column*/)
{
    openCameraPage(ui->tableWidgetSearch_3, row);
}

void MainWindow::mycellDoubleClicked4(int row, int /*column*/)
{
    openCameraPage(ui->tableWidgetSearch_4, row);
}
