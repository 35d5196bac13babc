#include "camsim/fleetoptions.h"

#include <QCommandLineParser>
#include <QHostAddress>

namespace veltor::camsim {

namespace {

constexpr int kMaxCameras = 20000;

bool toCount(const QString &text, int max, int *value)
{
    bool ok = false;
    const int number = text.toInt(&ok);
    if (!ok || number < 0 || number > max)
        return false;
    *value = number;
    return true;
}

// Four dotted decimal parts; QHostAddress alone also takes "10.78.1".
bool isIpv4(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char('.'));
    QHostAddress address;
    return parts.size() == 4 && address.setAddress(text) &&
           address.protocol() == QAbstractSocket::IPv4Protocol;
}

QString macOf(int index)
{
    const quint32 n = quint32(index) + 1;
    return QStringLiteral("02:56:4C:%1:%2:%3")
        .arg((n >> 16) & 0xFF, 2, 16, QLatin1Char('0'))
        .arg((n >> 8) & 0xFF, 2, 16, QLatin1Char('0'))
        .arg(n & 0xFF, 2, 16, QLatin1Char('0'))
        .toUpper();
}

// Host addresses from `base` on, skipping those ending in .0 or .255.
QStringList addresses(const QString &base, int count)
{
    QStringList list;
    quint32 next = QHostAddress(base).toIPv4Address();
    while (list.size() < count) {
        const quint32 last = next & 0xFF;
        if (last != 0 && last != 255)
            list.append(QHostAddress(next).toString());
        ++next;
    }
    return list;
}

QStringList interleavedAddresses(const QStringList &bases, int count)
{
    const int ranges = qMax(1, int(bases.size()));
    QVector<QStringList> perRange;
    for (const QString &base : bases)
        perRange << addresses(base, (count + ranges - 1) / ranges);
    QStringList list;
    for (int index = 0; index < count; ++index)
        list << perRange[index % ranges][index / ranges];
    return list;
}

struct Option
{
    QString name;
    QString help;
    QString value; // empty: a flag
};

const QList<Option> &optionList()
{
    static const QList<Option> list{
        {"winbond", "Number of Winbond cameras.", "N"},
        {"haisi", "Number of Haisi cameras.", "N"},
        {"base-ip",
         "Address of the first camera (default 10.78.1.1); given several times, the cameras "
         "take turns between the ranges.",
         "IP"},
        {"mask", "Subnet mask the cameras report.", "MASK"},
        {"gateway", "Gateway the cameras report.", "IP"},
        {"dns", "DNS server the cameras report.", "IP"},
        {"bind-each-ip", "Every camera listens on its own address (must exist on this host).", ""},
        {"every-link", "Join the HDS group on every link, to hear searches arriving on any.", ""},
        {"listen", "Address the cameras listen on without --bind-each-ip.", "IP"},
        {"http-port", "HTTP port (without --bind-each-ip: of the first camera).", "PORT"},
        {"dhcp", "Cameras report DHCP on.", ""},
        {"user", "User name the cameras accept.", "NAME"},
        {"password", "Password the cameras accept.", "TEXT"},
        {"firmware", "Firmware version (four dotted numbers).", "VERSION"},
        {"web-version", "Web interface version (four dotted numbers).", "VERSION"},
        {"name-prefix", "Prefix of the camera names.", "TEXT"},
        {"upgrade-version",
         "Firmware version reported after an accepted upload (Winbond firmware, Haisi).",
         "VERSION"},
        {"upgrade-web-version",
         "Web interface version reported after an accepted upload (Winbond web, Haisi).",
         "VERSION"},
        {"upgrade-reboot", "Milliseconds a camera ignores searches after an accepted upload.",
         "MS"},
        {"unicast", "Reply to the searcher's address and port instead of broadcast/group.", ""},
        {"host-only",
         "Replies never leave this host: Winbond ones go to 127.255.255.255, "
         "Haisi ones to the group with TTL 0.",
         ""},
        {"repeat", "Copies of each reply.", "N"},
        {"delay", "Milliseconds before the first reply.", "MS"},
        {"spread", "Spread the cameras' replies evenly over this many milliseconds.", "MS"},
        {"malformed", "Reply badly: none, truncated, random, status.", "KIND"},
        {"apply",
         "When cameras take on network settings sent to them: later (after "
         "$VELTOR_CAMSIM_APPLY_DELAY_MS, default 1500, or at /reboot.cgi), instantly (web "
         "server included, before the sender can ask anything else), never (ignore them).",
         "WHEN"},
        {"camera",
         "Per-camera settings, INDEX:key=value[,key=value...]; keys: name mac ip mask "
         "gateway dns port dhcp firmware web deviceid user password unicast repeat "
         "delay malformed claim both sd upgrade upgradeweb upgradereboot apply.",
         "INDEX:KEY=VALUE"},
        {"status-file", "Write the fleet as JSON to this file once every camera listens.", "FILE"},
        {"list-addresses", "Print the cameras' addresses, one a line, and exit.", ""},
    };
    return list;
}

bool parseCameraOverride(const QString &text, FleetOptions *options, QString *error)
{
    const int colon = text.indexOf(QLatin1Char(':'));
    int index = -1;
    if (colon < 1 || !toCount(text.left(colon), kMaxCameras, &index)) {
        *error = QStringLiteral("--camera wants INDEX:key=value, not \"%1\"").arg(text);
        return false;
    }
    options->overrides[index] += text.mid(colon + 1).split(QLatin1Char(','), Qt::SkipEmptyParts);
    return true;
}

bool readNumbers(const QCommandLineParser &parser, FleetOptions *options, QString *error)
{
    int port = options->httpPort;
    const struct
    {
        const char *name;
        int max;
        int *value;
    } numbers[] = {{"winbond", kMaxCameras, &options->winbond},
                   {"haisi", kMaxCameras, &options->haisi},
                   {"http-port", 65535, &port},
                   {"repeat", 100, &options->behaviour.repeat},
                   {"delay", 600000, &options->behaviour.delayMs},
                   {"spread", 600000, &options->spreadMs},
                   {"upgrade-reboot", 600000, &options->upgradeRebootMs}};
    for (const auto &number : numbers) {
        const QString name = QLatin1String(number.name);
        if (parser.isSet(name) && !toCount(parser.value(name), number.max, number.value)) {
            *error = QStringLiteral("--%1 wants a number from 0 to %2, not \"%3\"")
                         .arg(name)
                         .arg(number.max)
                         .arg(parser.value(name));
            return false;
        }
    }
    options->httpPort = quint16(port);
    return true;
}

bool wrongAddress(const QString &name, const QString &text, QString *error)
{
    if (isIpv4(text))
        return false;
    *error = QStringLiteral("--%1 wants an IPv4 address, not \"%2\"").arg(name, text);
    return true;
}

bool readAddresses(const QCommandLineParser &parser, FleetOptions *options, QString *error)
{
    const QString baseIp = QStringLiteral("base-ip");
    if (parser.isSet(baseIp))
        options->baseIps = parser.values(baseIp);
    for (const QString &text : qAsConst(options->baseIps)) {
        if (wrongAddress(baseIp, text, error))
            return false;
    }
    const struct
    {
        const char *name;
        QString *value;
    } texts[] = {{"mask", &options->mask},
                 {"gateway", &options->gateway},
                 {"dns", &options->dns},
                 {"listen", &options->listenAddress}};
    for (const auto &text : texts) {
        const QString name = QLatin1String(text.name);
        if (!parser.isSet(name))
            continue;
        if (wrongAddress(name, parser.value(name), error))
            return false;
        *text.value = parser.value(name);
    }
    return true;
}

void readTexts(const QCommandLineParser &parser, FleetOptions *options)
{
    const struct
    {
        const char *name;
        QString *value;
    } texts[] = {{"user", &options->user},
                 {"password", &options->password},
                 {"firmware", &options->firmwareVersion},
                 {"web-version", &options->webVersion},
                 {"name-prefix", &options->namePrefix},
                 {"upgrade-version", &options->upgradeFirmwareVersion},
                 {"upgrade-web-version", &options->upgradeWebVersion},
                 {"status-file", &options->statusFile}};
    for (const auto &text : texts) {
        if (parser.isSet(QLatin1String(text.name)))
            *text.value = parser.value(QLatin1String(text.name));
    }
    options->bindEachIp = parser.isSet(QStringLiteral("bind-each-ip"));
    options->everyLink = parser.isSet(QStringLiteral("every-link"));
    options->dhcp = parser.isSet(QStringLiteral("dhcp"));
    options->behaviour.unicast = parser.isSet(QStringLiteral("unicast"));
    options->behaviour.hostOnly = parser.isSet(QStringLiteral("host-only"));
    options->listAddresses = parser.isSet(QStringLiteral("list-addresses"));
}

} // namespace

