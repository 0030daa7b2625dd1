#pragma once

#include "cli/failure.h"

#include <QJsonObject>
#include <QList>
#include <optional>

/// One line for people: what it is about, and what of it. Without a key the value alone.
struct ReportLine
{
    QString key;
    QString value; ///< may hold line feeds; the lines behind the first stand under it
};

/// What came of one device.
struct DeviceReport
{
    std::optional<Failure> failure;
    ExitStatus status = ExitStatus::Ok; ///< where there is no failure
    QList<ReportLine> lines;
    QJsonObject members; ///< of the JSON object, beside "name", "device", "ok" and "error"

    ExitStatus exitStatus() const { return failure ? failure->status : status; }
};

inline DeviceReport failureReport(ExitStatus status, const QString &message)
{
    DeviceReport report;
    report.failure = Failure{status, message};
    return report;
}
