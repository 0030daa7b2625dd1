#pragma once

#include "cli/device_runner.h"
#include "cli/options.h"
#include "cli/shared_search.h"

#include <QObject>
#include <memory>

class LinkRecorder;

/// One run of the program, from the options to the status that it ends with.
class Program : public QObject
{
    Q_OBJECT

public:
    Program(Options options, Printer &printer, QObject *parent = nullptr);
    ~Program() override;

    /// Begins; finished() follows, from within this call as well.
    void start();
    /// Ends what is under way and reports it; finished() follows.
    void interrupt();
    /// Nobody reads standard output any more. What has no end of its own ends with that, and
    /// finished() follows; everything else is done to its end.
    void endUnread();

Q_SIGNALS:
    void finished(ExitStatus status);

private:
    void begin();
    void refuse(const UsageError &error);
    void discover();
    void openRecord();
    void confirmFactoryReset() const;
    TaskMaker makerFor(const std::vector<Device> &devices) const;
    void run(const TaskMaker &maker, int jobs);
    void runFound(const TaskMaker &maker, const ModuleSearchResult &found);

    Options options_;
    Printer &printer_;
    TaskWorld world_;
    std::vector<Device> devices_;
    std::unique_ptr<LinkRecorder> recorder_;
    std::unique_ptr<SharedSearch> search_;
    std::unique_ptr<DeviceRunner> runner_;
    bool isInterrupted_ = false;
};
