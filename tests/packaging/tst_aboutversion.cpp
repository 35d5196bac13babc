// The About box shows the version the build was made with, not one written
// into the form, and still looks its text up under the form's context: a
// catalogue keyed on an old "Version x.y" would leave the German line English.

#include "app/aboutdialog.h"
#include "app/startup.h"

#include <QLabel>
#include <QTranslator>
#include <QtTest>

class tst_AboutVersion : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { veltor::initResources(); }
    void versionLine_data();
    void versionLine();
};

void tst_AboutVersion::versionLine_data()
{
    QTest::addColumn<bool>("german");
    QTest::addColumn<QString>("expected");
    QTest::newRow("english") << false << "VELTOR Camera Tool,Version " VELTOR_VERSION "<";
    QTest::newRow("german") << true << "VELTOR Camera Tool, Version " VELTOR_VERSION "<";
}

void tst_AboutVersion::versionLine()
{
    QFETCH(bool, german);
    QFETCH(QString, expected);
    QTranslator translator;
    if (german) {
        QVERIFY(translator.load(QLatin1String(veltor::kGermanTranslation)));
        QVERIFY(QCoreApplication::installTranslator(&translator));
    }
    aboutDialog dialog;
    QCoreApplication::removeTranslator(&translator);
    const QString text = dialog.findChild<QLabel *>(QStringLiteral("label_2"))->text();
    QVERIFY2(text.contains(expected) && !text.contains("%1"), qPrintable(text));
}

QTEST_MAIN(tst_AboutVersion)
#include "tst_aboutversion.moc"
