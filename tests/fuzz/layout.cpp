#include "device/configuration_file.h"
#include "device/configuration_reply.h"
#include "device/layout_command.h"
#include "device/setting_values.h"
#include "property.h"
#include "simulator/switch_answers.h"
#include "switch_sight.h"

#include <iostream>
#include <stdexcept>

namespace {
/// Four displays in cells of the grid: every road there and back gives the same.
void requireEveryRoad(const DisplayLayout &layout)
{
    SwitchConfiguration wanted;
    wanted.layout = layout;
    const std::string command = layoutCommand(layout);
    requireSets({command, SettingKey::Layout}, wanted);

    SwitchState state;
    for (std::size_t at = 0; at < layout.size(); ++at) {
        const GridPosition place = layout.at(at);
        state.layout.at(at) = place.row * 4 + place.column + 1;
        require(cellOfCode(positionCode(place)) == place, "the code of a cell names it");
        require(gridPosition(positionCode(place)) == place, "the window reads the same cell");
        require(coordinatesFrom(coordinatesText(place)) == place, "coordinates name the cell");
    }
    const std::string answer = layoutAnswer(state);
    require(readConfiguration({}, {}, answer).configuration.layout == layout,
            "what the switch says of a layout is read as it is", answer);
    require(readConfiguration({}, {}, command + "\n").configuration.layout == layout,
            "a layout command is read as the switch's answer is", command);
    require(readSettings("Grid settings: " + command + "\n").configuration.layout == layout,
            "a layout is the same in a file", command);
    require(layoutFrom(layoutText(layout)) == layout, "a drawn layout is the same");
}

/// Inactive displays go by channel 3's digit. The switch takes the cells of all others; those of
/// channel 3 when no other goes by its digit.
void requireActiveOnesPlaced(const DisplayLayout &layout, const std::array<bool, 4> &isInactive)
{
    std::vector<PlacedDisplay> displays;
    for (std::size_t at = 0; at < layout.size(); ++at)
        displays.push_back({layout.at(at), static_cast<int>(at) + 1, !isInactive.at(at)});
    const bool isThreeAlone = !isInactive[0] && !isInactive[1] && !isInactive[3];
    if (isInactive[0] && isInactive[1] && isInactive[3])
        return; // the switch takes no command in which every group goes by one digit
    const std::string command = layoutCommand(displays);
    const std::optional<SwitchCommand> read = requireUnderstood(command);
    require(read && read->kind == SwitchCommand::Kind::Layout, "the switch reads a layout",
            command);
    for (std::size_t at = 0; at < layout.size(); ++at) {
        const bool isPlaced = at == 2 ? isThreeAlone : !isInactive.at(at);
        const GridPosition place = layout.at(at);
        require(read->layout.cells.at(at) == (isPlaced ? place.row * 4 + place.column + 1 : 0),
                "the switch reads the cells of what is active", command);
    }
}

/// Displays of any channel, active or not, anywhere: what goes out is harmless.
void requireHarmless(Choices &choices)
{
    std::vector<PlacedDisplay> displays;
    for (int count = choices.number(0, 6); count > 0; --count) {
        PlacedDisplay display;
        display.position = {choices.number(-2, 6), choices.number(-2, 6)};
        display.channel = choices.number(-1, 6);
        display.active = choices.flag();
        displays.push_back(display);
    }
    const std::string command = layoutCommand(displays);
    require(command.starts_with("//") && !hasControlCharacter(command),
            "no layout command holds a control character", command);
}

void readText(const std::string &text)
{
    const auto cell = cellOfCode(text.substr(0, 2));
    require(!cell || gridPosition(text.substr(0, 2)) == *cell, "a strict reading is a loose one",
            text.substr(0, 2));
    try {
        const auto codes = layoutCodes(text);
        for (const std::string &code : codes)
            require(code.size() == 2, "a code has two characters", code);
    } catch (const std::out_of_range &) {
        require(!readConfiguration({}, {}, "//FF" + text).configuration.layout,
                "a text without four codes is no layout", text);
    }
    if (const auto layout = readConfiguration({}, {}, text).configuration.layout)
        requireEveryRoad(*layout);
    if (const auto layout = readSettings("Grid settings: " + text).configuration.layout)
        requireEveryRoad(*layout);
    try {
        const DisplayLayout drawn = layoutFrom(QString::fromStdString(text));
        require(isArrangement(drawn), "what is drawn is an arrangement", text);
        requireEveryRoad(drawn);
    } catch (const std::invalid_argument &) {
        return; // it is none
    }
}
} // namespace

/// The first byte chooses between cells, displays of any kind, and text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    std::cout.setstate(std::ios::failbit); // a code without a number says so there
    Choices choices(data, size);
    switch (choices.number(0, 2)) {
    case 0: {
        DisplayLayout layout;
        for (GridPosition &place : layout)
            place = {choices.number(0, 3), choices.number(0, 3)};
        std::array<bool, 4> isInactive{};
        for (bool &each : isInactive)
            each = choices.flag();
        if (isArrangement(layout)) {
            requireEveryRoad(layout);
            requireActiveOnesPlaced(layout, isInactive);
        }
        break;
    }
    case 1:
        requireHarmless(choices);
        break;
    default:
        readText(choices.rest());
    }
    return 0;
}
