#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>

class MainWindow;
class QTimer;

// Presses the default button of every message box that comes up and records
// its title and text, however many follow one another. Any other modal dialog
// gets the next of `dialogActions` once its OK button is enabled (no check
// running), or is rejected when none is left.
class BoxRecorder : public QObject
{
    Q_OBJECT

public:
    explicit BoxRecorder(QObject *parent = nullptr);

    QStringList titles;
    QStringList texts;
    QStringList dialogTitles;
    QList<std::function<void(QWidget *)>> dialogActions;

private:
    void answer(QWidget *modal);

    QTimer *poll;
};

// A box text with the seconds a wait took written as "N", for comparing.
QString secondsAsN(const QString &text);

// A dialog action: types user and password into the credential dialog and presses OK.
std::function<void(QWidget *)> typeCredentials(const QString &user, const QString &password);

// True inside the private namespace of run-in-netns.sh, where broadcast and
// multicast stay on this machine; only there may a test let the tool send.
bool sendingIsHermetic(QString *why);

// Puts one camera into the IP Conf. table and unlocks it the way the
// credential dialog does, so the form submits for it.
void prepareCamera(MainWindow *window, const QString &ip, const QString &mac,
                   const QStringList &credentials);

// Fills the IP Conf. form.
void fillForm(MainWindow *window, bool dhcp, const QString &port, const QStringList &addresses);
