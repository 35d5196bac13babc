// The About box shows the version the build was made with, not one written
// into the form, and still looks its text up under the form's context.

#include "app/aboutdialog.h"
#include "app/startup.h"

#include <QLabel>
#include <QTranslator>
#include <QtTest>

namespace {

// Stands in for a German catalogue holding only the About line.
class AboutLineTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        const QString source = QString::fromUtf8(sourceText);
        if (qstrcmp(context, "aboutDialog") != 0 || !source.contains(QLatin1String("Version %1")))
            return QString();
        return QString(source).replace(QLatin1String("Version %1"), QLatin1String("Fassung %1"));
    }
    bool isEmpty() const override { return false; }
};

QString versionLine()
{
    aboutDialog dialog;
    const auto *label = dialog.findChild<QLabel *>(QStringLiteral("label_2"));
    return label ? label->text() : QStringLiteral("(no label_2)");
}

} // namespace

class tst_AboutVersion : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { veltor::initResources(); }
    void showsBuildVersion();
    void versionSurvivesTranslation();
    void germanCatalogueHasVersionLine();
};

void tst_AboutVersion::showsBuildVersion()
{
    const QString text = versionLine();
    QVERIFY2(text.contains(QLatin1String("VELTOR Camera Tool,Version " VELTOR_VERSION "<")),
             qPrintable(text));
    QVERIFY2(!text.contains(QLatin1String("%1")), qPrintable(text));
}

void tst_AboutVersion::versionSurvivesTranslation()
{
    AboutLineTranslator german;
    QVERIFY(QCoreApplication::installTranslator(&german));
    const QString text = versionLine();
    QCoreApplication::removeTranslator(&german);

    QVERIFY2(text.contains(QLatin1String("Fassung " VELTOR_VERSION "<")), qPrintable(text));
}

void tst_AboutVersion::germanCatalogueHasVersionLine()
{
    // A catalogue still keyed on an old "Version x.y" would leave the line English.
    QTranslator german;
    QVERIFY(german.load(QLatin1String(veltor::kGermanTranslation)));
    QVERIFY(QCoreApplication::installTranslator(&german));
    const QString text = versionLine();
    QCoreApplication::removeTranslator(&german);

    QVERIFY2(text.contains(QLatin1String("VELTOR Camera Tool, Version " VELTOR_VERSION "<")),
             qPrintable(text));
}

QTEST_MAIN(tst_AboutVersion)
#include "tst_aboutversion.moc"
