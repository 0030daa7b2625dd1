#pragma once

#include "simulator/module_model.h"
#include "simulator/network_settings.h"
#include "simulator/switch_traffic.h"

#include <QHostAddress>
#include <QNetworkDatagram>
#include <QObject>
#include <QUdpSocket>
#include <memory>
#include <string>
#include <vector>

/// The network modules on their ports: one management socket for all of them, and for each module a
/// socket of its own, at its own address, for the traffic to its switch.
class NetworkFace : public QObject
{
    Q_OBJECT

public:
    explicit NetworkFace(const NetworkSettings &settings);
    ~NetworkFace() override;

    /// Adds a module in front of `theSwitch`, which must outlive this object. Before start().
    void addModule(const ModuleState &initial, SimulatedSwitch &theSwitch);

    /// Opens the sockets. Throws std::runtime_error with a text for the user when the management
    /// port cannot be had, or no module's port for switch traffic; a single one is only noted.
    void start();

    std::size_t moduleCount() const { return modules_.size(); }
    /// Module `index`, from 0.
    const ModuleState &state(std::size_t index) const;
    /// The faults of the first module, with the counts that are left.
    const ModuleFaults &faults() const;
    void setFaults(const ModuleFaults &faults);
    /// All modules as at the start.
    void reset();

Q_SIGNALS:
    /// A request was obeyed; `module` counts from 0.
    void obeyed(int module, const QString &note);
    /// Something was refused or could not be done; `module` is -1 when it concerns none.
    void refused(int module, const QString &reason);
    void stateChanged(int module);

private:
    struct Module
    {
        Module(const ModuleState &initial, SimulatedSwitch &theSwitch,
               const NetworkSettings &settings)
            : model(initial), traffic(theSwitch, settings.switchPort, settings.quietGap)
        {
        }

        ModuleModel model;
        SwitchTraffic traffic;
        Ipv4 listeningAt{};
    };

    void readManagement();
    void onRequest(const QNetworkDatagram &datagram);
    void answer(std::size_t index, const ModuleOutcome &outcome, const QNetworkDatagram &request);
    void restart(int index);
    std::string listenForTraffic(Module &module);
    void followAddress(int index);

    NetworkSettings settings_;
    QUdpSocket management_;
    std::vector<std::unique_ptr<Module>> modules_;
};
