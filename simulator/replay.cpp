#include "simulator/replay.h"

#include "simulator/output.h"
#include "simulator/switch_traffic.h"
#include "simulator/text_form.h"
#include "simulator/udp_source.h"

#include <QNetworkDatagram>
#include <stdexcept>
#include <utility>

namespace {

/// `command` for one report line.
std::string reportable(const QByteArray &command)
{
    constexpr qsizetype longest = 1000;
    return printable(command.left(longest).toStdString());
}

bool isSerial(const ReplayOptions &options, const Recording &recording)
{
    if (options.udp)
        return false;
    return !options.linkPath.isEmpty() || recording.serial;
}

} // namespace

Replay::Replay(const ReplayOptions &options, bool verbose)
    : Replay(options, verbose, readRecording(options.file, options.name))
{
}

Replay::Replay(const ReplayOptions &options, bool verbose, const Recording &recording)
    : options_(options), serial_(isSerial(options, recording)), switch_(recording, options.speed)
{
    switch_.onCommand = [verbose](const QByteArray &command, int pieces) {
        if (pieces < 0)
            reportLine("replay: not in the recording: " + reportable(command));
        else if (verbose)
            reportLine("replay: " + reportable(command) + ": " + std::to_string(pieces) +
                       " pieces");
    };
    connect(&pacer_, &ReplyPacer::due, this, &Replay::say);
}

Replay::~Replay() = default;

void Replay::start()
{
    if (serial_)
        openSerial();
    else
        openUdp();
}

void Replay::openSerial()
{
#ifdef Q_OS_UNIX
    connect(&terminal_, &PseudoTerminal::received, this, &Replay::hear);
    terminal_.open();
    if (!options_.linkPath.isEmpty())
        link_ = std::make_unique<PortLink>(options_.linkPath, terminal_.path());
    printLine(terminal_.path().toStdString());
#else
    throw std::runtime_error("this system has no pseudo-terminals: choose UDP with --udp");
#endif
}

void Replay::openUdp()
{
    const UdpPoint point =
        options_.udp.value_or(UdpPoint{QHostAddress(QHostAddress::LocalHost), options_.switchPort});
    connect(&socket_, &QUdpSocket::readyRead, this, &Replay::readDatagrams);
    if (!socket_.bind(point.address, point.port, QAbstractSocket::DontShareAddress))
        throw std::runtime_error(listenFailure(socket_, point.address, point.port));
    printLine("udp " + socket_.localAddress().toString().toStdString() + ":" +
              std::to_string(socket_.localPort()));
}

void Replay::readDatagrams()
{
    while (socket_.hasPendingDatagrams()) {
        const QNetworkDatagram datagram = socket_.receiveDatagram();
        if (!datagram.isValid())
            continue;
        peer_ = datagram.senderAddress();
        peerPort_ = static_cast<quint16>(datagram.senderPort());
        ownAddress_ = datagram.destinationAddress();
        hear(datagram.data());
    }
}

void Replay::hear(const QByteArray &bytes)
{
    pacer_.enqueue(switch_.receive(bytes));
}

void Replay::say(const QByteArray &bytes)
{
#ifdef Q_OS_UNIX
    if (serial_) {
        if (!terminal_.write(bytes))
            reportLine("replay: nobody reads " + terminal_.path().toStdString() +
                       ", so text is being dropped");
        return;
    }
#endif
    sendFrom(socket_, ownAddress_, bytes, peer_, peerPort_);
}
