#include "device/configuration_commands.h"
#include "device/configuration_reply.h"
#include "device/switch_news.h"
#include "property.h"
#include "switch_sight.h"

#include <algorithm>

namespace {
bool isFrom(std::optional<int> number, int first, int last)
{
    return !number || (*number >= first && *number <= last);
}

void requireInRange(const SwitchConfiguration &read)
{
    require(isFrom(read.kmControl, 1, 4) && isFrom(read.usbControl, 1, 4),
            "control is read as one of the ports");
    require(isFrom(read.activePorts, 2, 4), "as many ports are active as can be");
    for (const std::optional<int> &resolution : read.resolutions)
        require(isFrom(resolution, 1, 13), "a resolution is one of those that there are");
    for (const std::optional<MouseMovement> &custom : read.custom)
        require(!custom || (isFrom(custom->x, 1, 500) && isFrom(custom->y, 1, 500)),
                "speeds are from 1 to 500");
    require(!read.layout || isArrangement(*read.layout), "no cell shows two displays");
}

/// Every setting is known or has its reason, never both.
void requireComplete(const ConfigurationReading &reading)
{
    for (const SettingKey key : allSettingKeys()) {
        const auto count =
            std::count_if(reading.problems.begin(), reading.problems.end(),
                          [key](const ReplyProblem &problem) { return problem.key == key; });
        require(count == (hasSetting(reading.configuration, key) ? 0 : 1),
                "a setting is known, or there is one reason why not",
                settingName(key).toStdString());
    }
}

std::string withCarriageReturns(std::string_view text)
{
    std::string result;
    for (const char character : text) {
        if (character == '\n')
            result += '\r';
        result += character;
    }
    return result;
}
} // namespace

/// The bytes are what a switch says: any text into a configuration.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view reply = textOf(data, size);
    const ConfigurationReading reading = readConfiguration(reply);
    requireInRange(reading.configuration);
    requireComplete(reading);
    require(readConfiguration(withCarriageReturns(reply)) == reading,
            "lines may end in CR LF as well");
    require(!isWholeAnswer(reply) || holdsPartOfAnswer(reply), "a whole answer has begun");
    if (isWholeAnswer(reply))
        require(readConfiguration(std::string(reply) + "KM Port Limit: 3\nC1\t001 001 X\n") ==
                    reading,
                "what follows a whole answer changes nothing of it");

    const ControlNews news = controlNews(reply);
    require(isFrom(news.kmPort, 1, 4) && isFrom(news.usbPort, 1, 4), "news are of ports");

    const SwitchConfiguration unknown;
    for (const SettingCommand &command : commandsFor(
             keysOf(differences(unknown, reading.configuration)), unknown, reading.configuration))
        requireSets(command, reading.configuration);
    return 0;
}
