// Builds the Debian package from this build tree, unpacks it into a scratch
// root and checks that everything the menu entry and the software-centre
// metadata point to is really in it. Validators accept an entry whose Exec or
// Icon names nothing that is installed; this test does not.

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QImageReader>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

#include <cstdio>
#include <utility>

namespace {

const QString kPackage = QStringLiteral("veltor-camera-tool");
const QString kAppId = QStringLiteral("com.veltor.CameraTool");
// ctest's SKIP_RETURN_CODE for this test.
constexpr int kSkipped = 77;

struct Run
{
    int exitCode = -1;
    QString output;
};

Run run(const QString &program, const QStringList &args)
{
    QProcess p;
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(program, args);
    Run r;
    if (!p.waitForFinished(240000) || p.exitStatus() != QProcess::NormalExit) {
        r.output = program + QStringLiteral(": did not finish: ") + p.errorString();
        return r;
    }
    r.exitCode = p.exitCode();
    r.output = QString::fromLocal8Bit(p.readAll());
    return r;
}

// Untranslated keys of the [Desktop Entry] group.
QHash<QString, QString> readDesktopEntry(const QString &path)
{
    QHash<QString, QString> keys;
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text))
        return keys;
    bool inEntry = false;
    while (!f.atEnd()) {
        const QString line = QString::fromUtf8(f.readLine()).trimmed();
        if (line.startsWith(QLatin1Char('['))) {
            inEntry = line == QLatin1String("[Desktop Entry]");
            continue;
        }
        const int eq = line.indexOf(QLatin1Char('='));
        if (!inEntry || line.startsWith(QLatin1Char('#')) || eq < 0)
            continue;
        const QString key = line.left(eq).trimmed();
        if (!key.contains(QLatin1Char('[')))
            keys.insert(key, line.mid(eq + 1).trimmed());
    }
    return keys;
}

struct Metainfo
{
    QString id;
    QStringList desktopIds;
    QStringList binaries;
    QStringList releases; // newest first, as the format wants
    QStringList screenshots;
    bool contentRating = false;
    QString error;
};

Metainfo readMetainfo(const QString &path)
{
    Metainfo m;
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) {
        m.error = f.errorString();
        return m;
    }
    QXmlStreamReader xml(&f);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const auto name = xml.name();
        if (name == QLatin1String("id")) {
            m.id = xml.readElementText();
        } else if (name == QLatin1String("launchable") &&
                   xml.attributes().value(QLatin1String("type")) == QLatin1String("desktop-id")) {
            m.desktopIds << xml.readElementText();
        } else if (name == QLatin1String("binary")) {
            m.binaries << xml.readElementText();
        } else if (name == QLatin1String("release")) {
            m.releases << xml.attributes().value(QLatin1String("version")).toString();
        } else if (name == QLatin1String("image")) {
            m.screenshots << xml.readElementText();
        } else if (name == QLatin1String("content_rating")) {
            m.contentRating = true;
        }
    }
    if (xml.hasError())
        m.error = xml.errorString();
    return m;
}

// Program names in Exec, TryExec and <binary> are looked up on PATH, which
// for a package means /usr/bin.
QString programPath(const QString &program)
{
    return program.startsWith(QLatin1Char('/')) ? program.mid(1)
                                                : QStringLiteral("usr/bin/") + program;
}

} // namespace

class tst_PackageContents : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void fileName();
    void controlFields_data();
    void controlFields();
    void everythingUnderUsr();
    void referencedFiles_data();
    void referencedFiles();
    void iconSizes_data();
    void iconSizes();
    void metainfoDetails();
    void screenshotIsTheReadmes();

private:
    QString path(const QString &relative) const { return m_root + QLatin1Char('/') + relative; }

    QTemporaryDir m_scratch;
    QString m_deb;
    QString m_root;
    QHash<QString, QString> m_desktop;
    Metainfo m_meta;
};

