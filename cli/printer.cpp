#include "cli/printer.h"

#include <QJsonDocument>
#include <algorithm>
#include <utility>

namespace {
constexpr int gap = 2; ///< blanks between columns

QJsonObject objectOf(const Device &device, QJsonObject members)
{
    members.insert(QStringLiteral("name"), device.name);
    members.insert(QStringLiteral("device"), device.text);
    return members;
}

/// JSON whose texts a terminal shows and does not obey: what asOneLine makes visible in a line is
/// written by its number, which readers take for the same. JSON itself asks for that of ASCII only.
std::string jsonLine(const QJsonObject &object)
{
    const QString json = QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
    QString line;
    for (const QChar character : json) {
        const bool isHarmless = character == QLatin1Char('\\') || character.isSurrogate() ||
                                visible(character) == character;
        line += isHarmless
                    ? QString(character)
                    : QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'));
    }
    return line.toStdString() + "\n";
}

QString padded(const QString &text, qsizetype width)
{
    return text.leftJustified(width + gap);
}

QString withoutTrailingBlanks(QString text)
{
    while (text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    return text;
}
} // namespace

void Printer::print(const Device &device, const DeviceReport &report)
{
    endProgress();
    if (form_ == Form::Json) {
        QJsonObject object = objectOf(device, report.members);
        object.insert(QStringLiteral("ok"), !report.failure);
        if (report.failure)
            object.insert(QStringLiteral("error"),
                          QJsonObject{{QStringLiteral("kind"), kindOf(report.failure->status)},
                                      {QStringLiteral("message"), report.failure->message}});
        printObject(object);
    } else if (!report.lines.isEmpty()) {
        if (isNamed_)
            output_.write(heading(device.name).toStdString());
        printBlock(report.lines);
    }
    if (report.failure)
        complain(device, report.failure->message);
}

void Printer::printEvent(const Device &device, const ReportLine &line, QJsonObject members)
{
    if (form_ == Form::Json) {
        printObject(objectOf(device, std::move(members)));
        return;
    }
    const QString name = isNamed_ ? device.name + QLatin1Char(' ') : QString();
    output_.writeLine(name + line.key + QLatin1Char(' ') + line.value);
}

void Printer::printTable(const QStringList &head, const QList<QStringList> &rows,
                         const QList<QJsonObject> &objects)
{
    if (form_ == Form::Json) {
        for (const QJsonObject &object : objects)
            printObject(object);
        return;
    }
    QList<QStringList> shown = {head};
    for (const QStringList &row : rows) {
        QStringList cells;
        std::transform(row.cbegin(), row.cend(), std::back_inserter(cells), visible);
        shown.append(cells);
    }
    for (const QStringList &row : std::as_const(shown)) {
        QString line;
        for (qsizetype column = 0; column < row.size(); ++column) {
            qsizetype width = 0;
            for (const QStringList &other : std::as_const(shown))
                width = std::max(width, other.at(column).size());
            line += padded(row.at(column), width);
        }
        output_.write((withoutTrailingBlanks(line) + QLatin1Char('\n')).toStdString());
    }
}

void Printer::complain(const QString &message)
{
    endProgress();
    errors_.writeLine(QStringLiteral("peloractl: ") + message);
}

void Printer::complain(const Device &device, const QString &message)
{
    complain(device.name + QStringLiteral(": ") + message);
}

void Printer::showProgress(int done, int failed, int all)
{
    if (!errors_.isTerminal())
        return;
    const QString text = QStringLiteral("%1 done, %2 failed, of %3").arg(done).arg(failed).arg(all);
    progressWidth_ = std::max(progressWidth_, text.size());
    errors_.write("\r" + text.toStdString());
}

void Printer::endProgress()
{
    if (progressWidth_ == 0)
        return;
    // With blanks: an older console shows the sequence that empties a line.
    const QString blanks(std::exchange(progressWidth_, 0), QLatin1Char(' '));
    errors_.write("\r" + blanks.toStdString() + "\r");
}

void Printer::printBlock(const QList<ReportLine> &lines)
{
    qsizetype width = 0;
    for (const ReportLine &line : lines)
        width = std::max(width, line.key.size());
    for (const ReportLine &line : lines) {
        QString key = line.key;
        const QStringList values = line.value.split(QLatin1Char('\n'));
        for (const QString &value : values) {
            const QString start = width == 0 ? QString() : padded(key, width);
            output_.writeLine(withoutTrailingBlanks(start + value));
            key.clear();
        }
    }
}

void Printer::printObject(const QJsonObject &object)
{
    output_.write(jsonLine(object));
}

QString Printer::heading(const QString &name) const
{
    const QString text = visible(name);
    return output_.takesColours() ? QStringLiteral("\x1b[1m%1\x1b[0m\n").arg(text)
                                  : text + QLatin1Char('\n');
}
