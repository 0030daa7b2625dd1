#pragma once

#include "simulator/answer_packer.h"
#include "simulator/reply_pacer.h"
#include "simulator/simulated_switch.h"

#include <QHostAddress>
#include <QObject>
#include <QTimer>
#include <QUdpSocket>
#include <chrono>
#include <deque>
#include <memory>
#include <string>

/// One module's way to its switch: the payload of each datagram goes down the switch's serial line,
/// and what the switch says goes, packed, to whoever sent the last datagram.
class SwitchTraffic : public QObject
{
    Q_OBJECT

public:
    /// `quietGap`: the pause of the switch that ends a datagram; 0: what is said at once to one
    /// datagram makes one, without waiting.
    SwitchTraffic(SimulatedSwitch &theSwitch, quint16 port, std::chrono::milliseconds quietGap);

    /// Listens at `address`, and no longer where it did. Returns what went wrong in words, or an
    /// empty text. Afterwards it listens there or nowhere.
    std::string listen(const QHostAddress &address);
    bool isListening() const { return socket_ != nullptr; }

    /// While deaf, datagrams are thrown away.
    void setDeaf(bool deaf) { deaf_ = deaf; }
    /// Datagrams of at most so many bytes; 0: as large as a module's are.
    void setSplit(int bytes);

    /// The number of this line towards the switch.
    static constexpr int line = 1;

private:
    void readAll();
    void collect(const QByteArray &bytes);
    void endDatagram();
    void queue(const std::vector<QByteArray> &datagrams);
    void sendNext();

    SimulatedSwitch &switch_;
    quint16 port_;
    std::unique_ptr<QUdpSocket> socket_;
    ReplyPacer pacer_{ReplyPacer::unpaced};
    AnswerPacker packer_;
    QTimer quiet_;
    QTimer sending_;
    std::deque<QByteArray> outgoing_;
    qsizetype limit_ = AnswerPacker::largestDatagram;
    QHostAddress peer_;
    quint16 peerPort_ = 0;
    QHostAddress ownAddress_;
    bool deaf_ = false;
};

/// Why a UDP port could not be had, in words for the user.
std::string listenFailure(const QUdpSocket &socket, const QHostAddress &address, quint16 port);
