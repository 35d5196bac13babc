// Builds the Debian package from this build tree, unpacks it into a scratch
// root and checks what a broken package gets wrong: its name, version and
// dependencies, and whether everything the menu entry and the software-centre
// metadata point to is really in it. Validators accept an entry whose Exec or
// Icon names nothing that is installed; this test does not.

#include <QDirIterator>
#include <QImageReader>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <cstdio>

namespace {

const QString kAppId = QStringLiteral("com.veltor.CameraTool");

QString run(const QString &program, const QStringList &args)
{
    QProcess p;
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(program, args);
    if (!p.waitForFinished(240000) || p.exitStatus() != QProcess::NormalExit || p.exitCode())
        return QStringLiteral("FAILED: ") + program + ' ' + p.errorString() + ' ' + p.readAll();
    return QString::fromLocal8Bit(p.readAll());
}

QString readText(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

// The first capture of every match of `pattern` (one per line with ^ and $).
QStringList captures(const QString &text, const QString &pattern)
{
    QStringList found;
    auto it = QRegularExpression(pattern, QRegularExpression::MultilineOption).globalMatch(text);
    while (it.hasNext())
        found << it.next().captured(1);
    return found;
}

} // namespace

class tst_PackageContents : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void controlFields();
    void everythingUnderUsr();
    void referencedFiles();
    void iconSizes();

private:
    QString path(const QString &relative) const { return m_root + '/' + relative; }

    QTemporaryDir m_scratch;
    QString m_deb;
    QString m_root;
    QString m_desktop;
    QString m_meta;
};

void tst_PackageContents::initTestCase()
{
    const QString out = m_scratch.filePath(QStringLiteral("out"));
    const QString cpack = run(QStringLiteral(VELTOR_CPACK_COMMAND),
                              {"-G", "DEB", "-B", out, "--config", VELTOR_CPACK_CONFIG});
    QVERIFY2(!cpack.startsWith("FAILED"), qPrintable(cpack));
    const QString arch = run(QStringLiteral("dpkg"), {"--print-architecture"}).trimmed();
    m_deb = out + QStringLiteral("/veltor-camera-tool_" VELTOR_VERSION "_") + arch + ".deb";
    QVERIFY2(QFileInfo::exists(m_deb), qPrintable(QDir(out).entryList().join(' ')));

    m_root = m_scratch.filePath(QStringLiteral("root"));
    const QString unpack = run(QStringLiteral("dpkg-deb"), {"-x", m_deb, m_root});
    QVERIFY2(unpack.isEmpty(), qPrintable(unpack));
    m_desktop = readText(path("usr/share/applications/" + kAppId + ".desktop"));
    m_meta = readText(path("usr/share/metainfo/" + kAppId + ".metainfo.xml"));
    QVERIFY(!m_desktop.isEmpty() && !m_meta.isEmpty());
}

void tst_PackageContents::controlFields()
{
    const QString control = run(QStringLiteral("dpkg-deb"), {"-f", m_deb});
    // Depends is found by dpkg-shlibdeps, not written by hand: the Qt this build used.
    for (const QString &pattern :
         {QStringLiteral("^Package: veltor-camera-tool$"),
          QStringLiteral("^Version: " VELTOR_VERSION "$"), QStringLiteral("^Maintainer: .*@"),
          QStringLiteral("^Depends: .*libqt%1widgets%1").arg(QT_VERSION_MAJOR),
          QStringLiteral("^Depends: .*libqt%1network%1").arg(QT_VERSION_MAJOR),
          QStringLiteral("^Depends: .*libc6"), QStringLiteral("^ VELTOR") /* long description */}) {
        const QRegularExpression re(pattern, QRegularExpression::MultilineOption);
        QVERIFY2(re.match(control).hasMatch(), qPrintable(pattern + '\n' + control));
    }
    // No other Qt, and a long description that is no CMake list.
    QVERIFY2(!control.contains(QStringLiteral("libqt%1").arg(QT_VERSION_MAJOR == 5 ? 6 : 5)) &&
                 !control.contains("\n ;"),
             qPrintable(control));
}

void tst_PackageContents::everythingUnderUsr()
{
    // A stray absolute DESTINATION would land outside the prefix.
    QDirIterator it(m_root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    QVERIFY(it.hasNext());
    while (it.hasNext()) {
        const QString relative = QDir(m_root).relativeFilePath(it.next());
        QVERIFY2(relative.startsWith(QLatin1String("usr/")), qPrintable(relative));
    }
}

void tst_PackageContents::referencedFiles()
{
    // Program names are looked up on PATH, which for a package means /usr/bin.
    QStringList programs = captures(m_desktop, "^(?:Exec|TryExec)=(\\S+)") +
                           captures(m_meta, "<binary>([^<]+)</binary>");
    QStringList files = captures(m_meta, "<launchable type=\"desktop-id\">([^<]+)<");
    files << captures(m_meta, "<id>([^<]+)</id>").value(0, "no id") + ".desktop";
    QVERIFY(programs.size() >= 2);
    for (const QString &program : programs) {
        const QFileInfo file(path("usr/bin/" + program));
        QVERIFY2(file.isFile() && file.isExecutable(), qPrintable(program));
    }
    for (const QString &desktopId : files)
        QVERIFY2(QFileInfo(path("usr/share/applications/" + desktopId)).isFile(),
                 qPrintable(desktopId));
    QCOMPARE(captures(m_meta, "<release [^>]*version=\"([^\"]+)\"").value(0), VELTOR_VERSION);
    QVERIFY(m_meta.contains("<content_rating"));
}

void tst_PackageContents::iconSizes()
{
    const QString icon = captures(m_desktop, "^Icon=(.*)$").value(0);
    QVERIFY2(!icon.isEmpty() && !icon.contains('/'), "Icon should be a theme name, not a path");
    for (int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
        const QString file = QStringLiteral("usr/share/icons/hicolor/%1x%1/apps/").arg(size) + icon;
        QImageReader reader(path(file + ".png"));
        // A picture of the wrong size in a size folder is scaled blurrily again.
        QVERIFY2(reader.format() == "png" && reader.size() == QSize(size, size), qPrintable(file));
    }
}

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    for (const char *tool : {"dpkg", "dpkg-deb", "dpkg-shlibdeps"}) {
        if (QStandardPaths::findExecutable(QString::fromLatin1(tool)).isEmpty()) {
            std::printf("SKIP: %s not found (Debian packages dpkg, dpkg-dev)\n", tool);
            return 77; // ctest's SKIP_RETURN_CODE for this test
        }
    }
    tst_PackageContents test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_packagecontents.moc"
