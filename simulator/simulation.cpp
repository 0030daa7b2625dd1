#include "simulator/simulation.h"

#include "simulator/output.h"
#include "simulator/real_port_face.h"
#include "simulator/serial_line.h"
#include "simulator/text_form.h"
#ifdef Q_OS_UNIX
#include "simulator/virtual_port_face.h"
#endif

#include <algorithm>
#include <stdexcept>

namespace {

/// `text` for one report line: printable, and cut when it is very long.
std::string reportable(const std::string &text)
{
    constexpr std::size_t longest = 1000;
    if (text.size() <= longest)
        return printable(text);
    return printable(text.substr(0, longest)) + " ... (" + std::to_string(text.size()) + " bytes)";
}

} // namespace

Simulation::Simulation(const Options &options) : options_(options)
{
    const std::size_t count = std::max<std::size_t>(1, options_.modules.size());
    for (std::size_t i = 0; i < count; ++i) {
        switches_.push_back(std::make_unique<SimulatedSwitch>(options_.switchRestartTime));
        connect(switches_.back().get(), &SimulatedSwitch::happened, this,
                [this, i](const SwitchEvent &event) { onSwitchEvent(i, event); });
    }
    if (options_.serial)
        makeSerialFace();
    if (!options_.modules.empty())
        makeNetworkFace();
    setFaults(options_.faults);
}

Simulation::~Simulation() = default;

void Simulation::start()
{
    if (serial_)
        plug();
    if (network_) {
        network_->start();
        for (std::size_t i = 0; i < network_->moduleCount(); ++i) {
            const ModuleState &module = network_->state(i);
            printLine("module " + toText(module.address()) + " " + printable(module.name) + " " +
                      toText(module.mac));
        }
    }
    printChangedState();
}

std::string Simulation::stateText() const
{
    std::string text;
    for (std::size_t i = 0; i < switches_.size(); ++i) {
        if (switches_.size() > 1)
            text.append("Unit ").append(std::to_string(i + 1)).append(":\n");
        text += switches_[i]->model().stateText();
        if (network_)
            text += ::stateText(network_->state(i));
    }
    return text;
}

Faults Simulation::faults() const
{
    Faults faults{.ofSwitch = switches_.front()->model().faults()};
    if (network_)
        faults.ofModule = network_->faults();
    return faults;
}

void Simulation::setFaults(const Faults &faults)
{
    for (const auto &each : switches_)
        each->setFaults(faults.ofSwitch);
    if (network_)
        network_->setFaults(faults.ofModule);
}

void Simulation::plug()
{
    serial_->plug();
    printLine(serial_->portName().toStdString());
}

void Simulation::reset()
{
    for (const auto &each : switches_)
        each->reset();
    if (network_)
        network_->reset();
}

void Simulation::makeSerialFace()
{
    SimulatedSwitch &theSwitch = *switches_.front();
    if (!options_.portName.isEmpty()) {
        serial_ = std::make_unique<RealPortFace>(theSwitch, options_.portName);
    } else {
#ifdef Q_OS_UNIX
        const int speed = options_.pacing ? lineBytesPerSecond : ReplyPacer::unpaced;
        serial_ = std::make_unique<VirtualPortFace>(theSwitch, options_.linkPath, speed);
#else
        throw std::runtime_error("this system has no pseudo-terminals: name a port with --port");
#endif
    }
    connect(serial_.get(), &SerialFace::broken, this, &Simulation::failed);
    connect(serial_.get(), &SerialFace::noted, this,
            [](const QString &text) { reportLine(text.toStdString()); });
}

void Simulation::makeNetworkFace()
{
    network_ = std::make_unique<NetworkFace>(options_.network);
    for (std::size_t i = 0; i < options_.modules.size(); ++i)
        network_->addModule(options_.modules[i], *switches_[i]);
    connect(network_.get(), &NetworkFace::refused, this, [this](int module, const QString &reason) {
        reportOf("module", module, reason.toStdString());
    });
    connect(network_.get(), &NetworkFace::obeyed, this, [this](int module, const QString &note) {
        if (options_.verbose)
            reportOf("module", module, note.toStdString());
    });
    connect(network_.get(), &NetworkFace::stateChanged, this, &Simulation::printChangedState);
}

void Simulation::onSwitchEvent(std::size_t index, const SwitchEvent &event)
{
    const int number = static_cast<int>(index);
    switch (event.kind) {
    case SwitchEvent::Kind::Obeyed:
        if (options_.verbose)
            reportOf("switch", number, "command " + reportable(event.text));
        break;
    case SwitchEvent::Kind::Said:
        if (options_.verbose)
            reportOf("switch", number, "answer " + reportable(event.text));
        break;
    case SwitchEvent::Kind::Rejected:
        reportOf("switch", number, "rejected " + reportable(event.text) + ": " + event.reason);
        break;
    case SwitchEvent::Kind::TakenInPart:
        reportOf("switch", number, "took part of " + reportable(event.text) + ": " + event.reason);
        break;
    case SwitchEvent::Kind::Restarted:
        if (options_.verbose)
            reportOf("switch", number, "restarted");
        break;
    case SwitchEvent::Kind::StateChanged:
        printChangedState();
        break;
    }
}

void Simulation::reportOf(const char *what, int index, const std::string &text) const
{
    std::string line = what;
    if (index >= 0 && switches_.size() > 1)
        line.append(" ").append(std::to_string(index + 1));
    reportLine(line + ": " + text);
}

void Simulation::printChangedState() const
{
    if (options_.printState)
        printLine(stateText());
}
