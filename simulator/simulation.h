#pragma once

#include "simulator/options.h"
#include "simulator/serial_face.h"
#include "simulator/simulated_switch.h"

#include <QObject>
#include <memory>
#include <string>

/// Everything that one run simulates, put together from the options: the switch and its faces.
class Simulation : public QObject
{
    Q_OBJECT

public:
    explicit Simulation(const Options &options);

    /// Opens the faces and prints where they are. Throws std::runtime_error with a text for the
    /// user when one cannot be had.
    void start();

    /// The state in lines, as SwitchModel::stateText.
    std::string stateText() const;
    /// The faults in force, with the counts that are left.
    Faults faults() const;
    void setFaults(const Faults &faults);
    SimulatedSwitch &mainSwitch() { return switch_; }
    /// The serial face; null without one.
    SerialFace *serialFace() { return serial_.get(); }
    /// Plugs the serial face in (again) and prints its port.
    void plug();
    /// Factory settings for all.
    void reset();

Q_SIGNALS:
    /// Nothing is left to simulate.
    void failed(const QString &reason);

private:
    void onEvent(const SwitchEvent &event);
    void makeSerialFace();

    Options options_;
    SimulatedSwitch switch_;
    std::unique_ptr<SerialFace> serial_;
};
