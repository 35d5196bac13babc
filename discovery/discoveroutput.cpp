#include "discovery/discoveroutput.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QTextStream>
#include <algorithm>

namespace veltor {

namespace {

// Table headers of the window, then ours; JSON keys in the same order.
const char *const kHeaders[] = {
    "Name",        "IP Address", "Port",       "MAC Address",      "DHCP",
    "Subnet Mask", "Gateway",    "DNS Server", "Firmware Version", "WebUI Version",
    "Family",      "Interface",  "Source",     "Findings"};
const char *const kJsonKeys[] = {"name",   "ip",         "port",   "mac",      "dhcp",
                                 "subnet", "gateway",    "dns",    "firmware", "webui",
                                 "family", "interfaces", "source", "findings"};
constexpr int kInterfaceColumn = 11;
constexpr int kFindingsColumn = 13;

QStringList addressTexts(const QVector<QHostAddress> &addresses)
{
    QStringList texts;
    for (const QHostAddress &address : addresses)
        texts << address.toString();
    return texts;
}

void writeTable(QTextStream &out, const QVector<SeenCamera> &cameras)
{
    QVector<QStringList> rows{discoverHeaders()};
    for (const SeenCamera &camera : cameras) {
        QStringList cells = discoverCells(camera);
        for (QString &cell : cells)
            cell = printable(cell);
        rows << cells;
    }
    QVector<int> widths(rows.first().size(), 0);
    for (const QStringList &row : qAsConst(rows)) {
        for (int column = 0; column < row.size(); ++column)
            widths[column] = qMax(widths[column], row[column].size());
    }
    for (const QStringList &row : qAsConst(rows)) {
        QString line;
        for (int column = 0; column < row.size(); ++column)
            line += row[column].leftJustified(widths[column] + 2);
        out << line.trimmed() << '\n';
    }
}

void writeCsv(QTextStream &out, const QVector<SeenCamera> &cameras)
{
    const auto writeRow = [&out](const QStringList &cells) {
        QStringList fields;
        for (const QString &cell : cells)
            fields << csvField(cell);
        out << fields.join(QLatin1Char(',')) << "\r\n";
    };
    writeRow(discoverHeaders());
    for (const SeenCamera &camera : cameras)
        writeRow(discoverCells(camera));
}

QJsonObject jsonObject(const SeenCamera &camera)
{
    const QStringList cells = discoverCells(camera);
    QJsonObject object;
    for (int column = 0; column < cells.size(); ++column)
        object.insert(QLatin1String(kJsonKeys[column]), cells[column]);
    object.insert(QLatin1String(kJsonKeys[kInterfaceColumn]),
                  QJsonArray::fromStringList(addressTexts(camera.receivedOn)));
    object.insert(QLatin1String(kJsonKeys[kFindingsColumn]),
                  QJsonArray::fromStringList(camera.findings));
    return object;
}

void writeJson(QTextStream &out, const QVector<SeenCamera> &cameras)
{
    QJsonArray array;
    for (const SeenCamera &camera : cameras)
        array.append(jsonObject(camera));
    out << QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Indented));
}

} // namespace

std::optional<OutputFormat> outputFormat(const QString &name)
{
    if (name == QLatin1String("table"))
        return OutputFormat::Table;
    if (name == QLatin1String("csv"))
        return OutputFormat::Csv;
    if (name == QLatin1String("json"))
        return OutputFormat::Json;
    return std::nullopt;
}

QStringList discoverHeaders()
{
    QStringList headers;
    for (const char *header : kHeaders)
        headers << QLatin1String(header);
    return headers;
}

QStringList discoverCells(const SeenCamera &camera)
{
    QStringList cells;
    for (int column = 0; column < DeviceRecord::kColumnCount; ++column)
        cells << camera.record.column(column);
    const QStringList interfaces = camera.receivedOn.isEmpty()
                                       ? QStringList{camera.interfaceAddress.toString()}
                                       : addressTexts(camera.receivedOn);
    cells << camera.family << interfaces.join(QLatin1Char(' ')) << camera.source.toString()
          << camera.findings.join(QLatin1Char(' '));
    return cells;
}

QString csvField(const QString &text)
{
    static const QString special = QStringLiteral(",\"\r\n");
    if (std::none_of(text.begin(), text.end(), [](QChar c) { return special.contains(c); }))
        return text;
    QString quoted = text;
    quoted.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

QString printable(const QString &text)
{
    QString shown = text;
    for (QChar &c : shown) {
        if (c.category() == QChar::Other_Control || c.category() == QChar::Other_Format)
            c = QChar::ReplacementCharacter;
    }
    return shown;
}

void writeDiscoverOutput(QTextStream &out, OutputFormat format, const QVector<SeenCamera> &cameras)
{
    switch (format) {
    case OutputFormat::Table:
        writeTable(out, cameras);
        break;
    case OutputFormat::Csv:
        writeCsv(out, cameras);
        break;
    case OutputFormat::Json:
        writeJson(out, cameras);
        break;
    }
}

bool saveDiscoverOutput(const QString &path, OutputFormat format,
                        const QVector<SeenCamera> &cameras, QString *error)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        QTextStream out(&file);
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
        out.setCodec("UTF-8"); // Qt 6 writes UTF-8 anyway
#endif
        writeDiscoverOutput(out, format, cameras);
        out.flush();
        if (file.commit())
            return true;
    }
    *error = file.errorString();
    return false;
}

} // namespace veltor
