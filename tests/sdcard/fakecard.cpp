#include "fakecard.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QImage>
#include <QPainter>
#include <QSet>

namespace {

// One listing line, fields at offsets counted from the line break before it.
QByteArray line(std::initializer_list<std::pair<int, QByteArray>> fields)
{
    QByteArray text;
    for (const auto &field : fields) {
        if (text.size() < field.first - 1)
            text.append(QByteArray(field.first - 1 - text.size(), ' '));
        text.replace(field.first - 1, field.second.size(), field.second);
    }
    return text + '\n';
}

QByteArray padded(const QByteArray &text, int width)
{
    return text + QByteArray(qMax(0, width - text.size()), ' ');
}

const QByteArray kTime = "23-Nov-2026 10:00";

QByteArray listing(const QString &folder, const QStringList &children)
{
    QByteArray body =
        "<html><head><title>Index of /sd/" + folder.toLatin1() + "</title></head><pre>\n";
    const int depth = folder.count(QLatin1Char('/'));
    for (const QString &child : children) {
        const QByteArray name = child.toLatin1();
        if (depth == 0)
            body += line({{33, name}, {61, kTime}});
        else if (depth == 1)
            body += line({{31, name}, {72, kTime}});
        else if (folder.contains(QLatin1String("images")))
            body += line({{41, name}, {100, kTime}, {138, padded("57k", 8)}});
        else
            body += line({{41, name}, {112, kTime}, {150, padded("1.5M", 8)}});
    }
    // No break after the closing line: every line after a break is an entry.
    return body + "</pre></html>";
}

} // namespace

QByteArray fakeJpeg(int seed)
{
    QImage image(64, 48, QImage::Format_RGB32);
    image.fill(QColor::fromHsv(seed * 37 % 360, 200, 200));
    QPainter(&image).drawText(4, 24, QString::number(seed));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG");
    return bytes;
}

QByteArray sha256(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
}

FakeCard::FakeCard()
{
    for (const char *day : {"20261123/", "20261124/"}) {
        for (int i = 1; i <= 2; ++i) {
            const QString n = QString::number(i);
            files.insert(day + QStringLiteral("images001/P2611231000000") + n + ".jpg",
                         fakeJpeg(i + (day[7] - '0') * 10));
            QByteArray record(300 * 1024 + i, Qt::Uninitialized);
            for (int b = 0; b < record.size(); ++b)
                record[b] = char((b * 31 + i + day[7]) & 0xff);
            files.insert(day + QStringLiteral("record001/R20261123_100000_000") + n + ".264",
                         record);
        }
    }
}

QMap<QString, QByteArray> FakeCard::filesUnder(const QString &folder) const
{
    QMap<QString, QByteArray> found;
    for (auto it = files.begin(); it != files.end(); ++it) {
        if (it.key().startsWith(folder))
            found.insert(it.key(), it.value());
    }
    return found;
}

FakeCamera::Answer FakeCard::answer(const QString &pathAndQuery)
{
    FakeCamera::Answer answer;
    if (pathAndQuery.startsWith(QLatin1String("/param.cgi?cmd=sdfrmt"))) {
        answer.status = formatAnswer == QLatin1String("ok") ? 200 : 500;
        formatted = answer.status == 200;
        return answer;
    }
    const QString path = pathAndQuery.section(QLatin1Char('?'), 0, 0);
    const QString below = path.mid(4); // after "/sd/"
    if (!path.startsWith(QLatin1String("/sd/")) || failingPaths.contains(below)) {
        answer.status = 404;
        return answer;
    }
    if (files.contains(below)) {
        answer.body = files.value(below);
        if (cutPaths.contains(below))
            answer.cutAfter = answer.body.size() / 2;
        return answer;
    }
    QStringList children;
    QSet<QString> seen;
    for (const QString &file : files.keys()) {
        if (!file.startsWith(below))
            continue;
        const QString rest = file.mid(below.size());
        const int slash = rest.indexOf(QLatin1Char('/'));
        const QString child = slash < 0 ? rest : rest.left(slash + 1);
        if (!seen.contains(child)) {
            seen.insert(child);
            children << child;
        }
    }
    if (formatted)
        children.clear();
    answer.body = listing(below, children);
    return answer;
}
