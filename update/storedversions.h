#pragma once

#include <QString>
#include <QStringList>

// A camera's versions looked up afresh in the raw replies of the last search,
// so the Update tab never shows a version older than what the camera last
// announced.
namespace veltor {

struct StoredVersions
{
    QString family; // "Winbond", "Haisi", or empty when no reply names the address
    QString firmware;
    QString webui;
    // What the kind switch shows: for Haisi the values of the 18th and 19th
    // reply lines whatever their keys, for Winbond the same as above.
    QString firmwareByLine;
    QString webuiByLine;

    // Web interface for kind 1, firmware otherwise.
    QString forKind(int kind) const;
    QString byLineForKind(int kind) const;
};

// Binary replies (hex text) are searched first, then the text replies; in
// each list the first element is never consulted (it is the tool's own
// request) and a later match replaces an earlier one.
StoredVersions findStoredVersions(const QStringList &winbondReplies, const QStringList &hdsReplies,
                                  const QString &ip);

} // namespace veltor
