#pragma once

#include "simulator/network_face.h"
#include "simulator/options.h"
#include "simulator/serial_face.h"
#include "simulator/simulated_switch.h"

#include <QObject>
#include <memory>
#include <string>
#include <vector>

/// Everything that one run simulates, put together from the options: switches and their faces.
/// The serial line and the first module lead to the first switch; every further module has a switch
/// of its own.
class Simulation : public QObject
{
    Q_OBJECT

public:
    explicit Simulation(const Options &options);
    ~Simulation() override;

    /// Opens the faces and prints where they are: the serial port's name on a line, then a line
    /// "module ADDRESS NAME MAC" for each module. Throws std::runtime_error with a text for the
    /// user when one cannot be had.
    void start();

    /// The state in lines: the switch's, then its module's. With several modules each pair stands
    /// behind a line "Unit 1:", "Unit 2:" ...
    std::string stateText() const;
    /// The faults in force, with the counts that are left.
    Faults faults() const;
    void setFaults(const Faults &faults);

    std::size_t switchCount() const { return switches_.size(); }
    /// Switch `index`, from 0.
    SimulatedSwitch &switchAt(std::size_t index) { return *switches_.at(index); }

    /// The serial face; null without one.
    SerialFace *serialFace() { return serial_.get(); }
    /// Plugs the serial face in (again) and prints its port.
    void plug();
    /// Factory settings for all switches, and all modules as at the start.
    void reset();

Q_SIGNALS:
    /// Nothing is left to simulate.
    void failed(const QString &reason);

private:
    void makeSerialFace();
    void makeNetworkFace();
    void onSwitchEvent(std::size_t index, const SwitchEvent &event);
    void reportOf(const char *what, int index, const std::string &text) const;
    void printChangedState() const;

    Options options_;
    std::vector<std::unique_ptr<SimulatedSwitch>> switches_;
    std::unique_ptr<SerialFace> serial_;
    std::unique_ptr<NetworkFace> network_;
};
