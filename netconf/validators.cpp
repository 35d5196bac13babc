#include "netconf/validators.h"

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <QRegularExpression>
#else
#include <QRegExp>
#endif

namespace veltor {

namespace {

const QString ipv4Pattern = QStringLiteral(
    "\\b(?:(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)\\.){3}(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)"
    "\\b");
const QString portPattern = QStringLiteral(
    "^([0-9]|[1-9]\\d|[1-9]\\d{2}|[1-9]\\d{3}|[1-5]\\d{4}|6[0-4]\\d{3}|65[0-4]\\d{2}|655[0-2]\\d|"
    "6553[0-5])$");

// Whole-text match with QRegExp's rules. Qt 6 has only QRegularExpression:
// anchored, with Unicode classes, and with \d kept to the BMP, since QRegExp
// sees a digit beyond it as two surrogates, it accepts and rejects the same texts.
bool matchesWhole(const QString &pattern, const QString &text)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    QString bmpPattern = pattern;
    bmpPattern.replace(QLatin1String("\\d"), QLatin1String("(?:(?![\\x{10000}-\\x{10ffff}])\\d)"));
    const QRegularExpression expression(QRegularExpression::anchoredPattern(bmpPattern),
                                        QRegularExpression::UseUnicodePropertiesOption);
    return expression.match(text).hasMatch();
#else
    return QRegExp(pattern).exactMatch(text);
#endif
}

bool allOf(const QString &text, const QString &allowed)
{
    for (const QChar c : text) {
        if (!allowed.contains(c))
            return false;
    }
    return true;
}

} // namespace

bool checkIp(const QString &text)
{
    return matchesWhole(ipv4Pattern, text);
}

bool checkSubnet(const QString &text)
{
    return checkIp(text);
}

bool checkGateway(const QString &text)
{
    return checkIp(text);
}

bool checkDns(const QString &text)
{
    return checkIp(text);
}

bool checkPort(const QString &text)
{
    return matchesWhole(portPattern, text);
}

bool isNum(const QString &text)
{
    return allOf(text, QStringLiteral("0123456789"));
}

bool isAddr(const QString &text)
{
    return allOf(text, QStringLiteral("0123456789."));
}

int ipToKey(const QString &dotted)
{
    const QStringList parts = dotted.split(QLatin1Char('.'));
    QString joined;
    for (int i = 0; i < 4 && i < parts.size(); ++i)
        joined += parts.at(i);
    bool ok = false;
    const int key = joined.toInt(&ok, 10);
    return ok ? key : 0;
}

bool appendWinbondIP(const QStringList &ipValues, QByteArray *data, int start)
{
    for (int i = 0; i < ipValues.size(); ++i) {
        bool ok = false;
        const ushort value = ipValues.at(i).toUShort(&ok, 10);
        if (!ok || value >= 256)
            return false;
        data->insert(start + i, char(value));
    }
    return true;
}

} // namespace veltor
