#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

class MainWindow;
class QTimer;

// Presses the default button of every message box that comes up and records
// its title and text, however many follow one another.
class BoxRecorder : public QObject
{
    Q_OBJECT

public:
    explicit BoxRecorder(QObject *parent = nullptr);

    QStringList titles;
    QStringList texts;

private:
    QTimer *poll;
};

// True inside the private namespace of run-in-netns.sh, where broadcast and
// multicast stay on this machine; only there may a test let the tool send.
bool sendingIsHermetic(QString *why);

// Puts one camera into the IP Conf. table and unlocks it the way the
// credential dialog does, so the form submits for it.
void prepareCamera(MainWindow *window, const QString &ip, const QString &mac,
                   const QStringList &credentials);

// Fills the IP Conf. form.
void fillForm(MainWindow *window, bool dhcp, const QString &port, const QStringList &addresses);
