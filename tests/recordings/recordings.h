#pragma once

#include "expectation.h"
#include "simulator/recorded_switch.h"

#include <QDir>
#include <QTest>

/// The recordings of this folder, each a row of the test that asks for them.

inline QString recordingFile(const QString &name, const char *suffix)
{
    return QStringLiteral(RECORDINGS "/") + name + QLatin1String(suffix);
}

/// Rows by name, in a column "name"; a sidecar without its recording is a row as well.
inline void recordingRows()
{
    QTest::addColumn<QString>("name");
    const QStringList files =
        QDir(QStringLiteral(RECORDINGS))
            .entryList({QStringLiteral("*.jsonl"), QStringLiteral("*.expected")}, QDir::Files);
    QStringList names;
    for (const QString &file : files)
        names.append(file.section(QLatin1Char('.'), 0, -2));
    names.removeDuplicates();
    for (const QString &name : std::as_const(names))
        QTest::newRow(qPrintable(name)) << name;
}

/// A recording and what is to be read from it.
struct RecordedCase
{
    explicit RecordedCase(const QString &name)
        : recording(readRecording(recordingFile(name, ".jsonl"), {})),
          expectation(readExpectation(recordingFile(name, ".expected"))), device(recording, 0)
    {
    }

    Recording recording;
    Expectation expectation;
    RecordedSwitch device; ///< answers without the recorded waits
};
