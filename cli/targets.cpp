#include "cli/targets.h"

#include <QRegularExpression>

namespace veltor::cli {

QString normalizedMac(const QString &text)
{
    static const QRegularExpression separators(QStringLiteral("[:-]"));
    static const QRegularExpression hex12(QStringLiteral("^[0-9A-F]{12}$"));
    QString bare = text.toUpper();
    bare.remove(separators);
    if (!hex12.match(bare).hasMatch())
        return QString();
    QStringList pairs;
    for (int at = 0; at < bare.size(); at += 2)
        pairs << bare.mid(at, 2);
    return pairs.join(QLatin1Char(':'));
}

QVector<SeenCamera> selectTargets(const QVector<SeenCamera> &cameras, const QStringList &targets,
                                  QStringList *missing)
{
    QVector<SeenCamera> chosen;
    for (const QString &target : targets) {
        const QString mac = normalizedMac(target);
        const auto matches = [&](const SeenCamera &camera) {
            return mac.isEmpty() ? camera.record.ip == target
                                 : normalizedMac(camera.record.mac) == mac;
        };
        const auto found = std::find_if(cameras.begin(), cameras.end(), matches);
        if (found == cameras.end())
            missing->append(target);
        else
            chosen << *found;
    }
    return chosen;
}

QVector<SeenCamera> selectFamily(const QVector<SeenCamera> &cameras, const QString &family)
{
    QVector<SeenCamera> chosen;
    for (const SeenCamera &camera : cameras) {
        if (camera.family.compare(family, Qt::CaseInsensitive) == 0)
            chosen << camera;
    }
    return chosen;
}

} // namespace veltor::cli
