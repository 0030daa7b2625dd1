#include "cli/device_runner.h"

#include <algorithm>
#include <utility>

DeviceRunner::DeviceRunner(std::vector<Device> devices, int jobs, Printer &printer, QObject *parent)
    : QObject(parent), devices_(std::move(devices)), jobs_(jobs), printer_(printer),
      isTaken_(devices_.size(), false)
{
}

void DeviceRunner::run(const TaskMaker &maker, std::vector<FoundDevice> found,
                       const std::map<std::size_t, Failure> &failures)
{
    maker_ = maker;
    found_ = std::move(found);
    for (const auto &[index, failure] : failures)
        take(index, DeviceReport{failure, {}, {}, {}});
    begin();
}

void DeviceRunner::interrupt()
{
    nextToStart_ = devices_.size();
    for (auto &[index, task] : std::exchange(running_, {})) {
        task->disconnect(this);
        take(index, task->interrupt());
    }
    for (std::size_t index = 0; index < devices_.size(); ++index) {
        if (!isTaken_.at(index))
            take(index, failureReport(
                            ExitStatus::Interrupted,
                            QStringLiteral("interrupted before it was begun; nothing was sent")));
    }
}

void DeviceRunner::endUnread()
{
    nextToStart_ = devices_.size();
    for (auto &[index, task] : std::exchange(running_, {})) {
        task->disconnect(this);
        task->interrupt();
    }
    for (std::size_t index = 0; index < devices_.size(); ++index)
        take(index, {});
}

void DeviceRunner::begin()
{
    while (running_.size() < static_cast<std::size_t>(jobs_) && nextToStart_ < devices_.size()) {
        const std::size_t index = nextToStart_++;
        if (!isTaken_.at(index))
            start(index);
    }
}

void DeviceRunner::start(std::size_t index)
{
    auto task = maker_(found_.at(index));
    const Device &device = devices_.at(index);
    // Through the event loop: a task may finish in the call that starts it, and is deleted then.
    connect(
        task.get(), &DeviceTask::finished, this,
        [this, index](const DeviceReport &report) {
            running_.erase(index);
            take(index, report);
            begin();
        },
        Qt::QueuedConnection);
    connect(task.get(), &DeviceTask::happened, this,
            [this, &device](const ReportLine &line, const QJsonObject &members) {
                printer_.printEvent(device, line, members);
                if (printer_.isUnread())
                    Q_EMIT unread();
            });
    connect(task.get(), &DeviceTask::warned, this, [this, &device](const QString &message) {
        printer_.complain(device, QStringLiteral("warning: ") + message);
    });
    DeviceTask *started = task.get();
    running_[index] = std::move(task);
    started->start();
}

void DeviceRunner::take(std::size_t index, const DeviceReport &report)
{
    if (isTaken_.at(index))
        return; // it had finished when it was interrupted
    isTaken_.at(index) = true;
    status_ = std::max(status_, report.exitStatus());
    ++(report.failure ? failed_ : done_);
    if (printer_.form() == Printer::Form::Json)
        printer_.print(devices_.at(index), report);
    else
        waiting_[index] = report;
    printInOrder();
    if (devices_.size() > 1)
        printer_.showProgress(static_cast<int>(done_), static_cast<int>(failed_),
                              static_cast<int>(devices_.size()));
    if (done_ + failed_ < devices_.size())
        return;
    summarize();
    Q_EMIT finished();
}

void DeviceRunner::printInOrder()
{
    while (!waiting_.empty() && waiting_.begin()->first == nextToPrint_) {
        printer_.print(devices_.at(nextToPrint_++), waiting_.begin()->second);
        waiting_.erase(waiting_.begin());
    }
}

void DeviceRunner::summarize()
{
    if (devices_.size() > 1)
        printer_.complain(QStringLiteral("%1 done, %2 failed, of %3")
                              .arg(done_)
                              .arg(failed_)
                              .arg(devices_.size()));
}
