#pragma once

#include "simulator/reply_pacer.h"
#include "simulator/simulated_switch.h"

#include <QByteArray>
#include <QObject>
#include <QString>

/// The switch's serial line: hands what arrives to the switch and lets its answers go when they are
/// due. What the line is made of is for the classes below to say.
class SerialFace : public QObject
{
    Q_OBJECT

public:
    /// `bytesPerSecond` as for ReplyPacer: what the line carries towards the other program.
    SerialFace(SimulatedSwitch &theSwitch, int bytesPerSecond);

    /// Connects the cable. Throws std::runtime_error with a text for the user when it cannot.
    virtual void plug() = 0;
    /// Pulls the cable; what the switch had still to say is lost.
    virtual void unplug() = 0;
    virtual bool isPlugged() const = 0;
    /// The port's name for the user; for a virtual one, what the other program opens.
    virtual QString portName() const = 0;

    /// The number of this line towards the switch.
    static constexpr int line = 0;
    /// So many bytes wait for the line at most; text that would make it more is dropped.
    static constexpr qsizetype longestQueue = qsizetype{32} * 1024 * 1024;

Q_SIGNALS:
    /// The line has broken by itself and is closed.
    void broken(const QString &reason);
    /// Something of interest for the user that stops nothing.
    void noted(const QString &text);

protected:
    void hear(const QByteArray &bytes);
    void forgetPending() { pacer_.clear(); }
    /// Puts bytes on the line without blocking.
    virtual void put(const QByteArray &bytes) = 0;
    /// Bytes put but not taken yet.
    virtual qsizetype backlog() const = 0;

private:
    void enqueue(const std::vector<Piece> &pieces);

    SimulatedSwitch &switch_;
    ReplyPacer pacer_;
    bool overflowNoted_ = false;
};
