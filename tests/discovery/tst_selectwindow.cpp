// Row highlight across the four tables and opening a camera in the browser.
#include "app/mainwindow.h"

#include <QDesktopServices>
#include <QTableWidget>
#include <QtTest>

namespace {

const QColor kHighlight(73, 178, 235);
const QColor kWhite(255, 255, 255);
const QColor kBlack(0, 0, 0);

QTableWidget *deviceTable(const MainWindow &window, int n)
{
    return window.findChild<QTableWidget *>(QStringLiteral("tableWidgetSearch_%1").arg(n));
}

// Rows 0..4 are cameras; row 3 has no DHCP item, row 5 only empty texts.
void fillTables(const MainWindow &window)
{
    for (int n = 1; n <= 4; ++n) {
        QTableWidget *table = deviceTable(window, n);
        table->setRowCount(6);
        for (int row = 0; row < 6; ++row) {
            for (int column = 0; column < table->columnCount(); ++column) {
                if (row == 3 && column == 4)
                    continue;
                QString text = row == 5 ? QString() : QStringLiteral("r%1c%2").arg(row).arg(column);
                if (column == 1 && row < 5)
                    text = QStringLiteral("192.168.1.5");
                if (column == 2 && row < 5)
                    text = row == 1 ? QStringLiteral("80") : QStringLiteral("8080");
                table->setItem(row, column, new QTableWidgetItem(text));
            }
        }
    }
}

// "highlight", "normal" or "unpainted" when all painted cells of the row agree
// in all four tables, else "mixed".
QString rowPaint(const MainWindow &window, int row)
{
    QSet<QString> seen;
    for (int n = 1; n <= 4; ++n) {
        const QTableWidget *table = deviceTable(window, n);
        for (int column = 0; column < table->columnCount(); ++column) {
            const QTableWidgetItem *item = table->item(row, column);
            if (!item)
                continue;
            const QVariant background = item->data(Qt::BackgroundRole);
            const QVariant foreground = item->data(Qt::ForegroundRole);
            if (!background.isValid() && !foreground.isValid())
                seen << QStringLiteral("unpainted");
            else if (background == kHighlight && foreground == kWhite)
                seen << QStringLiteral("highlight");
            else if (background == kWhite && foreground == kBlack)
                seen << QStringLiteral("normal");
            else
                seen << QStringLiteral("other");
        }
    }
    return seen.size() == 1 ? *seen.begin() : QStringLiteral("mixed");
}

} // namespace

class UrlCatcher : public QObject
{
    Q_OBJECT

public slots:
    void open(const QUrl &url) { urls << url; }

public:
    QList<QUrl> urls;
};

class tst_SelectWindow : public QObject
{
    Q_OBJECT

private slots:
    void clicks_data();
    void clicks();
    void doubleClick_data();
    void doubleClick();
};

void tst_SelectWindow::clicks_data()
{
    QTest::addColumn<QList<int>>("clickedRows");
    QTest::addColumn<QStringList>("paintOfRows"); // rows 0..5 after the clicks

    const QString u = "unpainted", h = "highlight", n = "normal";
    QTest::newRow("first click") << QList<int>{2} << QStringList{u, u, h, u, u, u};
    QTest::newRow("row 4 after row 2") << QList<int>{2, 4} << QStringList{u, u, n, u, h, u};
    QTest::newRow("same row twice") << QList<int>{2, 2} << QStringList{u, u, h, u, u, u};
    QTest::newRow("row without DHCP item") << QList<int>{3} << QStringList{u, u, u, h, u, u};
    QTest::newRow("empty cell") << QList<int>{5} << QStringList{u, u, u, u, u, u};
    QTest::newRow("empty cell after row 2") << QList<int>{2, 5} << QStringList{u, u, n, u, u, u};
    QTest::newRow("beyond the rows") << QList<int>{1, 9, 0} << QStringList{h, n, u, u, u, u};
}

void tst_SelectWindow::clicks()
{
    QFETCH(QList<int>, clickedRows);
    QFETCH(QStringList, paintOfRows);

    MainWindow window;
    fillTables(window);
    for (int row : clickedRows)
        emit deviceTable(window, 1)->cellClicked(row, 0);
    QStringList paint;
    for (int row = 0; row < 6; ++row)
        paint << rowPaint(window, row);
    QCOMPARE(paint, paintOfRows);
}

void tst_SelectWindow::doubleClick_data()
{
    QTest::addColumn<int>("table");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("url");

    for (int n = 1; n <= 4; ++n) {
        QTest::addRow("table %d, port 8080", n) << n << 0 << "http://192.168.1.5:8080";
        QTest::addRow("table %d, port 80 written", n) << n << 1 << "http://192.168.1.5:80";
    }
}

void tst_SelectWindow::doubleClick()
{
    QFETCH(int, table);
    QFETCH(int, row);
    QFETCH(QString, url);

    MainWindow window;
    fillTables(window);
    UrlCatcher catcher;
    QDesktopServices::setUrlHandler(QStringLiteral("http"), &catcher, "open");
    emit deviceTable(window, table)->cellDoubleClicked(row, 7); // the column does not matter
    QDesktopServices::unsetUrlHandler(QStringLiteral("http"));
    QCOMPARE(catcher.urls.size(), 1);
    QCOMPARE(catcher.urls.first().toString(), url);
}

QTEST_MAIN(tst_SelectWindow)
#include "tst_selectwindow.moc"
