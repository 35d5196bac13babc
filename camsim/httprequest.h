#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

namespace veltor::camsim {

// One HTTP request head as a camera's web server sees it.
struct HttpRequest
{
    QByteArray method;
    QByteArray target;   // as sent, path and query
    QByteArray version;  // "HTTP/1.1"
    QString path;        // percent-decoded, without the query
    QByteArray rawQuery; // after the first "?", undecoded
    // Decoded like a CGI web server does: split at "&", key and value at the
    // first "=", "+" is a blank, percent escapes decoded as UTF-8. Empty
    // pieces ("?&usr=") are skipped.
    QList<QPair<QString, QString>> query;
    QList<QPair<QByteArray, QByteArray>> headers; // in the order received, values trimmed
    QByteArray head; // the raw bytes up to and including the empty line

    bool hasQueryItem(const QString &key) const;
    QString queryValue(const QString &key) const;    // first one; empty when absent
    QByteArray header(const QByteArray &name) const; // case-insensitive, first one
    qint64 contentLength() const;                    // -1 when absent or not a number
};

struct HttpRequestParse
{
    enum Status { Incomplete, Complete, Bad };
    Status status = Incomplete;
    HttpRequest request;
    int headSize = 0; // bytes of the buffer taken by the head
    QString error;
};

// Reads one request head from the start of `buffer`. Bodies are left to the caller.
HttpRequestParse parseHttpRequest(const QByteArray &buffer);

// The query decoding above, on its own.
QList<QPair<QString, QString>> decodeQuery(const QByteArray &rawQuery);

} // namespace veltor::camsim
