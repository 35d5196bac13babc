#pragma once

#include "cli/commands.h"
#include "cli/password.h"
#include "cli/upgradestate.h"
#include "discovery/fleetsearch.h"

#include <QElapsedTimer>
#include <QHash>
#include <QObject>

namespace veltor::cli {

struct UpgradeOptions
{
    int kind = 0; // UpdateKind
    QString file;
    QString expectVersion;
    int parallel = 4;
    int rebootSeconds = 300; // how long a camera may take to show up with the new version
    int searchSeconds = 10;  // how long to search for targets that do not answer
    QString statePath;
    Credentials credentials;
};

// Takes every queued target of `run` through credential check, upload and,
// with an expected version, the search after the reboot; at most `parallel`
// uploads at once. Each change of state is printed and saved to the state file.
class UpgradeRunner : public QObject
{
    Q_OBJECT

public:
    // `cameras`: the search's camera for each target index that was found.
    UpgradeRunner(UpgradeRun &run, const QHash<int, SeenCamera> &cameras,
                  const UpgradeOptions &options, Io io);

    // Returns when no target is queued, uploading or waiting any more.
    void exec();

private:
    void startUploads();
    void begin(int index);
    void upload(int index);
    void uploaded(int index, bool sent, const QString &error);
    void verifyWaiting();
    void expire(int index);
    void setState(int index, TargetState state, const QString &detail = QString());
    int count(TargetState state) const;

    UpgradeRun &run;
    QHash<int, SeenCamera> cameras;
    UpgradeOptions options;
    Io io;
    void printUploadFigures();

    QHash<int, QElapsedTimer> sentAt;
    QElapsedTimer uploading; // from the first upload's start to the last one's end
    qint64 uploadingMs = 0;
    int uploadsSent = 0;
    int active = 0;
    bool saveFailed = false;
};

} // namespace veltor::cli
