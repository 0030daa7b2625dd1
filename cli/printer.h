#pragma once

#include "cli/device.h"
#include "cli/output.h"
#include "cli/report.h"

#include <QJsonObject>

/// Prints what came of devices: for people, or one JSON object a line.
///
/// What people see of a device is a block of aligned lines; with several devices it stands under
/// the device's name. Whatever comes from a device or a file is made visible first, in JSON by
/// escapes such as \u009b. On a terminal standard error shows how far it has got.
class Printer
{
public:
    enum class Form { People, Json };

    Printer(Form form, Output &output, Output &errors)
        : form_(form), output_(output), errors_(errors)
    {
    }

    Form form() const { return form_; }
    /// Whether a name goes in front of what is said of a device.
    void setNamed(bool named) { isNamed_ = named; }
    /// Whether nobody reads standard output any more, for whatever reason. Known once a write has
    /// failed.
    bool isUnread() const { return output_.hasEnded(); }

    void print(const Device &device, const DeviceReport &report);
    /// One event of a device; `line` for people, `members` for JSON.
    void printEvent(const Device &device, const ReportLine &line, QJsonObject members);
    /// What belongs to no device: a table for people, an object for each row.
    void printTable(const QStringList &head, const QList<QStringList> &rows,
                    const QList<QJsonObject> &objects);

    /// "peloractl: NAME: message" on standard error.
    void complain(const QString &message);
    void complain(const Device &device, const QString &message);

    /// "12 done, 1 failed, of 200", on a terminal only, over itself.
    void showProgress(int done, int failed, int all);
    void endProgress();

private:
    void printBlock(const QList<ReportLine> &lines);
    void printObject(const QJsonObject &object);
    QString heading(const QString &name) const;

    Form form_;
    Output &output_;
    Output &errors_;
    bool isNamed_ = false;
    qsizetype progressWidth_ = 0; ///< of what stands on the terminal; 0: nothing
};