void tst_PackageContents::initTestCase()
{
    QVERIFY(m_scratch.isValid());
    const QString out = m_scratch.filePath(QStringLiteral("out"));
    const Run cpack = run(QStringLiteral(VELTOR_CPACK_COMMAND),
                          {QStringLiteral("-G"), QStringLiteral("DEB"), QStringLiteral("-B"), out,
                           QStringLiteral("--config"), QStringLiteral(VELTOR_CPACK_CONFIG)});
    QVERIFY2(cpack.exitCode == 0, qPrintable(cpack.output));

    const QStringList debs = QDir(out).entryList({QStringLiteral("*.deb")}, QDir::Files);
    QVERIFY2(debs.size() == 1, qPrintable(debs.join(QLatin1Char(' '))));
    m_deb = QDir(out).filePath(debs.first());

    m_root = m_scratch.filePath(QStringLiteral("root"));
    const Run unpack = run(QStringLiteral("dpkg-deb"), {QStringLiteral("-x"), m_deb, m_root});
    QVERIFY2(unpack.exitCode == 0, qPrintable(unpack.output));

    const QString desktopFile =
        path(QStringLiteral("usr/share/applications/") % kAppId % QStringLiteral(".desktop"));
    QVERIFY2(QFileInfo::exists(desktopFile), qPrintable(desktopFile));
    m_desktop = readDesktopEntry(desktopFile);

    const QString metainfoFile =
        path(QStringLiteral("usr/share/metainfo/") % kAppId % QStringLiteral(".metainfo.xml"));
    m_meta = readMetainfo(metainfoFile);
    QVERIFY2(m_meta.error.isEmpty(),
             qPrintable(metainfoFile + QStringLiteral(": ") + m_meta.error));
}

void tst_PackageContents::fileName()
{
    const Run arch = run(QStringLiteral("dpkg"), {QStringLiteral("--print-architecture")});
    QCOMPARE(arch.exitCode, 0);
    QCOMPARE(QFileInfo(m_deb).fileName(), kPackage % QLatin1Char('_') %
                                              QStringLiteral(VELTOR_VERSION) % QLatin1Char('_') %
                                              arch.output.trimmed() % QStringLiteral(".deb"));
}

enum class Match { Equals, Contains, Lacks };
Q_DECLARE_METATYPE(Match)

void tst_PackageContents::controlFields_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<Match>("match");
    QTest::addColumn<QString>("text");

    QTest::newRow("name") << "Package" << Match::Equals << kPackage;
    QTest::newRow("version from the project") << "Version" << Match::Equals << VELTOR_VERSION;
    QTest::newRow("section") << "Section" << Match::Equals << "net";
    QTest::newRow("maintainer with address") << "Maintainer" << Match::Contains << "@";
    QTest::newRow("homepage") << "Homepage" << Match::Contains << "https://";
    // Found by dpkg-shlibdeps, not written by hand: the Qt this build used, and no other.
    const auto qtPackage = [](const char *module, int major) {
        return QStringLiteral("libqt%1%2%1").arg(major).arg(QLatin1String(module));
    };
    QTest::newRow("needs Qt widgets")
        << "Depends" << Match::Contains << qtPackage("widgets", QT_VERSION_MAJOR);
    QTest::newRow("needs Qt network")
        << "Depends" << Match::Contains << qtPackage("network", QT_VERSION_MAJOR);
    QTest::newRow("no other Qt") << "Depends" << Match::Lacks
                                 << QStringLiteral("libqt%1").arg(QT_VERSION_MAJOR == 5 ? 6 : 5);
    QTest::newRow("needs libc") << "Depends" << Match::Contains << "libc6";
    QTest::newRow("long description") << "Description" << Match::Contains << "\n VELTOR";
    QTest::newRow("description not a CMake list") << "Description" << Match::Lacks << "\n ;";
}

void tst_PackageContents::controlFields()
{
    QFETCH(QString, field);
    QFETCH(Match, match);
    QFETCH(QString, text);

    const Run r = run(QStringLiteral("dpkg-deb"), {QStringLiteral("-f"), m_deb, field});
    QCOMPARE(r.exitCode, 0);
    const QString value = r.output.trimmed();
    switch (match) {
    case Match::Equals:
        QCOMPARE(value, text);
        break;
    case Match::Contains:
        QVERIFY2(value.contains(text), qPrintable(value));
        break;
    case Match::Lacks:
        QVERIFY2(!value.contains(text), qPrintable(value));
        break;
    }
}