bool parseFleetOptions(const QStringList &arguments, FleetOptions *options, QString *error)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Simulated VELTOR cameras: answer searches and serve HTTP."));
    parser.addHelpOption();
    for (const Option &option : optionList())
        parser.addOption(QCommandLineOption(option.name, option.help, option.value));
    if (!parser.parse(arguments)) {
        *error = parser.errorText();
        return false;
    }
    if (parser.isSet(QStringLiteral("help"))) {
        *error = parser.helpText();
        return false;
    }
    if (!parser.positionalArguments().isEmpty()) {
        *error = QStringLiteral("unexpected argument \"%1\"").arg(parser.positionalArguments()[0]);
        return false;
    }
    if (!readNumbers(parser, options, error) || !readAddresses(parser, options, error))
        return false;
    readTexts(parser, options);
    const QString malformed = parser.value(QStringLiteral("malformed"));
    if (!malformed.isEmpty() && !parseMalformed(malformed, &options->behaviour.malformed)) {
        *error = QStringLiteral("--malformed wants none, truncated, random or status");
        return false;
    }
    const QString apply = parser.value(QStringLiteral("apply"));
    if (!apply.isEmpty() && !parseApplyMode(apply, &options->apply)) {
        *error = QStringLiteral("--apply wants later, instantly or never");
        return false;
    }
    for (const QString &text : parser.values(QStringLiteral("camera"))) {
        if (!parseCameraOverride(text, options, error))
            return false;
    }
    return true;
}

