#pragma once

#include "camsimfleet.h"
#include "probe.h"

#include <QStringList>
#include <functional>

class MainWindow;
class QTableWidget;

// One line of the result table.
struct Outcome
{
    QString scenario;
    QString result = QStringLiteral("ok");
    qint64 stallMs = 0;
    qint64 rssKb = 0;
    QString files = QStringLiteral("-");
    QString note;

    void fail(const QString &why) { result = QStringLiteral("FAILED: ") + why; }
};

// The window under test, the fleet it talks to, and what every scenario needs.
class Harness
{
public:
    Harness(MainWindow *window, const QVector<camsimfleet::Camera> &fleet);

    MainWindow *window;
    QVector<camsimfleet::Camera> fleet;
    camsimfleet::Camera haisi;
    QTableWidget *searchTable;

    // GET of a camera's path from the tool's side, the event loop running.
    QByteArray get(const camsimfleet::Camera &camera, const QString &pathAndQuery,
                   int timeoutMs = 30000);
    // Runs the event loop until `done` or `timeoutMs`; true when done.
    static bool waitFor(const std::function<bool()> &done, int timeoutMs);
    void search();
    // The camera's row in the tables, -1 when it is not listed.
    int row(const QString &ip) const;
    // Unlocks `camera` through the credential dialog that `clickSlot` (a
    // table click slot of the window) opens; true when it was answered.
    bool unlock(const camsimfleet::Camera &camera, const char *clickSlot);
    // Starts an outcome: stall and message boxes from now on.
    Outcome begin(const QString &scenario);
    // Fills in stall and peak memory.
    void end(Outcome *outcome);

    // Texts of the message boxes closed since begin().
    QStringList boxes;
    StallMeter stall;
    // What the credential dialog is answered with: user, password.
    QPair<QString, QString> login;

private:
    void closeBoxes();
    void answerLogin();

    QObject *answeredDialog = nullptr;
};
