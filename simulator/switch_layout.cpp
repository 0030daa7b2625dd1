#include "simulator/switch_layout.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <vector>

namespace {

struct Group
{
    std::size_t channel; ///< from 0
    int cell;
};

std::optional<Group> groupFrom(const std::string &text)
{
    const bool isMarked = text.compare(0, 3, "FF0") == 0 && text[4] == 'B';
    const bool isChannel = text[3] >= '1' && text[3] <= '4';
    int cell = 0;
    const char *const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data() + 5, end, cell);
    if (!isMarked || !isChannel || error != std::errc{} || stop != end || cell < 1 || cell > 16)
        return std::nullopt;
    return Group{static_cast<std::size_t>(text[3] - '1'), cell};
}

std::string times(int count)
{
    static const std::array<std::string, 5> words{"not named", "named once", "named twice",
                                                  "named three times", "named four times"};
    return words.at(static_cast<std::size_t>(count));
}

/// The channels (from 0) as "channel 2", "channels 1 and 2" or "channels 1, 2 and 4".
std::string listed(const std::vector<std::size_t> &channels)
{
    std::string text = channels.size() == 1 ? "channel " : "channels ";
    for (std::size_t i = 0; i < channels.size(); ++i) {
        if (i > 0)
            text += i + 1 == channels.size() ? " and " : ", ";
        text += std::to_string(channels[i] + 1);
    }
    return text;
}

} // namespace

std::variant<LayoutOrder, Rejection> decodeLayout(const std::string &groups)
{
    constexpr std::size_t groupLength = 7;
    LayoutOrder order;
    if (groups.size() != order.cells.size() * groupLength)
        return Rejection{"a layout has four groups of seven characters"};
    for (std::size_t at = 0; at < groups.size(); at += groupLength) {
        const std::string text = groups.substr(at, groupLength);
        const auto group = groupFrom(text);
        if (!group)
            return Rejection{"the layout group " + text + " is none"};
        ++order.timesNamed.at(group->channel);
        order.cells.at(group->channel) = group->cell;
    }
    for (std::size_t i = 0; i < order.cells.size(); ++i)
        if (order.timesNamed[i] != 1)
            order.cells[i] = 0;
    for (const int cell : order.cells)
        if (cell != 0 && std::count(order.cells.begin(), order.cells.end(), cell) > 1)
            return Rejection{"the layout uses cell " + std::to_string(cell) + " twice"};
    if (std::count(order.timesNamed.begin(), order.timesNamed.end(), 1) == 0)
        return Rejection{"the layout names no channel once"};
    return order;
}

LayoutOutcome carriedOut(const LayoutOrder &order, const std::array<int, 4> &held)
{
    LayoutOutcome outcome{held, 0, {}};
    std::array<int, 4> wanted = order.cells;
    std::array<std::string, 4> reasons;
    for (std::size_t i = 0; i < wanted.size(); ++i)
        if (wanted[i] == 0)
            reasons[i] = "it is " + times(order.timesNamed[i]);
    // Each channel that stays may hold the cell of another, which then stays as well.
    for (bool settled = false; !settled;) {
        settled = true;
        for (std::size_t staying = 0; staying < wanted.size(); ++staying)
            for (std::size_t i = 0; i < wanted.size(); ++i)
                if (wanted[staying] == 0 && wanted[i] != 0 && wanted[i] == held[staying]) {
                    reasons[i] = "channel " + std::to_string(staying + 1) + " stays in cell " +
                                 std::to_string(wanted[i]);
                    wanted[i] = 0;
                    settled = false;
                }
    }

    std::vector<std::size_t> placed;
    std::string staying;
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        if (wanted[i] == 0) {
            staying += "; channel " + std::to_string(i + 1) + " stays, " + reasons[i];
        } else {
            outcome.layout[i] = wanted[i];
            placed.push_back(i);
        }
    }
    outcome.placed = static_cast<int>(placed.size());
    if (!staying.empty())
        outcome.remark = (placed.empty() ? "no channel" : listed(placed)) + " placed" + staying;
    return outcome;
}
