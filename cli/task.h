#pragma once

#include "cli/device.h"
#include "cli/options.h"
#include "cli/report.h"
#include "session/module_search.h"

#include <QObject>
#include <memory>

class LinkRecorder;
class SharedSearch;

/// What all tasks of one run share.
struct TaskWorld
{
    Options options;
    ModuleNetwork network;
    SharedSearch *search = nullptr;
    LinkRecorder *recorder = nullptr; ///< none: nothing is recorded
};

/// A device, and the module in front of it where a search has found it.
struct FoundDevice
{
    Device device;
    std::optional<ModuleOnLan> module;
};

/// What is done with one device, in the event loop. A task lives until it has finished.
class DeviceTask : public QObject
{
    Q_OBJECT

public:
    /// finished() follows, once; from within this call as well.
    virtual void start() = 0;
    /// Ends it now, without a signal, and says what had become of it.
    virtual DeviceReport interrupt() = 0;

Q_SIGNALS:
    void finished(const DeviceReport &report);
    /// Something to be shown while it runs.
    void happened(const ReportLine &line, const QJsonObject &members);
    /// Something that the user should know and that ends nothing.
    void warned(const QString &message);
};
