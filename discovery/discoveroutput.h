#pragma once

#include "discovery/fleetsearch.h"

#include <QStringList>
#include <QVector>

class QTextStream;

// The cameras of a search as text, for `veltor-cli discover` and the window's
// export alike: the ten columns of the device tables, then family, receiving
// interface(s), source address and findings.
namespace veltor {

enum class OutputFormat { Table, Csv, Json };

// "table", "csv" or "json"; empty for anything else.
std::optional<OutputFormat> outputFormat(const QString &name);

QStringList discoverHeaders();
// One row's cells; the interface cell lists every receiving interface,
// findings are joined by " ".
QStringList discoverCells(const SeenCamera &camera);

// One field as RFC 4180 wants it: quoted when it holds a comma, a quote or a
// line break, quotes doubled.
QString csvField(const QString &text);

// Camera texts shown on a terminal lose their control and format characters,
// so a hostile name cannot move the cursor, retitle the window or reverse text.
QString printable(const QString &text);

void writeDiscoverOutput(QTextStream &out, OutputFormat format, const QVector<SeenCamera> &cameras);

// The same output written to a file whole, or not at all (an existing file is
// then left as it was); false with `error` set when that failed.
bool saveDiscoverOutput(const QString &path, OutputFormat format,
                        const QVector<SeenCamera> &cameras, QString *error);

} // namespace veltor
