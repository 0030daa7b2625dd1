#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <memory>

/// A virtual serial port: what another program reads and writes at path() arrives here and back.
/// Unix only. Raw: no byte is changed or echoed.
///
/// It holds the other end's device open as well, so that a program closing its end is no hang-up
/// and the next one finds the port alive. Closing this object is what pulling the cable is.
class PseudoTerminal : public QObject
{
    Q_OBJECT

public:
    explicit PseudoTerminal(QObject *parent = nullptr);
    ~PseudoTerminal() override;

    /// Makes the pair. Throws std::system_error when the system gives none.
    void open();
    /// Pulls the cable: path() vanishes, whoever has it open gets errors. Unsent bytes are lost.
    void close();
    bool isOpen() const { return controller_ >= 0; }

    /// The device for the other program, such as "/dev/pts/5"; empty while closed.
    const QString &path() const { return path_; }

    /// Sends `bytes` to the other end as fast as it reads; never blocks. Returns false, and sends
    /// none of them, when more than `longestBacklog` would be waiting or the terminal is closed.
    bool write(const QByteArray &bytes);
    /// How many bytes the other end has not made room for yet.
    qsizetype backlog() const { return pending_.size() - sent_; }

    static constexpr qsizetype longestBacklog = qsizetype{32} * 1024 * 1024;

Q_SIGNALS:
    void received(const QByteArray &bytes);

private:
    void readAll();
    void writePending();

    int controller_ = -1;
    int device_ = -1;
    QString path_;
    QByteArray pending_;
    qsizetype sent_ = 0;
    std::unique_ptr<QSocketNotifier> readNotifier_;
    std::unique_ptr<QSocketNotifier> writeNotifier_;
};
