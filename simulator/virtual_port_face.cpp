#include "simulator/virtual_port_face.h"

VirtualPortFace::VirtualPortFace(SimulatedSwitch &theSwitch, const QString &linkPath,
                                 int bytesPerSecond)
    : SerialFace(theSwitch, bytesPerSecond), linkPath_(linkPath)
{
    connect(&terminal_, &PseudoTerminal::received, this, &VirtualPortFace::hear);
}

void VirtualPortFace::plug()
{
    unplug();
    terminal_.open();
    try {
        if (!linkPath_.isEmpty())
            link_ = std::make_unique<PortLink>(linkPath_, terminal_.path());
    } catch (...) {
        terminal_.close();
        throw;
    }
}

void VirtualPortFace::unplug()
{
    forgetPending();
    link_.reset();
    terminal_.close();
}

void VirtualPortFace::put(const QByteArray &bytes)
{
    const bool taken = terminal_.write(bytes);
    if (!taken && !overflowNoted_)
        Q_EMIT noted(QStringLiteral("nobody reads %1, so text is being dropped").arg(portName()));
    overflowNoted_ = !taken;
}
