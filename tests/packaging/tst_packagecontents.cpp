// Builds and unpacks the Debian package: name, version, dependencies, and everything the menu
// entry and the metadata point to (validators accept an Exec naming nothing).
#include <QDirIterator>
#include <QImageReader>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QString run(const QString &program, const QStringList &args)
{
    QProcess p;
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(program, args);
    if (!p.waitForFinished(240000) || p.exitStatus() != QProcess::NormalExit || p.exitCode())
        return QStringLiteral("FAILED: ") + program + ' ' + p.errorString() + ' ' + p.readAll();
    return QString::fromLocal8Bit(p.readAll());
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
    void initTestCase()
    {
        const QString out = m_scratch.filePath(QStringLiteral("out"));
        const QString cpack = run(QStringLiteral(VELTOR_CPACK_COMMAND),
                                  {"-G", "DEB", "-B", out, "--config", VELTOR_CPACK_CONFIG});
        QVERIFY2(!cpack.startsWith("FAILED"), qPrintable(cpack));
        const QString arch = run(QStringLiteral("dpkg"), {"--print-architecture"}).trimmed();
        m_deb = out + QStringLiteral("/veltor-camera-tool_" VELTOR_VERSION "_") + arch + ".deb";
        QVERIFY2(QFileInfo::exists(m_deb), qPrintable(QDir(out).entryList().join(' ')));
        const QString unpack = run(QStringLiteral("dpkg-deb"), {"-x", m_deb, path("")});
        QVERIFY2(unpack.isEmpty(), qPrintable(unpack));
    }
    void controlFields()
    {
        const QString control = run(QStringLiteral("dpkg-deb"), {"-f", m_deb});
        // Depends is found by dpkg-shlibdeps, not written by hand: the Qt this build used.
        const QString qt = QString::number(QT_VERSION_MAJOR);
        for (const QString &pattern :
             QStringList{"^Package: veltor-camera-tool$", "^Version: " VELTOR_VERSION "$",
                         "^Maintainer: .*@", "^Depends: .*libqt" + qt + "widgets" + qt,
                         "^Depends: .*libqt" + qt + "network" + qt, "^Depends: .*libc6",
                         "^ VELTOR" /* long description */})
            QVERIFY2(!captures(control, "(" + pattern + ")").isEmpty(),
                     qPrintable(pattern + '\n' + control));
        // No other Qt, and a long description that is no CMake list.
        QVERIFY2(!control.contains(QString("libqt%1").arg(QT_VERSION_MAJOR == 5 ? 6 : 5)) &&
                     !control.contains("\n ;"),
                 qPrintable(control));
    }
    void installedFiles()
    {
        // A stray absolute DESTINATION would land outside the prefix.
        QDirIterator it(path(""), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString relative = QDir(path("")).relativeFilePath(it.next());
            QVERIFY2(relative.startsWith(QLatin1String("usr/")), qPrintable(relative));
        }
        const QString desktop = read("applications/com.veltor.CameraTool.desktop");
        const QString meta = read("metainfo/com.veltor.CameraTool.metainfo.xml");
        // Program names are looked up on PATH, which for a package means /usr/bin.
        const QStringList programs = captures(desktop, "^(?:Exec|TryExec)=(\\S+)") +
                                     captures(meta, "<binary>([^<]+)</binary>");
        QVERIFY(programs.size() >= 2);
        for (const QString &program : programs) {
            const QFileInfo file(path("usr/bin/" + program));
            QVERIFY2(file.isFile() && file.isExecutable(), qPrintable(program));
        }
        for (const QString &id :
             captures(meta, "<launchable type=\"desktop-id\">([^<]+)<") +
                 QStringList{captures(meta, "<id>([^<]+)</id>").value(0) + ".desktop"})
            QVERIFY2(!read("applications/" + id).isEmpty(), qPrintable(id));
        QCOMPARE(captures(meta, "<release [^>]*version=\"([^\"]+)\"").value(0), VELTOR_VERSION);

        const QString icon = captures(desktop, "^Icon=(.*)$").value(0);
        QVERIFY2(!icon.isEmpty() && !icon.contains('/'), "Icon should be a theme name, not a path");
        for (int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
            const QString file = QStringLiteral("usr/share/icons/hicolor/%1x%1/apps/").arg(size);
            QImageReader reader(path(file + icon + ".png"));
            // A picture of the wrong size in a size folder is scaled blurrily again.
            QVERIFY2(reader.format() == "png" && reader.size() == QSize(size, size),
                     qPrintable(file));
        }
    }

private:
    QString path(const QString &relative) const { return m_scratch.filePath("root/" + relative); }
    QString read(const QString &shared) const
    {
        QFile f(path("usr/share/" + shared));
        return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
    }

    QTemporaryDir m_scratch;
    QString m_deb;
};

QTEST_GUILESS_MAIN(tst_PackageContents)
#include "tst_packagecontents.moc"
