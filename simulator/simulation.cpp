#include "simulator/simulation.h"

#include "simulator/output.h"
#include "simulator/real_port_face.h"
#include "simulator/text_form.h"
#ifdef Q_OS_UNIX
#include "simulator/virtual_port_face.h"
#endif

#include <stdexcept>

Simulation::Simulation(const Options &options) : options_(options)
{
    connect(&switch_, &SimulatedSwitch::happened, this, &Simulation::onEvent);
    setFaults(options_.faults);
    if (options_.serial)
        makeSerialFace();
}

void Simulation::start()
{
    if (serial_)
        plug();
    if (options_.printState)
        printLine(stateText());
}

std::string Simulation::stateText() const
{
    return switch_.model().stateText();
}

Faults Simulation::faults() const
{
    return {.ofSwitch = switch_.model().faults()};
}

void Simulation::setFaults(const Faults &faults)
{
    switch_.setFaults(faults.ofSwitch);
}

void Simulation::plug()
{
    serial_->plug();
    printLine(serial_->portName().toStdString());
}

void Simulation::reset()
{
    switch_.reset();
}

void Simulation::onEvent(const SwitchEvent &event)
{
    switch (event.kind) {
    case SwitchEvent::Kind::Obeyed:
        if (options_.verbose)
            reportLine("command " + printable(event.text));
        break;
    case SwitchEvent::Kind::Said:
        if (options_.verbose)
            reportLine("answer  " + printable(event.text));
        break;
    case SwitchEvent::Kind::Rejected:
        reportLine("rejected " + printable(event.text) + ": " + event.reason);
        break;
    case SwitchEvent::Kind::StateChanged:
        if (options_.printState)
            printLine(stateText());
        break;
    }
}

void Simulation::makeSerialFace()
{
    if (!options_.portName.isEmpty()) {
        serial_ = std::make_unique<RealPortFace>(switch_, options_.portName);
    } else {
#ifdef Q_OS_UNIX
        serial_ = std::make_unique<VirtualPortFace>(switch_, options_.linkPath);
#else
        throw std::runtime_error("this system has no pseudo-terminals: name a port with --port");
#endif
    }
    connect(serial_.get(), &SerialFace::broken, this, &Simulation::failed);
    connect(serial_.get(), &SerialFace::noted, this,
            [](const QString &text) { reportLine(text.toStdString()); });
}
