#include "simulator/recording.h"
#include "property.h"
#include "session/link_recorder.h"
#include "simulator/recorded_switch.h"

#include <QFile>
#include <QTemporaryDir>

namespace {
/// Pieces that pass are recorded, and the simulator reads them as they were.
void requireKept(Choices &choices, const QString &file)
{
    const auto road = choices.flag() ? LinkRecorder::Road::Serial : LinkRecorder::Road::Udp;
    const QString name = choices.textLine();
    std::vector<RecordedPiece> passed;
    {
        LinkRecorder recorder(file);
        for (int pieces = 0; pieces < 8 && !choices.isAtEnd(); ++pieces) {
            const bool isSent = choices.flag();
            const QByteArray bytes = choices.bytes(choices.byte());
            recorder.note(isSent ? LinkRecorder::Direction::Sent
                                 : LinkRecorder::Direction::Received,
                          name, road, bytes);
            passed.push_back({isSent, {}, bytes});
        }
        require(recorder.problem().isEmpty(), "what passes is recorded",
                recorder.problem().toStdString());
    }
    if (passed.empty())
        return;
    const Recording recording = readRecording(file, {});
    require(recording.serial == (road == LinkRecorder::Road::Serial), "its road is kept");
    require(recording.pieces.size() == passed.size(), "every piece is kept, one a line");
    for (std::size_t at = 0; at < passed.size(); ++at)
        require(recording.pieces[at].sent == passed[at].sent &&
                    recording.pieces[at].bytes == passed[at].bytes,
                "pieces are kept as they were");
}

/// A file of any kind is a recording, or refused by the one exception; a switch can be made of it.
void requireReadOrRefused(const std::string &text, const QString &file)
{
    QFile output(file);
    require(output.open(QIODevice::WriteOnly) &&
                output.write(text.data(), static_cast<qint64>(text.size())) ==
                    static_cast<qint64>(text.size()),
            "the file can be written");
    output.close();
    try {
        const Recording recording = readRecording(file, {});
        for (const double speed : {0.0, 0.5, 4.0}) {
            RecordedSwitch device(recording, speed);
            for (const char *commands : {"//rl\r//??\r//BP\r", "//c1\r"}) {
                for (const Piece &piece : device.receive(QByteArray(commands)))
                    require(piece.wait.count() >= 0, "nothing is said before it was asked for");
            }
        }
    } catch (const BadRecording &refusal) {
        require(*refusal.what() != '\0', "a refusal says why");
    }
}
} // namespace

/// The first byte chooses between pieces that pass on a road and the text of a recording.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("recording.jsonl"));
    QFile::remove(file); // a new one is faster than one that is emptied
    Choices choices(data, size);
    if (choices.flag())
        requireReadOrRefused(choices.rest(), file);
    else
        requireKept(choices, file);
    return 0;
}
