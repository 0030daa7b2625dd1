#pragma once

#include "simulator/port_link.h"
#include "simulator/pseudo_terminal.h"
#include "simulator/serial_face.h"

#include <memory>

/// A serial line on a pseudo-terminal, with a symbolic link to it if wanted.
class VirtualPortFace : public SerialFace
{
    Q_OBJECT

public:
    /// `linkPath`: where to put the link; empty: none. `bytesPerSecond` as for SerialFace.
    VirtualPortFace(SimulatedSwitch &theSwitch, const QString &linkPath, int bytesPerSecond);

    void plug() override;
    void unplug() override;
    bool isPlugged() const override { return terminal_.isOpen(); }
    QString portName() const override { return terminal_.path(); }

protected:
    void put(const QByteArray &bytes) override;
    qsizetype backlog() const override { return terminal_.backlog(); }

private:
    QString linkPath_;
    PseudoTerminal terminal_;
    std::unique_ptr<PortLink> link_;
    bool overflowNoted_ = false;
};
