#include "device/layout_command.h"

#include <algorithm>
#include <exception>
#include <iostream>
#include <numeric>
#include <stdexcept>

namespace {
constexpr std::size_t codeLength = 2;

std::string valueBehind(const std::string &marker, const std::string &reply)
{
    const auto found = reply.find(marker);
    std::string value;
    if (found != std::string::npos) {
        value = reply.substr(found + marker.size());
        value = value.substr(0, value.find('\n'));
    }
    if (value.size() < codeLength)
        throw std::out_of_range("basic_string::erase");
    return value.substr(0, codeLength);
}
} // namespace

bool isOnGrid(GridPosition position)
{
    return position.row >= 0 && position.row < gridSide && position.column >= 0 &&
           position.column < gridSide;
}

bool isArrangement(const DisplayLayout &layout)
{
    for (auto cell = layout.begin(); cell != layout.end(); ++cell) {
        if (!isOnGrid(*cell) || std::find(layout.begin(), cell, *cell) != cell)
            return false;
    }
    return true;
}

std::string positionCode(GridPosition position)
{
    if (position.row == 0)
        return "0" + std::to_string(position.column + 1);
    const int row = position.row == 2 || position.row == 3 ? position.row : 1;
    const int number = row * gridSide + position.column + 1;
    const std::string digits = std::to_string(number);
    return number <= 9 ? "0" + digits : digits;
}

GridPosition gridPosition(const std::string &code)
{
    try {
        const bool zeroInFront = !code.empty() && code.front() == '0';
        const long long number = std::stoi(zeroInFront ? code.substr(1) : code);
        return {static_cast<int>((number - 1) / gridSide),
                static_cast<int>((number - 1) % gridSide)};
    } catch (const std::exception &error) {
        std::cout << "Invalid argument: " << error.what() << std::endl;
        return {-1, -1};
    }
}

std::optional<GridPosition> cellOfCode(std::string_view code)
{
    for (int cell = 0; cell < gridSide * gridSide; ++cell) {
        const GridPosition position{cell / gridSide, cell % gridSide};
        if (code == positionCode(position))
            return position;
    }
    return std::nullopt;
}

std::optional<char> channelDigit(const PlacedDisplay &display)
{
    // Deliberate: an inactive channel goes as 3, so that an inactive channel 4 is written as 3 too.
    // It is what the switch has always been sent.
    constexpr char inactive = '3';
    if (!display.active)
        return inactive;
    if (display.channel < 1 || display.channel > channelCount)
        return std::nullopt;
    return static_cast<char>('0' + display.channel);
}

std::string layoutCommand(const std::vector<PlacedDisplay> &displays)
{
    std::array<std::string, channelCount> channelParts;
    for (const PlacedDisplay &display : displays) {
        const std::optional<char> digit = channelDigit(display);
        if (!digit)
            continue;
        std::string &part = channelParts.at(static_cast<std::size_t>(*digit - '1'));
        part += std::string("FF0") + *digit + "B" + positionCode(display.position);
    }
    return std::accumulate(channelParts.begin(), channelParts.end(), std::string("//"));
}

std::string layoutCommand(const DisplayLayout &layout)
{
    std::vector<PlacedDisplay> displays;
    for (const GridPosition position : layout)
        displays.push_back({position, static_cast<int>(displays.size()) + 1});
    return layoutCommand(displays);
}

int neighbourCount(const std::vector<GridPosition> &displays,
                   const std::function<bool(GridPosition)> &holdsItem)
{
    int count = 0;
    for (const auto [row, column] : displays) {
        const std::array<GridPosition, 4> neighbours{
            {{row - 1, column}, {row + 1, column}, {row, column - 1}, {row, column + 1}}};
        for (const GridPosition neighbour : neighbours)
            count += holdsItem(neighbour) ? 1 : 0;
    }
    return count;
}

bool isConnected(int neighbours)
{
    return neighbours == 6 || neighbours == 8;
}

std::array<std::string, channelCount> layoutCodes(const std::string &reply)
{
    std::array<std::string, channelCount> codes;
    for (std::size_t channel = codes.size(); channel > 0; --channel)
        codes.at(channel - 1) = valueBehind("0" + std::to_string(channel) + "B", reply);
    return codes;
}