bool makeCameraSettings(const FleetOptions &options, QVector<CameraSettings> *cameras,
                        QString *error)
{
    const int total = options.winbond + options.haisi;
    if (!options.bindEachIp && options.httpPort + total > 65536) {
        *error = QStringLiteral("%1 cameras from HTTP port %2 run past port 65535")
                     .arg(total)
                     .arg(options.httpPort);
        return false;
    }
    if (!options.overrides.isEmpty() && options.overrides.lastKey() >= total) {
        *error = QStringLiteral("--camera %1: there are only %2 cameras")
                     .arg(options.overrides.lastKey())
                     .arg(total);
        return false;
    }
    const QStringList ips = interleavedAddresses(options.baseIps, total);
    for (int index = 0; index < total; ++index) {
        const bool winbond = index < options.winbond;
        const int number = (winbond ? index : index - options.winbond) + 1;
        CameraSettings camera;
        camera.family = winbond ? Family::Winbond : Family::Haisi;
        camera.index = index;
        camera.name = options.namePrefix % QLatin1Char(winbond ? 'W' : 'H') %
                      QStringLiteral("%1").arg(number, 3, 10, QLatin1Char('0'));
        camera.mac = macOf(index);
        camera.ip = ips[index];
        camera.mask = options.mask;
        camera.gateway = options.gateway;
        camera.dns = options.dns;
        camera.httpPort = quint16(options.bindEachIp ? options.httpPort : options.httpPort + index);
        camera.dhcp = options.dhcp;
        camera.firmwareVersion = options.firmwareVersion;
        camera.webVersion = options.webVersion;
        camera.upgradeFirmwareVersion = options.upgradeFirmwareVersion;
        camera.upgradeWebVersion = options.upgradeWebVersion;
        camera.upgradeRebootMs = options.upgradeRebootMs;
        camera.deviceId = QStringLiteral("VLTR%1").arg(index + 1, 8, 10, QLatin1Char('0'));
        camera.user = options.user;
        camera.password = options.password;
        camera.apply = options.apply;
        camera.behaviour = options.behaviour;
        if (options.spreadMs > 0 && total > 1)
            camera.behaviour.delayMs += int(qint64(options.spreadMs) * index / (total - 1));
        for (const QString &assignment : options.overrides.value(index)) {
            if (!applyOverride(camera, assignment, error))
                return false;
        }
        cameras->append(camera);
    }
    return true;
}

} // namespace veltor::camsim
