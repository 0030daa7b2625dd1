#pragma once

#include "simulator/options.h"
#include "simulator/recorded_switch.h"
#include "simulator/reply_pacer.h"
#ifdef Q_OS_UNIX
#include "simulator/port_link.h"
#include "simulator/pseudo_terminal.h"
#endif

#include <QHostAddress>
#include <QObject>
#include <QUdpSocket>
#include <memory>

/// A recording behind a face: a virtual serial port, or a UDP port as a network module has it for
/// its switch. Each recorded piece goes out in one write or one datagram.
class Replay : public QObject
{
    Q_OBJECT

public:
    /// Reads the recording. Throws BadRecording.
    Replay(const ReplayOptions &options, bool verbose);
    ~Replay() override;

    /// Opens the face and prints where it is: the port's path, or "udp ADDRESS:PORT". Throws
    /// std::runtime_error with a text for the user when it cannot be had.
    void start();

private:
    Replay(const ReplayOptions &options, bool verbose, const Recording &recording);
    void openSerial();
    void openUdp();
    void readDatagrams();
    void hear(const QByteArray &bytes);
    void say(const QByteArray &bytes);

    ReplayOptions options_;
    bool serial_;
    RecordedSwitch switch_;
    ReplyPacer pacer_{ReplyPacer::unpaced};
    QUdpSocket socket_;
    QHostAddress peer_;
    quint16 peerPort_ = 0;
    QHostAddress ownAddress_; ///< that the peer speaks to
#ifdef Q_OS_UNIX
    PseudoTerminal terminal_;
    std::unique_ptr<PortLink> link_;
#endif
};
