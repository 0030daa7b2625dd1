#include "simulator/recording.h"

#include "simulator/text_form.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <algorithm>

namespace {

/// Ten years in milliseconds: nobody waits for what is said later, and sums of such times are
/// numbers.
constexpr double longestConversation = 10 * 366 * 24 * 3600e3;

struct NamedPiece
{
    QString name;
    QString road;
    RecordedPiece piece;
};

/// One line; throws what is wrong with it.
NamedPiece readLine(const QByteArray &line)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(line, &error);
    if (!document.isObject())
        throw BadRecording("no JSON object");
    const QJsonObject object = document.object();
    const auto text = [&object](const char *key) {
        const QJsonValue value = object.value(QLatin1String(key));
        if (!value.isString())
            throw BadRecording(std::string("\"") + key + "\" is no text");
        return value.toString();
    };
    const auto oneOf = [&text](const char *key, const QStringList &words) {
        const QString value = text(key);
        if (!words.contains(value))
            throw BadRecording(std::string("\"") + key + "\" must be " +
                               words.join(QStringLiteral(" or ")).toStdString());
        return value;
    };

    NamedPiece read;
    read.name = text("name");
    read.road =
        oneOf("road", {QStringLiteral("serial"), QStringLiteral("udp"), QStringLiteral("module")});
    read.piece.sent = oneOf("direction", {QStringLiteral("sent"), QStringLiteral("received")}) ==
                      QLatin1String("sent");
    const QByteArray digits = text("bytes").toLatin1();
    read.piece.bytes = QByteArray::fromHex(digits);
    if (read.piece.bytes.toHex() != digits.toLower()) // fromHex skips what it does not know
        throw BadRecording("\"bytes\" are no pairs of hexadecimal digits");
    const QJsonValue time = object.value(QLatin1String("time"));
    if (!time.isDouble() || time.toDouble() < 0 || time.toDouble() > longestConversation)
        throw BadRecording("\"time\" is no number of milliseconds");
    read.piece.time = std::chrono::milliseconds(static_cast<qint64>(time.toDouble()));
    return read;
}

std::vector<NamedPiece> readFile(QFile &file, const std::string &fileName)
{
    std::vector<NamedPiece> pieces;
    for (int number = 1; !file.atEnd(); ++number) {
        try {
            const NamedPiece read = readLine(file.readLine());
            if (read.road != QLatin1String("module"))
                pieces.push_back(read);
        } catch (const BadRecording &fault) {
            throw BadRecording(fileName + ", line " + std::to_string(number) + ": " + fault.what());
        }
    }
    return pieces;
}

} // namespace

Recording readRecording(const QString &file, const QString &name)
{
    const std::string fileName = printable(file.toStdString());
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        throw BadRecording("cannot read " + fileName + ": " + source.errorString().toStdString());
    if (source.atEnd())
        throw BadRecording(fileName + ", line 1: the file is empty");

    const std::vector<NamedPiece> all = readFile(source, fileName);
    QStringList names;
    for (const NamedPiece &piece : all)
        if (!names.contains(piece.name))
            names.append(piece.name);
    const std::string choice = printable(names.join(QStringLiteral(", ")).toStdString());
    if (names.isEmpty())
        throw BadRecording(fileName + " holds no conversation with a switch");
    if (name.isEmpty() && names.size() > 1)
        throw BadRecording(fileName + " holds several devices, choose one with --name: " + choice);
    const QString chosen = name.isEmpty() ? names.first() : name;
    if (!names.contains(chosen))
        throw BadRecording(fileName + " holds no device \"" + printable(chosen.toStdString()) +
                           "\" but: " + choice);

    Recording recording;
    QStringList roads;
    for (const NamedPiece &piece : all) {
        if (piece.name != chosen)
            continue;
        recording.pieces.push_back(piece.piece);
        if (!roads.contains(piece.road))
            roads.append(piece.road);
    }
    if (roads.size() > 1)
        throw BadRecording(fileName + " holds \"" + printable(chosen.toStdString()) +
                           "\" over both serial and udp");
    recording.serial = roads.first() == QLatin1String("serial");
    return recording;
}
