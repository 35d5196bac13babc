#include "camsim/sdcard.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDate>
#include <QImage>
#include <QSet>
#include <QtEndian>

namespace veltor::camsim {

namespace {

const QDate kFirstDay(2026, 11, 23);

// Columns of a listing line. The tool cuts fields at fixed offsets from the
// line break before the line, so a field at offset n starts at column n - 1.
struct Layout
{
    int name, time, size; // columns; size -1 when not shown
};
constexpr Layout kRootColumns{32, 60, -1};
constexpr Layout kFolderColumns{30, 71, -1};
constexpr Layout kPictureColumns{40, 99, 137};
constexpr Layout kRecordColumns{40, 111, 149};

quint64 splitmix(quint64 x)
{
    x += 0x9e3779b97f4a7c15ULL;
    x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9ULL;
    x = (x ^ (x >> 27)) * 0x94d049bb133111ebULL;
    return x ^ (x >> 31);
}

// A recording: patterned bytes made on demand, announcing `size` bytes even
// when it stops early at `end`.
class PatternDevice : public QIODevice
{
public:
    PatternDevice(quint64 seed, qint64 size, qint64 end) : seed(seed), total(size), end(end)
    {
        open(QIODevice::ReadOnly);
    }
    qint64 size() const override { return total; }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const qint64 from = pos();
        const qint64 count = qMin(maxSize, end - from);
        for (qint64 i = 0; i < count;) {
            const qint64 at = from + i;
            const quint64 word = qToLittleEndian(splitmix(seed ^ quint64(at / 8)));
            const char *bytes = reinterpret_cast<const char *>(&word);
            for (int b = int(at % 8); b < 8 && i < count; ++b, ++i)
                data[i] = bytes[b];
        }
        return qMax<qint64>(0, count);
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    quint64 seed;
    qint64 total;
    qint64 end;
};

// Drawn pixel by pixel: text or QPainter fonts would need a GUI application.
QByteArray makePicture(int seed)
{
    QImage image(320, 240, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            row[x] = qRgb((x + seed * 7) & 0xff, (y * 2 + seed * 13) & 0xff, (x ^ y ^ seed) & 0xff);
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG", 85);
    return bytes;
}

QString sizeText(qint64 bytes, bool record)
{
    if (bytes == 0)
        return QStringLiteral("0");
    if (!record || bytes < 1024 * 1024)
        return QString::number((bytes + 1023) / 1024) + QLatin1Char('k');
    return QString::number(double(bytes) / (1024 * 1024), 'f', 1).remove(QStringLiteral(".0")) +
           QLatin1Char('M');
}

void put(QByteArray *line, int column, const QString &text)
{
    if (line->size() < column)
        line->append(QByteArray(column - line->size(), ' '));
    line->append(text.toLatin1());
}

} // namespace

SdCard::SdCard(const SdLayout &layout)
{
    for (int d = 0; d < layout.days; ++d) {
        const QDate day = kFirstDay.addDays(d);
        const QString dayName = day.toString(QStringLiteral("yyyyMMdd")) + QLatin1Char('/');
        const QString time = day.toString(QStringLiteral("dd-MMM-yyyy")) + QLatin1String(" 10:00");
        for (int p = 0; p < layout.pictures; ++p) {
            SdFile file;
            const QString stamp = day.toString(QStringLiteral("yyMMdd")) +
                                  QStringLiteral("10%1%2")
                                      .arg(p / 60 % 60, 2, 10, QLatin1Char('0'))
                                      .arg(p % 60, 2, 10, QLatin1Char('0'));
            file.path = dayName + QLatin1String("images001/P") + stamp +
                        QStringLiteral("%1.jpg").arg(p % 100, 2, 10, QLatin1Char('0'));
            file.picture = makePicture(d * 1000 + p);
            file.size = file.picture.size();
            file.time = time;
            files.insert(file.path, file);
        }
        for (int r = 0; r < layout.recordBytes.size(); ++r) {
            SdFile file;
            file.path = dayName + QStringLiteral("record001/R%1_10%2%3_%4.264")
                                      .arg(day.toString(QStringLiteral("yyyyMMdd")))
                                      .arg(r / 60 % 60, 2, 10, QLatin1Char('0'))
                                      .arg(r % 60, 2, 10, QLatin1Char('0'))
                                      .arg(r % 10000, 4, 10, QLatin1Char('0'));
            file.size = layout.recordBytes.at(r);
            file.seed = splitmix(quint64(d) << 32 | quint64(r));
            file.time = time;
            files.insert(file.path, file);
        }
    }
}

bool SdCard::isFolder(const QString &path) const
{
    if (path.isEmpty())
        return true;
    if (!path.endsWith(QLatin1Char('/')))
        return false;
    for (auto it = files.begin(); it != files.end(); ++it) {
        if (it.key().startsWith(path))
            return true;
    }
    return false;
}

const SdFile *SdCard::file(const QString &path) const
{
    const auto it = files.find(path);
    return it == files.end() ? nullptr : &it.value();
}

qint64 SdCard::usedBytes() const
{
    qint64 used = 0;
    for (const SdFile &file : files)
        used += file.size;
    return used;
}

QStringList SdCard::children(const QString &folder) const
{
    QStringList names;
    QSet<QString> seen;
    for (auto it = files.begin(); it != files.end(); ++it) {
        if (!it.key().startsWith(folder))
            continue;
        const QString rest = it.key().mid(folder.size());
        const int slash = rest.indexOf(QLatin1Char('/'));
        const QString child = slash < 0 ? rest : rest.left(slash + 1);
        if (!seen.contains(child)) {
            seen.insert(child);
            names << child;
        }
    }
    return names;
}

QByteArray SdCard::listing(const QString &folder) const
{
    const int depth = folder.count(QLatin1Char('/'));
    const bool records = folder.contains(QLatin1String("record"));
    const Layout &columns = depth == 0   ? kRootColumns
                            : depth == 1 ? kFolderColumns
                            : records    ? kRecordColumns
                                         : kPictureColumns;
    // The title line comes before the first break and the closing line after
    // the last one: the tool reads neither, so every line it reads is an entry.
    QByteArray page =
        "<html><head><title>Index of /sd/" + folder.toLatin1() + "</title></head><body><pre>\n";
    for (const QString &name : children(folder)) {
        QByteArray line = "<a href=\"" + name.toLatin1() + "\">";
        put(&line, columns.name, name);
        line += "</a>";
        const SdFile *entry = file(folder + name);
        put(&line, columns.time,
            entry ? entry->time : files.lowerBound(folder + name).value().time);
        if (columns.size >= 0)
            put(&line, columns.size, sizeText(entry ? entry->size : 0, records).leftJustified(8));
        else
            line += "    -";
        page += line + '\n';
    }
    return page + "</pre><hr></body></html>";
}

QIODevice *SdCard::open(const SdFile &file, qint64 cutAt)
{
    if (file.picture.isEmpty()) {
        const qint64 end = cutAt >= 0 && cutAt < file.size ? cutAt : file.size;
        return new PatternDevice(file.seed, file.size, end);
    }
    // A picture is cut by the route (closeMidBody): a buffer announces only what it holds.
    auto *buffer = new QBuffer;
    buffer->setData(file.picture);
    buffer->open(QIODevice::ReadOnly);
    return buffer;
}

QByteArray SdCard::sha256(const SdFile &file)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    QIODevice *device = open(file);
    hash.addData(device);
    delete device;
    return hash.result().toHex();
}

} // namespace veltor::camsim
