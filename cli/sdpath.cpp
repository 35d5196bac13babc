#include "cli/sdpath.h"

#include <QRegularExpression>
#include <QStringList>

namespace veltor::cli {

int SdPath::depth() const
{
    return !file.isEmpty() ? 3 : !subFolder.isEmpty() ? 2 : !folder.isEmpty() ? 1 : 0;
}

std::optional<SdPath> parseSdPath(const QString &text, QString *error)
{
    // "?" and "#" would start the query or fragment; "%" an escape.
    static const QRegularExpression urlBreakers(QStringLiteral("[?#%]"));
    const QStringList parts = text.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        if (part == QLatin1String(".") || part == QLatin1String("..") ||
            part.contains(urlBreakers)) {
            *error = QStringLiteral("\"%1\" is no place on an SD card").arg(text);
            return std::nullopt;
        }
    }
    if (parts.size() > 3) {
        *error = QStringLiteral("\"%1\" is deeper than the card's folders and files").arg(text);
        return std::nullopt;
    }
    SdPath path;
    if (parts.size() > 0)
        path.folder = parts.at(0) + QLatin1Char('/');
    if (parts.size() > 1)
        path.subFolder = parts.at(1) + QLatin1Char('/');
    if (parts.size() > 2)
        path.file = parts.at(2);
    return path;
}

} // namespace veltor::cli
