#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

/// One road to a switch: a serial port or a UDP socket. It moves bytes and says what became of the
/// road, and knows nothing of what the bytes mean.
///
/// It is opened at most once; after it broke or was closed it is done with.
class SwitchLink : public QObject
{
    Q_OBJECT

public:
    enum class Road { Serial, Network };

    ~SwitchLink() override = default;

    virtual Road road() const = 0;
    /// Begins to open; opened() or failed() follows, from within this call where the system answers
    /// at once.
    virtual void open() = 0;
    virtual bool isOpen() const = 0;
    /// Hands `bytes` over in one go: one write on the line, one datagram on the network; written()
    /// tells that the system has taken them. Without an open road they are lost.
    virtual void write(const QByteArray &bytes) = 0;
    /// No signal comes afterwards.
    virtual void close() = 0;

Q_SIGNALS:
    void opened();
    /// The road could not be opened; `reason` is a clause for people, in the system's words.
    void failed(const QString &reason);
    /// What has left, from within write().
    void written(const QByteArray &bytes);
    /// What has arrived: any piece of the stream on the line, a whole datagram on the network.
    void received(const QByteArray &bytes);
    /// The open road is gone, and closed already; `reason` in the system's words.
    void broken(const QString &reason);
};
