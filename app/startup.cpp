#include "app/startup.h"

#include "app/startuprules.h"

#include <QCoreApplication>
#include <QDebug>
#include <QTranslator>

static void initResourcesOutsideNamespace()
{
    Q_INIT_RESOURCE(res);
    Q_INIT_RESOURCE(translations);
}

namespace veltor {

void initResources()
{
    initResourcesOutsideNamespace();
}

int installTranslation(const QStringList &uiLanguages, const QString &qmPath)
{
    if (!wantsGerman(uiLanguages))
        return 0;
    // Lives for the whole process, as the application keeps using it.
    auto *translator = new QTranslator;
    if (!translator->load(qmPath)) {
        qDebug() << "Error file not found!";
        return -1;
    }
    QCoreApplication::installTranslator(translator);
    qDebug() << "Translation success!";
    return 0;
}

} // namespace veltor
