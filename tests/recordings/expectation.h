#pragma once

#include "session/switch_session.h"

#include <QFile>
#include <QMap>
#include <QStringList>

/// What a recording's sidecar, NAME.expected beside NAME.jsonl, says is read: lines "key  value" in
/// any order, "?" for what is not told. A line "error  KIND" stands alone. "window  key  value" is
/// where the window keeps a way of its own, with "?" where nothing is expected of it;
/// "window  notice  TEXT" is a notice that it shows. "\r" in a
/// value is a CR. A line that begins with "#" is a remark.
struct Expectation
{
    QMap<QString, QString> values; ///< by key, without those that are not told
    QMap<QString, QString> window; ///< the window's own
    QStringList untold;
    QStringList notices; ///< of the window
    QString error;
    QString mistake; ///< what is wrong with the sidecar; empty when all is well
};

inline QString errorName(SessionError::Kind kind)
{
    switch (kind) {
    case SessionError::Kind::CannotOpen:
        return QStringLiteral("cannot-open");
    case SessionError::Kind::Broken:
        return QStringLiteral("broken");
    case SessionError::Kind::NoAnswer:
        return QStringLiteral("no-answer");
    case SessionError::Kind::NotUnderstood:
        break;
    }
    return QStringLiteral("not-understood");
}

/// What was read, as a sidecar has it.
inline QStringList linesOf(const ConfigurationReading &reading)
{
    QStringList lines;
    for (const SettingKey key : allSettingKeys())
        lines.append(settingName(key) + QStringLiteral("  ") +
                     settingText(reading.configuration, key).value_or(QStringLiteral("?")));
    return lines;
}

inline void takeLine(Expectation &expectation, const QString &line)
{
    const QString gap = QStringLiteral("  ");
    QString key = line.section(gap, 0, 0);
    QString value = line.section(gap, 1).replace(QStringLiteral("\\r"), QStringLiteral("\r"));
    if (key == QStringLiteral("error")) {
        expectation.error = value;
        return;
    }
    const bool isWindows = key == QStringLiteral("window");
    if (isWindows) {
        key = value.section(gap, 0, 0);
        value = value.section(gap, 1);
    }
    if (isWindows && key == QStringLiteral("notice"))
        expectation.notices.append(value);
    else if (!settingOfName(key))
        expectation.mistake = QStringLiteral("no setting is called \"%1\"").arg(key);
    else if (isWindows)
        expectation.window[key] = value;
    else if (value == QStringLiteral("?"))
        expectation.untold.append(key);
    else
        expectation.values[key] = value;
}

inline Expectation readExpectation(const QString &fileName)
{
    Expectation expectation;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        expectation.mistake = QStringLiteral("the recording has no sidecar ") + fileName;
        return expectation;
    }
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (!line.isEmpty() && !line.startsWith(QLatin1Char('#')))
            takeLine(expectation, line);
    }
    const qsizetype told = expectation.values.size() + expectation.untold.size();
    const auto all = static_cast<qsizetype>(allSettingKeys().size());
    if (expectation.mistake.isEmpty() && told != (expectation.error.isEmpty() ? all : 0))
        expectation.mistake =
            fileName + QStringLiteral(" has to tell each setting once, or an error alone");
    return expectation;
}
