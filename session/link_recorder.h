#pragma once

#include "session/switch_link.h"

#include <QElapsedTimer>
#include <QFileDevice>
#include <QObject>
#include <QString>
#include <memory>

class DeviceLink;
class ModuleSearch;
class ModuleSession;
class SwitchSession;

/// Writes what passes on the roads to switches and modules into one file, as JSON lines: one object
/// for each piece of the stream, datagram or frame, in the order in which they passed. Many devices
/// may share a recorder; `name` tells them apart. An example, "//rl" sent over a serial port:
/// {"bytes":"2f2f726c0d","direction":"sent","name":"desk-1","road":"serial","text":"//rl\r","time":12}
/// `time` is in milliseconds since the recorder was made, `bytes` are hexadecimal digits, `text` is
/// the same read as UTF-8.
///
/// Each line leaves for the system at once and whole, so that a program that ends in the middle
/// leaves whole lines. Frames of the module protocol are kept without credentials.
class LinkRecorder : public QObject
{
    Q_OBJECT

public:
    enum class Direction { Sent, Received };
    enum class Road { Serial, Udp, Module };

    /// Begins the file; what it held before is gone.
    explicit LinkRecorder(const QString &fileName, QObject *parent = nullptr);
    /// The same with a file that is not open yet.
    explicit LinkRecorder(std::unique_ptr<QFileDevice> file, QObject *parent = nullptr);
    ~LinkRecorder() override;

    /// Why nothing is recorded (any more), in the system's words; empty while all is well.
    const QString &problem() const { return problem_; }

    /// Writes one line. `name` is the device's, `bytes` are what passed in one go. After a failure:
    /// nothing.
    void note(Direction direction, const QString &name, Road road, const QByteArray &bytes);

Q_SIGNALS:
    /// A line could not be written, and no further one will be; only once.
    void failed(const QString &reason);

private:
    void write(const QByteArray &line);

    std::unique_ptr<QFileDevice> file_;
    QString problem_;
    QElapsedTimer clock_;
};

/// Records everything that passes from now on, for as long as both live. `name` is the device's.
void record(SwitchSession &session, LinkRecorder &recorder, const QString &name,
            LinkRecorder::Road road);
void record(ModuleSearch &search, LinkRecorder &recorder, const QString &name);
void record(ModuleSession &session, LinkRecorder &recorder, const QString &name);
/// The name is that of the port or the address of the module.
void record(DeviceLink &link, LinkRecorder &recorder);