void tst_PackageContents::everythingUnderUsr()
{
    // A stray absolute DESTINATION would land outside the prefix.
    QDirIterator it(m_root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    int files = 0;
    while (it.hasNext()) {
        const QString relative = QDir(m_root).relativeFilePath(it.next());
        QVERIFY2(relative.startsWith(QLatin1String("usr/")), qPrintable(relative));
        ++files;
    }
    QVERIFY(files > 0);
}

void tst_PackageContents::referencedFiles_data()
{
    QTest::addColumn<QString>("relative");
    QTest::addColumn<bool>("executable");

    QTest::newRow("metainfo names its desktop entry")
        << QString(QStringLiteral("usr/share/applications/") % m_meta.id %
                   QStringLiteral(".desktop"))
        << false;
    const QString exec = m_desktop.value(QStringLiteral("Exec")).section(QLatin1Char(' '), 0, 0);
    QTest::newRow("Exec") << (exec.isEmpty() ? QString() : programPath(exec)) << true;
    const QString tryExec = m_desktop.value(QStringLiteral("TryExec"));
    if (!tryExec.isEmpty())
        QTest::newRow("TryExec") << programPath(tryExec) << true;

    for (const QString &id : qAsConst(m_meta.desktopIds))
        QTest::addRow("launchable %s", qPrintable(id))
            << QString(QStringLiteral("usr/share/applications/") + id) << false;
    for (const QString &binary : qAsConst(m_meta.binaries))
        QTest::addRow("binary %s", qPrintable(binary)) << programPath(binary) << true;
}

void tst_PackageContents::referencedFiles()
{
    QFETCH(QString, relative);
    QFETCH(bool, executable);

    QVERIFY2(!relative.isEmpty(), "nothing named");
    const QFileInfo file(path(relative));
    QVERIFY2(file.isFile(), qPrintable(relative));
    if (executable)
        QVERIFY2(file.isExecutable(), qPrintable(relative));
}

void tst_PackageContents::iconSizes_data()
{
    QTest::addColumn<int>("size");
    for (int size : {16, 22, 24, 32, 48, 64, 128, 256})
        QTest::addRow("%dx%d", size, size) << size;
}

void tst_PackageContents::iconSizes()
{
    QFETCH(int, size);

    const QString icon = m_desktop.value(QStringLiteral("Icon"));
    QVERIFY2(!icon.isEmpty() && !icon.contains(QLatin1Char('/')),
             "Icon should be a theme name, not a path");
    const QString dir = QString::number(size) % QLatin1Char('x') % QString::number(size);
    const QString file = path(QStringLiteral("usr/share/icons/hicolor/") % dir %
                              QStringLiteral("/apps/") % icon % QStringLiteral(".png"));
    QImageReader reader(file);
    QCOMPARE(reader.format(), QByteArray("png"));
    // A picture of the wrong size in a size folder is scaled blurrily again.
    QCOMPARE(reader.size(), QSize(size, size));
}

void tst_PackageContents::metainfoDetails()
{
    QCOMPARE(m_meta.id, kAppId);
    QVERIFY(!m_meta.releases.isEmpty());
    QCOMPARE(m_meta.releases.first(), QStringLiteral(VELTOR_VERSION));
    QVERIFY(m_meta.contentRating);
}

void tst_PackageContents::screenshotIsTheReadmes()
{
    // The screenshot is the README's; software centres fetch it over https.
    QCOMPARE(m_meta.screenshots.size(), 1);
    const QString url = m_meta.screenshots.first();
    QVERIFY2(url.startsWith(QLatin1String("https://")), qPrintable(url));
    const QString readmeShot = QStringLiteral("docs/screenshot-main-window.png");
    QVERIFY2(url.endsWith(QLatin1Char('/') + readmeShot), qPrintable(url));
    if (!QFileInfo::exists(QStringLiteral(VELTOR_SOURCE_DIR "/") + readmeShot))
        QSKIP("docs/screenshot-main-window.png is not in the tree yet");
}

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const std::pair<const char *, const char *> tools[] = {
        {"dpkg", "dpkg"}, {"dpkg-deb", "dpkg"}, {"dpkg-shlibdeps", "dpkg-dev"}};
    for (const auto &[tool, package] : tools) {
        if (QStandardPaths::findExecutable(QString::fromLatin1(tool)).isEmpty()) {
            std::printf("SKIP: %s not found (Debian package %s)\n", tool, package);
            return kSkipped;
        }
    }
    tst_PackageContents test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_packagecontents.moc"
