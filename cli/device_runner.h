#pragma once

#include "cli/commands.h"
#include "cli/printer.h"

#include <QObject>
#include <map>
#include <memory>
#include <optional>
#include <vector>

/// Does the same with many devices, some of them at the same time, and prints what comes of each:
/// for people in the order of the list, as JSON in the order in which they finish.
class DeviceRunner : public QObject
{
    Q_OBJECT

public:
    DeviceRunner(std::vector<Device> devices, int jobs, Printer &printer,
                 QObject *parent = nullptr);

    /// What is to be done. A device that `failures` has is not begun, and reported as it says.
    void run(const TaskMaker &maker, std::vector<FoundDevice> found,
             const std::map<std::size_t, Failure> &failures);

    /// Ends what is under way, begins nothing more and reports all of it; finished() follows.
    void interrupt();
    /// The same where nobody reads what is said: that is no failure of any device.
    void endUnread();

    /// The highest status so far.
    ExitStatus status() const { return status_; }

Q_SIGNALS:
    void finished();
    /// What a device said could not be written.
    void unread();

private:
    void begin();
    void start(std::size_t index);
    void take(std::size_t index, const DeviceReport &report);
    void printInOrder();
    void summarize();

    std::vector<Device> devices_;
    int jobs_;
    Printer &printer_;
    TaskMaker maker_;
    std::vector<FoundDevice> found_;
    std::map<std::size_t, std::unique_ptr<DeviceTask>> running_;
    std::map<std::size_t, DeviceReport> waiting_; ///< to be printed when it is their turn
    std::vector<bool> isTaken_;
    std::size_t nextToStart_ = 0;
    std::size_t nextToPrint_ = 0;
    std::size_t done_ = 0;
    std::size_t failed_ = 0;
    ExitStatus status_ = ExitStatus::Ok;
};
