#include "sdcard/sdlisting.h"

namespace veltor {

namespace {

struct Columns
{
    int name, nameLength, time, size;
};

// Offsets from the line break before the line.
constexpr Columns kRoot{33, 9, 61, -1};
constexpr Columns kFolder{31, 10, 72, -1};
constexpr Columns kImages{41, 19, 100, 138};
constexpr Columns kRecords{41, 25, 112, 150};
constexpr int kTimeLength = 17;
constexpr int kSizeLength = 8;

bool isImages(const QString &subFolder)
{
    return subFolder.contains(QLatin1String("images"));
}

bool isRecords(const QString &subFolder)
{
    return subFolder.contains(QLatin1String("record"));
}

// Every line that follows a line break and ends with one, each with its
// leading break so that the offsets count from it. Cutting within the line
// keeps a short line's fields short instead of running into the next line.
QStringList readLines(const QByteArray &body)
{
    const QString text = QString::fromLatin1(body);
    QStringList lines;
    int p = text.indexOf(QLatin1Char('\n'));
    while (p >= 0) {
        const int next = text.indexOf(QLatin1Char('\n'), p + 1);
        if (next < 0)
            break;
        lines.append(text.mid(p, next - p));
        p = next;
    }
    return lines;
}

bool keep(const SdEntry &entry, SdLevel level)
{
    switch (level) {
    case SdLevel::Root:
        return entry.name.length() >= 9 && entry.name.at(8) == QLatin1Char('/');
    case SdLevel::Folder:
        return entry.name.endsWith(QLatin1Char('/'));
    case SdLevel::SubFolder:
        return true;
    }
    return false;
}

const Columns *columnsFor(SdLevel level, const QString &subFolder)
{
    switch (level) {
    case SdLevel::Root:
        return &kRoot;
    case SdLevel::Folder:
        return &kFolder;
    case SdLevel::SubFolder:
        if (isImages(subFolder))
            return &kImages;
        if (isRecords(subFolder))
            return &kRecords;
    }
    return nullptr;
}

} // namespace

QString sdSizeText(const QString &field, bool recordFolder)
{
    if (field.startsWith(QLatin1Char('0')))
        return QStringLiteral("0");
    if (!recordFolder || field.contains(QLatin1Char('k')))
        return field.section(QLatin1Char('k'), 0, 0) + QLatin1Char('k');
    return field.section(QLatin1Char('M'), 0, 0) + QLatin1Char('M');
}

QVector<SdEntry> parseSdListing(const QByteArray &body, SdLevel level, const QString &subFolder)
{
    QVector<SdEntry> entries;
    const Columns *columns = columnsFor(level, subFolder);
    if (!columns)
        return entries;
    for (const QString &line : readLines(body)) {
        SdEntry entry;
        // QString::mid past the end gives what is there, never more.
        entry.name = line.mid(columns->name, columns->nameLength);
        entry.time = line.mid(columns->time, kTimeLength);
        if (columns->size >= 0)
            entry.size = sdSizeText(line.mid(columns->size, kSizeLength), columns == &kRecords);
        if (keep(entry, level))
            entries.append(entry);
    }
    return entries;
}

QStringList sdSubFolderNames(const QByteArray &body)
{
    QStringList names;
    for (const QString &line : readLines(body)) {
        const QString name = line.mid(kFolder.name, kFolder.nameLength);
        if (name.length() == kFolder.nameLength && name.endsWith(QLatin1Char('/')))
            names.append(name);
    }
    return names;
}

QStringList sdFileNames(const QByteArray &body, const QString &subFolder)
{
    QStringList names;
    const Columns *columns = columnsFor(SdLevel::SubFolder, subFolder);
    if (!columns)
        return names;
    for (const QString &line : readLines(body)) {
        const QString name = line.mid(columns->name, columns->nameLength);
        if (!name.isEmpty())
            names.append(name);
    }
    return names;
}

QString sdLocalName(const QString &cameraName)
{
    const QString local = cameraName.section(QLatin1Char('/'), 0, 0);
    if (local.isEmpty() || local == QLatin1String(".") || local == QLatin1String(".."))
        return QString();
    return local;
}

} // namespace veltor
