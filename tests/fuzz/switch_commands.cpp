#include "device/configuration_reply.h"
#include "property.h"
#include "simulator/switch_answers.h"
#include "simulator/switch_model.h"
#include "switch_sight.h"

/// The first byte says how the rest, commands to the simulated switch, is cut into pieces.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Choices choices(data, size);
    const int cut = 1 + choices.byte();
    const QByteArray stream = QByteArray::fromStdString(choices.rest());

    SwitchModel whole;
    SwitchModel inPieces;
    const QByteArray said = joined(whole.receive(stream));
    QByteArray saidInPieces;
    for (qsizetype at = 0; at < stream.size(); at += cut)
        saidInPieces += joined(inPieces.receive(stream.mid(at, cut)));
    require(saidInPieces == said, "commands in pieces are answered as whole ones are");
    require(inPieces.state() == whole.state(), "and change the same");
    require(whole.obeyedCount() + whole.rejectedCount() == stream.count('\r'),
            "every command is obeyed or rejected");

    const SwitchState &state = whole.state();
    const std::string answer =
        configurationAnswer(state) + statusAnswer(state) + layoutAnswer(state);
    require(answer.size() < 1000, "the three answers stay under 1000 bytes");
    const ConfigurationReading reading = readConfiguration(answer);
    for (const ReplyProblem &problem : reading.problems)
        require(hasUnreadableName(state, problem.key),
                "whatever a switch was told, its answers can be read", problem.value);
    requireTells(reading.configuration, state);
    return 0;
}
