#pragma once

#include "session/switch_link.h"

#include <QByteArrayList>
#include <QObject>
#include <QString>
#include <QStringDecoder>
#include <QTimer>
#include <chrono>
#include <memory>
#include <optional>
#include <string>

/// What was received over a connection and what is still to be made of it.
struct ReceivedText
{
    QByteArrayList arrived; ///< as the link gave it and nobody has taken it yet
    QStringDecoder decoder{QStringDecoder::Utf8};
    QString receiveBuffer; ///< everything since it was last emptied; serial line only
    QString handshakeTail; ///< the end of the last chunk, for a handshake that the line split
    std::string configurationReply;
    std::string statusReply;
    std::string layoutReply;
    bool replyReady = false;               ///< the buffer's reply has been recognised
    bool horizontalDimensionSaved = false; ///< a layout was stored, its report is to follow
    int readRetryCount = 0;                ///< 0 to 5

    /// A recognised reply is not to be read from the buffer again.
    void forgetBuffer()
    {
        receiveBuffer.clear();
        replyReady = false;
    }
};

/// The read-back questions whose answers have not been taken.
struct AwaitedAnswers
{
    bool awaitingRlReply = false;
    bool awaitingStatusReply = false;
    bool awaitingBpReply = false;
};

/// One connection to one switch. What was received over it, what is still awaited and everything
/// that is to happen later belong to it and go with it, so that nothing that began with one switch
/// reaches another.
///
/// A connection without a link stands for "none"; it takes part in everything and sends nothing.
class Connection : public QObject
{
    Q_OBJECT

public:
    Connection();
    explicit Connection(std::unique_ptr<SwitchLink> link);
    ~Connection() override;

    /// None without a link.
    std::optional<SwitchLink::Road> road() const;
    /// Whether its link is open.
    bool isOpen() const;
    SwitchLink *link() const { return link_.get(); }

    /// Whether the switch has answered the last read-back. Marking it so ends the watch for an
    /// answer.
    bool isConnected() const { return connected; }
    void markConnected(bool yes);

    ReceivedText &received() { return received_; }
    AwaitedAnswers &awaited() { return awaited_; }
    /// Everything that has arrived, joined.
    QByteArray takeArrived();
    /// The oldest piece that has arrived, a datagram on the network; none when there is none.
    std::optional<QByteArray> takeNextArrived();

    /// Calls `slot` (a name without its parentheses) of `receiver` after `delay`, unless this
    /// connection or the receiver has ended by then. Deleting what it returns calls it off; null
    /// when this connection has ended already.
    QTimer *later(std::chrono::milliseconds delay, QObject &receiver, const char *slot);
    /// Says unanswered() unless the switch has answered within `wait`. A further call starts anew.
    void watchForAnswer(std::chrono::milliseconds wait);

    /// Closes the link and keeps it; for the program's end.
    void close();
    /// Cancels what was to happen later and closes the link. Only once.
    void end();
    bool hasEnded() const { return delayed_ == nullptr; }

Q_SIGNALS:
    /// The switch has not answered in the time that watchForAnswer gave it.
    void unanswered();

private:
    std::unique_ptr<SwitchLink> link_;
    ReceivedText received_;
    AwaitedAnswers awaited_;
    QTimer answerWatch_;
    std::unique_ptr<QObject> delayed_; ///< whatever is delayed hangs on it
    bool connected = false;
};
