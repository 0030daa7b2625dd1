#include "session/link_recorder.h"

#include "device/usr_frame.h"
#include "session/device_link.h"
#include "session/module_search.h"
#include "session/module_session.h"
#include "session/switch_session.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <utility>

namespace {
QString directionName(LinkRecorder::Direction direction)
{
    return direction == LinkRecorder::Direction::Sent ? QStringLiteral("sent")
                                                      : QStringLiteral("received");
}

QString roadName(LinkRecorder::Road road)
{
    switch (road) {
    case LinkRecorder::Road::Serial:
        return QStringLiteral("serial");
    case LinkRecorder::Road::Udp:
        return QStringLiteral("udp");
    case LinkRecorder::Road::Module:
        break;
    }
    return QStringLiteral("module");
}

QByteArray forRecord(LinkRecorder::Direction direction, LinkRecorder::Road road,
                     const QByteArray &bytes)
{
    if (road != LinkRecorder::Road::Module)
        return bytes;
    return direction == LinkRecorder::Direction::Sent ? usr_frame::requestForRecord(bytes)
                                                      : usr_frame::replyForRecord(bytes);
}

template <typename Source>
void recordFrames(Source &source, LinkRecorder &recorder, const QString &name,
                  LinkRecorder::Road road)
{
    const auto noteAs = [&recorder, name, road](LinkRecorder::Direction direction) {
        return [&recorder, name, road, direction](const QByteArray &bytes) {
            recorder.note(direction, name, road, bytes);
        };
    };
    QObject::connect(&source, &Source::written, &recorder, noteAs(LinkRecorder::Direction::Sent));
    QObject::connect(&source, &Source::received, &recorder,
                     noteAs(LinkRecorder::Direction::Received));
}
} // namespace

LinkRecorder::LinkRecorder(const QString &fileName, QObject *parent)
    : LinkRecorder(std::make_unique<QFile>(fileName), parent)
{
}

LinkRecorder::LinkRecorder(std::unique_ptr<QFileDevice> file, QObject *parent)
    : QObject(parent), file_(std::move(file))
{
    clock_.start();
    // Unbuffered: a line is the system's as soon as it is written.
    if (!file_->open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
        problem_ = file_->errorString();
}

LinkRecorder::~LinkRecorder() = default;

void LinkRecorder::note(Direction direction, const QString &name, Road road,
                        const QByteArray &bytes)
{
    if (!problem_.isEmpty())
        return;
    const QByteArray kept = forRecord(direction, road, bytes);
    const QJsonObject line{{QStringLiteral("bytes"), QString::fromLatin1(kept.toHex())},
                           {QStringLiteral("direction"), directionName(direction)},
                           {QStringLiteral("name"), name},
                           {QStringLiteral("road"), roadName(road)},
                           {QStringLiteral("text"), QString::fromUtf8(kept)},
                           {QStringLiteral("time"), clock_.elapsed()}};
    write(QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n');
}

void LinkRecorder::write(const QByteArray &line)
{
    const qint64 end = file_->pos();
    if (file_->write(line) == line.size())
        return;
    problem_ = file_->errorString();
    if (!file_->isSequential())
        file_->resize(end); // a line that was written in part is none
    Q_EMIT failed(problem_);
}

void record(SwitchSession &session, LinkRecorder &recorder, const QString &name,
            LinkRecorder::Road road)
{
    recordFrames(session, recorder, name, road);
}

void record(ModuleSearch &search, LinkRecorder &recorder, const QString &name)
{
    recordFrames(search, recorder, name, LinkRecorder::Road::Module);
}

void record(ModuleSession &session, LinkRecorder &recorder, const QString &name)
{
    recordFrames(session, recorder, name, LinkRecorder::Road::Module);
}

void record(DeviceLink &link, LinkRecorder &recorder)
{
    const auto noteAs = [&recorder](LinkRecorder::Direction direction) {
        return [&recorder, direction](const QString &name, SwitchLink::Road road,
                                      const QByteArray &bytes) {
            recorder.note(direction, name,
                          road == SwitchLink::Road::Serial ? LinkRecorder::Road::Serial
                                                           : LinkRecorder::Road::Udp,
                          bytes);
        };
    };
    QObject::connect(&link, &DeviceLink::written, &recorder, noteAs(LinkRecorder::Direction::Sent));
    QObject::connect(&link, &DeviceLink::received, &recorder,
                     noteAs(LinkRecorder::Direction::Received));
}
