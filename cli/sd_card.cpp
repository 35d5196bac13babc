#include "cli/sdactions.h"

#include "sdcard/sdlisting.h"
#include "sdcard/sdtransfer.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

namespace veltor::cli {

namespace {

// A failed request in the words the window uses, with the reason behind.
void reportFailure(const SdAnswer &answer, const char *what, Io io)
{
    io.err << "veltor-cli sd: ";
    if (answer.refused())
        io.err << "Your username or password is not correct!\n";
    else
        io.err << what << " (" << answer.problem << ")\n";
}

bool cardReady(const SdStatus &status, Io io)
{
    if (!status.ready())
        io.err << "veltor-cli sd: No SD card detected\n";
    return status.ready();
}

void printJson(const QJsonValue &value, Io io)
{
    const QJsonDocument document =
        value.isArray() ? QJsonDocument(value.toArray()) : QJsonDocument(value.toObject());
    io.out << document.toJson(QJsonDocument::Indented);
}

SdLevel levelOf(const SdPath &path)
{
    return path.depth() == 0   ? SdLevel::Root
           : path.depth() == 1 ? SdLevel::Folder
                               : SdLevel::SubFolder;
}

void printEntries(const QVector<SdEntry> &entries, bool withSize, Io io)
{
    int width = 0;
    for (const SdEntry &entry : entries)
        width = qMax(width, entry.name.size());
    for (const SdEntry &entry : entries) {
        io.out << entry.name.leftJustified(width + 2);
        if (withSize)
            io.out << entry.size.rightJustified(6) << "  ";
        io.out << entry.time << '\n';
    }
}

} // namespace

std::optional<SdStatus> fetchSdStatus(const SdJob &job, Io io)
{
    const SdAnswer answer =
        fetchAnswer(job.manager, job.camera.statusUrl(), kSdStatusTimeoutMs, kSdStatusMaxBytes);
    if (!answer.ok()) {
        reportFailure(answer, "Could not retrieve SD card information", io);
        return std::nullopt;
    }
    return parseSdStatus(answer.body);
}

bool sdCardReady(const SdJob &job, Io io)
{
    const std::optional<SdStatus> status = fetchSdStatus(job, io);
    return status && cardReady(*status, io);
}

int showSdStatus(const SdJob &job, Io io)
{
    const std::optional<SdStatus> status = fetchSdStatus(job, io);
    if (!status)
        return Failure;
    if (job.json) {
        printJson(QJsonObject{{"status", status->status},
                              {"ready", status->ready()},
                              {"totalKB", double(status->total)},
                              {"usedKB", double(status->used())},
                              {"freeKB", double(status->free)}},
                  io);
    } else {
        const SdSizeLabels labels = sdSizeLabels(*status);
        io.out << "Status: " << status->status << '\n'
               << "Total:  " << labels.total << " (" << status->total << " KB)\n"
               << "Used:   " << labels.used << " (" << status->used() << " KB)\n"
               << "Free:   " << labels.free << " (" << status->free << " KB)\n";
    }
    return cardReady(*status, io) ? Success : Failure;
}

int listSdFolder(const SdJob &job, Io io)
{
    if (!sdCardReady(job, io))
        return Failure;
    const SdAnswer answer = fetchAnswer(job.manager, job.camera.sdUrl(job.path.cameraPath()),
                                        kSdListingTimeoutMs, kSdListingMaxBytes);
    if (!answer.ok()) {
        reportFailure(answer, "Could not retrieve SD card information", io);
        return Failure;
    }
    const SdLevel level = levelOf(job.path);
    const QVector<SdEntry> entries = parseSdListing(answer.body, level, job.path.subFolder);
    if (!job.json) {
        printEntries(entries, level == SdLevel::SubFolder, io);
        return Success;
    }
    QJsonArray rows;
    for (const SdEntry &entry : entries) {
        QJsonObject row{{"name", entry.name}, {"time", entry.time}};
        if (level == SdLevel::SubFolder)
            row.insert("size", entry.size);
        rows.append(row);
    }
    printJson(rows, io);
    return Success;
}

int formatSdCard(const SdJob &job, Io io)
{
    if (!sdCardReady(job, io))
        return Failure;
    const SdAnswer answer =
        fetchAnswer(job.manager, job.camera.formatUrl(), kSdFormatTimeoutMs, kSdStatusMaxBytes);
    if (!answer.ok()) {
        reportFailure(answer, "Unexpected error occured", io);
        return Failure;
    }
    io.out << "Success!\n";
    return Success;
}

} // namespace veltor::cli
