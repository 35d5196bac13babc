#include "camsim/httprequest.h"

namespace veltor::camsim {

namespace {

constexpr int kMaxHeadSize = 64 * 1024;

QString decodeComponent(QByteArray text, bool plusIsBlank)
{
    if (plusIsBlank)
        text.replace('+', ' ');
    return QString::fromUtf8(QByteArray::fromPercentEncoding(text));
}

HttpRequestParse bad(const QString &why)
{
    HttpRequestParse parse;
    parse.status = HttpRequestParse::Bad;
    parse.error = why;
    return parse;
}

bool parseRequestLine(const QByteArray &line, HttpRequest &request)
{
    const QList<QByteArray> parts = line.split(' ');
    if (parts.size() != 3 || parts[0].isEmpty() || parts[1].isEmpty() ||
        !parts[2].startsWith("HTTP/"))
        return false;
    request.method = parts[0];
    request.target = parts[1];
    request.version = parts[2];
    const int question = request.target.indexOf('?');
    request.path =
        decodeComponent(question < 0 ? request.target : request.target.left(question), false);
    if (question >= 0)
        request.rawQuery = request.target.mid(question + 1);
    request.query = decodeQuery(request.rawQuery);
    return true;
}

} // namespace

QList<QPair<QString, QString>> decodeQuery(const QByteArray &rawQuery)
{
    QList<QPair<QString, QString>> items;
    for (const QByteArray &piece : rawQuery.split('&')) {
        if (piece.isEmpty())
            continue;
        const int equals = piece.indexOf('=');
        const QByteArray key = equals < 0 ? piece : piece.left(equals);
        const QByteArray value = equals < 0 ? QByteArray() : piece.mid(equals + 1);
        items.append({decodeComponent(key, true), decodeComponent(value, true)});
    }
    return items;
}

HttpRequestParse parseHttpRequest(const QByteArray &buffer)
{
    int end = buffer.indexOf("\r\n\r\n");
    int endSize = 4;
    const int bareEnd = buffer.indexOf("\n\n");
    if (bareEnd >= 0 && (end < 0 || bareEnd < end)) {
        end = bareEnd;
        endSize = 2;
    }
    if (end < 0) {
        if (buffer.size() > kMaxHeadSize)
            return bad(QStringLiteral("request head too large"));
        return {};
    }
    HttpRequestParse parse;
    parse.headSize = end + endSize;
    HttpRequest &request = parse.request;
    request.head = buffer.left(parse.headSize);
    QList<QByteArray> lines = buffer.left(end).split('\n');
    for (QByteArray &line : lines) {
        if (line.endsWith('\r'))
            line.chop(1);
    }
    if (!parseRequestLine(lines.takeFirst(), request))
        return bad(QStringLiteral("bad request line"));
    for (const QByteArray &line : qAsConst(lines)) {
        const int colon = line.indexOf(':');
        if (colon <= 0)
            return bad(QStringLiteral("bad header line"));
        request.headers.append({line.left(colon).trimmed(), line.mid(colon + 1).trimmed()});
    }
    parse.status = HttpRequestParse::Complete;
    return parse;
}

bool HttpRequest::hasQueryItem(const QString &key) const
{
    for (const auto &item : query) {
        if (item.first == key)
            return true;
    }
    return false;
}

QString HttpRequest::queryValue(const QString &key) const
{
    for (const auto &item : query) {
        if (item.first == key)
            return item.second;
    }
    return QString();
}

QByteArray HttpRequest::header(const QByteArray &name) const
{
    for (const auto &item : headers) {
        if (item.first.compare(name, Qt::CaseInsensitive) == 0)
            return item.second;
    }
    return QByteArray();
}

qint64 HttpRequest::contentLength() const
{
    bool ok = false;
    const qint64 length = header("Content-Length").toLongLong(&ok);
    return ok && length >= 0 ? length : -1;
}

} // namespace veltor::camsim
