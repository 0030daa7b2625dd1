#include "cli/program.h"

#include "cli/file_names.h"
#include "cli/listings.h"
#include "cli/open_files.h"
#include "cli/passwords.h"
#include "cli/standard_input.h"
#include "session/link_recorder.h"
#include "session/udp_switch_link.h"

#include <QFile>
#include <algorithm>
#include <stdexcept>
#include <utility>

namespace {
QByteArray listText(const QString &path)
{
    const auto refuse = [&path](const QString &reason) {
        throw UsageError(QStringLiteral("the list %1 cannot be read: %2").arg(path, reason));
    };
    if (path == QLatin1String("-")) {
        try {
            return wholeInput();
        } catch (const std::runtime_error &error) {
            refuse(QString::fromLocal8Bit(error.what()));
        }
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        refuse(file.errorString());
    const QByteArray text = file.readAll();
    if (file.error() != QFile::NoError)
        refuse(file.errorString());
    return text;
}

std::vector<Device> devicesOf(const Options &options)
{
    std::vector<Device> devices;
    for (const std::string &text : options.devices)
        devices.push_back(deviceFrom(QString::fromStdString(text)));
    if (!options.deviceList.empty()) {
        const QString path = QString::fromStdString(options.deviceList);
        const QString source = path == QLatin1String("-") ? QStringLiteral("standard input") : path;
        for (Device &device : devicesFrom(listText(path), source))
            devices.push_back(std::move(device));
        if (devices.empty())
            throw UsageError(QStringLiteral("%1 names no device").arg(source));
    }
    if (devices.empty() && qEnvironmentVariableIsSet("PELORA_DEVICE"))
        devices.push_back(deviceFrom(qEnvironmentVariable("PELORA_DEVICE")));
    if (devices.empty())
        throw UsageError(
            QStringLiteral("no device; give --device, --devices or set PELORA_DEVICE"));
    requireDistinct(devices);
    return devices;
}

bool isForModule(Options::Command command)
{
    return command == Options::Command::ModuleShow || command == Options::Command::ModuleSet;
}

/// How many devices at the same time. Watching one has no end, so all begin at once.
int jobsFor(const Options &options, const std::vector<Device> &devices)
{
    const int most = mostDevicesAtOnce();
    if (options.command != Options::Command::Watch)
        return std::min(options.jobs, most);
    const auto all = static_cast<int>(devices.size());
    if (all > most)
        throw UsageError(
            QStringLiteral("%1 devices cannot be watched at once: the system allows %2 "
                           "(ulimit -Hn); watch fewer")
                .arg(all)
                .arg(most));
    return all;
}

/// Throws where the record is a file that the command reads or writes.
void requireOwnRecord(const Options &options, const std::vector<Device> &devices)
{
    if (options.record.empty())
        return;
    QStringList others;
    for (const std::string &file :
         {options.deviceList, options.passwordFile, options.newPasswordFile})
        others.append(QString::fromStdString(file));
    if (!options.file.empty())
        others += filesFor(QString::fromStdString(options.file), devices);
    const QString record = QString::fromStdString(options.record);
    if (std::any_of(others.cbegin(), others.cend(),
                    [&record](const QString &file) { return isSameFile(record, file); }))
        throw UsageError(QStringLiteral("the record %1 is a file that this command reads or writes "
                                        "as well; choose another")
                             .arg(record));
}

/// Throws where two devices are one module, or a module and an address are the same.
void requireDistinct(const std::vector<FoundDevice> &found)
{
    std::vector<Device> devices;
    for (const FoundDevice &one : found) {
        Device device = one.device;
        if (one.module) {
            device.road = Device::Road::Udp;
            device.address = QHostAddress(one.module->reply.ip);
            device.udpPort = switchUdpPort;
        }
        devices.push_back(device);
    }
    requireDistinct(devices);
}
} // namespace

Program::Program(Options options, Printer &printer, QObject *parent)
    : QObject(parent), options_(std::move(options)), printer_(printer)
{
    world_.options = options_;
    world_.network.roads = broadcastRoads();
    // Another run of this program has the port for the time of its own search.
    world_.network.portPatience =
        std::chrono::milliseconds(options_.timeout) * (options_.retries + 1);
    world_.network.collection = std::chrono::milliseconds(options_.wait);
    world_.network.loginAnswer = std::chrono::milliseconds(options_.timeout);
    world_.network.loginRetries = options_.retries;
}

Program::~Program() = default;

void Program::start()
{
    try {
        begin();
    } catch (const UsageError &error) {
        refuse(error);
    } catch (const Interrupted &) {
        printer_.complain(QStringLiteral("interrupted; nothing was sent"));
        Q_EMIT finished(ExitStatus::Interrupted);
    }
}

void Program::refuse(const UsageError &error)
{
    for (const QString &line : error.lines())
        printer_.complain(line);
    Q_EMIT finished(ExitStatus::Usage);
}

void Program::begin()
{
    search_ = std::make_unique<SharedSearch>(world_.network);
    world_.search = search_.get();
    switch (options_.command) {
    case Options::Command::Ports:
        printPorts(printer_);
        Q_EMIT finished(ExitStatus::Ok);
        return;
    case Options::Command::Discover:
        discover();
        return;
    default:
        break;
    }
    devices_ = devicesOf(options_);
    requireOwnRecord(options_, devices_);
    for (const Device &device : devices_) {
        if (isForModule(options_.command) && device.road == Device::Road::Serial)
            throw UsageError(QStringLiteral("\"%1\" has no network module; name one by module: or "
                                            "udp:")
                                 .arg(device.text));
    }
    const int jobs = jobsFor(options_, devices_);
    const TaskMaker maker = makerFor(devices_);
    if (options_.command == Options::Command::ResetFactory)
        confirmFactoryReset();
    // Last of all: an earlier record of that name is lost.
    openRecord();
    run(maker, jobs);
}

void Program::interrupt()
{
    isInterrupted_ = true;
    if (runner_)
        runner_->interrupt();
    else
        Q_EMIT finished(ExitStatus::Interrupted);
}

void Program::endUnread()
{
    if (options_.command != Options::Command::Watch || !runner_)
        return;
    isInterrupted_ = true;
    runner_->endUnread();
}

void Program::discover()
{
    openRecord();
    search_->search(this, [this](const ModuleSearchResult &found) {
        if (found.modules.isEmpty())
            printer_.complain(emptySearch(found));
        else
            printModules(printer_, found);
        Q_EMIT finished(found.modules.isEmpty() ? ExitStatus::NoDevice : ExitStatus::Ok);
    });
}

void Program::openRecord()
{
    if (options_.record.empty())
        return;
    const QString file = QString::fromStdString(options_.record);
    recorder_ = std::make_unique<LinkRecorder>(file);
    if (!recorder_->problem().isEmpty())
        throw UsageError(
            QStringLiteral("the record %1 cannot be written: %2").arg(file, recorder_->problem()));
    connect(recorder_.get(), &LinkRecorder::failed, this, [this, file](const QString &reason) {
        printer_.complain(QStringLiteral("warning: the record %1 ends here: %2").arg(file, reason));
    });
    world_.recorder = recorder_.get();
    record(search_->underlying(), *recorder_, QStringLiteral("search"));
}

void Program::confirmFactoryReset() const
{
    if (options_.yes)
        return;
    if (!isInputTerminal())
        throw UsageError(QStringLiteral("a factory reset deletes every setting; give --yes"));
    const QString whom = devices_.size() == 1 ? devices_.front().name
                                              : QStringLiteral("%1 switches").arg(devices_.size());
    if (!askYesNo(QStringLiteral("Delete every setting of %1?").arg(visible(whom))))
        throw UsageError(QStringLiteral("no factory reset; nothing was sent"));
}

TaskMaker Program::makerFor(const std::vector<Device> &devices) const
{
    switch (options_.command) {
    case Options::Command::Set:
        return setTasks(world_);
    case Options::Command::Save:
        return saveTasks(world_, devices);
    case Options::Command::Diff:
        return diffTasks(world_, devices);
    case Options::Command::Apply:
        return applyTasks(world_, devices);
    case Options::Command::ResetSoft:
    case Options::Command::ResetFactory:
        return resetTasks(world_);
    case Options::Command::Watch:
        return watchTasks(world_);
    case Options::Command::ModuleShow:
        return moduleShowTasks(world_);
    case Options::Command::ModuleSet:
        return moduleSetTasks(world_, devices);
    default:
        return getTasks(world_);
    }
}

void Program::run(const TaskMaker &maker, int jobs)
{
    printer_.setNamed(devices_.size() > 1);
    runner_ = std::make_unique<DeviceRunner>(devices_, jobs, printer_);
    connect(runner_.get(), &DeviceRunner::finished, this,
            [this] { Q_EMIT finished(runner_->status()); });
    // Through the event loop: the task that says it is deleted then.
    connect(runner_.get(), &DeviceRunner::unread, this, &Program::endUnread, Qt::QueuedConnection);
    const bool needsSearch =
        isForModule(options_.command) ||
        std::any_of(devices_.begin(), devices_.end(),
                    [](const Device &device) { return device.road == Device::Road::Module; });
    if (!needsSearch) {
        runFound(maker, {});
        return;
    }
    search_->search(this, [this, maker](const ModuleSearchResult &found) {
        if (isInterrupted_)
            return;
        try {
            runFound(maker, found);
        } catch (const UsageError &error) {
            refuse(error);
        }
    });
}

void Program::runFound(const TaskMaker &maker, const ModuleSearchResult &found)
{
    std::vector<FoundDevice> all;
    std::map<std::size_t, Failure> failures;
    for (const Device &device : devices_) {
        FoundDevice one{device, {}};
        if (device.road == Device::Road::Module || isForModule(options_.command)) {
            try {
                one.module = moduleOf(device, found);
            } catch (const Failure &failure) {
                failures.emplace(all.size(), failure);
            }
        }
        all.push_back(one);
    }
    requireDistinct(all);
    runner_->run(maker, all, failures);
}
