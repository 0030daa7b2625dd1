#pragma once

#include <cstdint>
#include <random>

/// Random numbers that a seed gives on every machine: the engine's sequence is laid down by its
/// standard, and the arithmetic on it is done here rather than by a library's distributions.
class Chance
{
public:
    explicit Chance(std::uint64_t seed) : engine_(seed) {}

    /// 0 to `count` - 1; `count` is at least 1.
    int below(int count) { return static_cast<int>(engine_() % static_cast<std::uint64_t>(count)); }
    /// `lowest` to `highest`, both included.
    int between(int lowest, int highest) { return lowest + below(highest - lowest + 1); }
    /// True once in `count` times.
    bool oneIn(int count) { return below(count) == 0; }
    /// True so many times in a hundred.
    bool percent(int share) { return below(100) < share; }

    template <typename List>
    const auto &of(const List &list)
    {
        return list[static_cast<decltype(list.size())>(below(static_cast<int>(list.size())))];
    }

private:
    std::mt19937_64 engine_;
};
