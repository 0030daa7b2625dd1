#include "simulator/fault_settings.h"

#include "simulator/switch_answers.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <functional>
#include <limits>
#include <optional>
#include <vector>

namespace {

using std::chrono::milliseconds;

/// One fault: how it is written and what it touches.
struct Entry
{
    std::string name;
    std::string argument; ///< how help writes the value; empty: it takes none
    std::string help;
    /// Takes the value over; false: it is not one.
    std::function<bool(Faults &, const std::string &)> set;
    std::function<void(Faults &)> clear;
    /// The value in force; nothing when the fault is off.
    std::function<std::optional<std::string>(const Faults &)> show;
};

std::optional<int> numberFrom(const std::string &text, int lowest, int highest)
{
    int number = 0;
    const char *const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || stop != end || number < lowest || number > highest)
        return std::nullopt;
    return number;
}

/// `where` gives the bool inside a Faults.
template <typename Where>
Entry flag(const std::string &name, const std::string &help, Where where)
{
    return {name,
            {},
            help,
            [where](Faults &faults, const std::string &value) {
                if (!value.empty())
                    return false;
                where(faults) = true;
                return true;
            },
            [where](Faults &faults) { where(faults) = false; },
            [where](const Faults &faults) -> std::optional<std::string> {
                if (!where(faults))
                    return std::nullopt;
                return std::string();
            }};
}

/// `where` gives the int or the milliseconds inside a Faults; `preset` stands for a missing value,
/// 0 meaning that there must be one.
template <typename Where>
Entry count(const std::string &name, const std::string &argument, const std::string &help,
            int preset, int highest, Where where)
{
    using Value = std::remove_cvref_t<decltype(where(std::declval<Faults &>()))>;
    const auto plain = [](const Value &value) {
        if constexpr (std::is_same_v<Value, milliseconds>)
            return static_cast<int>(value.count());
        else
            return value;
    };
    return {name,
            argument,
            help,
            [where, preset, highest](Faults &faults, const std::string &text) {
                const auto number = text.empty() && preset > 0 ? std::optional<int>(preset)
                                                               : numberFrom(text, 1, highest);
                if (!number)
                    return false;
                where(faults) = Value(*number);
                return true;
            },
            [where](Faults &faults) {
                const Faults healthy;
                where(faults) = where(healthy);
            },
            [where, plain](const Faults &faults) -> std::optional<std::string> {
                const Faults healthy;
                if (where(faults) == where(healthy))
                    return std::nullopt;
                return std::to_string(plain(where(faults)));
            }};
}

Entry missingKeys()
{
    std::string help = "leave a line out of the answers; KEY is one of";
    const auto &keys = answerKeys();
    for (const std::string &key : keys)
        help.append(key == keys.front() ? " " : ", ").append(key);
    return {"missing",
            "KEY",
            help,
            [](Faults &faults, const std::string &value) {
                const auto &known = answerKeys();
                if (std::find(known.begin(), known.end(), value) == known.end())
                    return false;
                faults.ofSwitch.missingKeys.insert(value);
                return true;
            },
            [](Faults &faults) { faults.ofSwitch.missingKeys.clear(); },
            [](const Faults &faults) -> std::optional<std::string> {
                std::string all;
                for (const std::string &key : faults.ofSwitch.missingKeys)
                    all.append(all.empty() ? "" : ", ").append(key);
                return all.empty() ? std::nullopt : std::optional<std::string>(all);
            }};
}

Entry discoverySize()
{
    return {"discovery-size",
            "BYTES[:TIMES]",
            "discovery answers of BYTES instead of 36, always or so many TIMES",
            [](Faults &faults, const std::string &value) {
                const std::size_t colon = value.find(':');
                const auto size = numberFrom(value.substr(0, colon), 1, 1400);
                const auto times = colon == std::string::npos
                                       ? std::optional<int>(0)
                                       : numberFrom(value.substr(colon + 1), 1, 1000000);
                if (!size || !times)
                    return false;
                faults.ofModule.discoverySize = *size;
                faults.ofModule.discoverySizeTimes = *times;
                return true;
            },
            [](Faults &faults) {
                faults.ofModule.discoverySize = 0;
                faults.ofModule.discoverySizeTimes = 0;
            },
            [](const Faults &faults) -> std::optional<std::string> {
                const ModuleFaults &module = faults.ofModule;
                if (module.discoverySize == 0)
                    return std::nullopt;
                std::string text = std::to_string(module.discoverySize);
                if (module.discoverySizeTimes > 0)
                    text.append(":").append(std::to_string(module.discoverySizeTimes));
                return text;
            }};
}

const std::vector<Entry> &entries()
{
    constexpr int anHour = 3600000;
    constexpr int manyBytes = 100000000;
    constexpr int manyTimes = 1000000;
    static const std::vector<Entry> all{
        flag(
            "silence", "the switch obeys but says nothing",
            [](auto &f) -> auto & { return f.ofSwitch.silent; }),
        count(
            "delay", "MS", "the switch waits before every answer", 500, anHour,
            [](auto &f) -> auto & { return f.ofSwitch.delay; }),
        count(
            "chunks", "BYTES", "answers come in pieces of so many bytes", 1, manyBytes,
            [](auto &f) -> auto & { return f.ofSwitch.chunkBytes; }),
        count(
            "gap", "MS", "the time between two such pieces; 20 without this", 0, anHour,
            [](auto &f) -> auto & { return f.ofSwitch.chunkGap; }),
        flag(
            "garbage", "a line of junk bytes before every answer",
            [](auto &f) -> auto & { return f.ofSwitch.garbage; }),
        missingKeys(),
        flag(
            "crlf", "lines end in CR LF", [](auto &f) -> auto & { return f.ofSwitch.crlf; }),
        count(
            "oversize", "BYTES", "so many bytes of filler inside the //rl answer", 1500, manyBytes,
            [](auto &f) -> auto & { return f.ofSwitch.oversizeBytes; }),
        count(
            "unsolicited", "MS", "a front panel press every so often", 5000, anHour,
            [](auto &f) -> auto & { return f.ofSwitch.unsolicitedEvery; }),
        count(
            "flood", "BYTES", "so much text behind the next //BP answer, once", 200000, manyBytes,
            [](auto &f) -> auto & { return f.ofSwitch.floodBytes; }),
        count(
            "bad-port-limit", "TIMES", "so many //rl answers with \"KM Port Limit: x\"", 1,
            manyTimes, [](auto &f) -> auto & { return f.ofSwitch.badPortLimitReads; }),
        flag(
            "usb-colon", "the dialect \"Current USB Control: 1\" with a colon",
            [](auto &f) -> auto & { return f.ofSwitch.usbColon; }),
        flag(
            "blank-padding", "the dialect \"C2<tab>120  80 DESK\" with blanks instead of zeros",
            [](auto &f) -> auto & { return f.ofSwitch.blankPadding; }),
        flag(
            "module-silence", "modules obey but answer nothing on the management port",
            [](auto &f) -> auto & { return f.ofModule.silent; }),
        discoverySize(),
        count(
            "late", "MS", "modules wait before every management answer", 1000, anHour,
            [](auto &f) -> auto & { return f.ofModule.late; }),
        count(
            "duplicates", "TIMES", "every management answer comes so many times more", 1, 1000,
            [](auto &f) -> auto & { return f.ofModule.duplicates; }),
        count(
            "truncated", "BYTES", "configuration answers cut to so many bytes", 100, 259,
            [](auto &f) -> auto & { return f.ofModule.truncatedBytes; }),
        flag(
            "refuse", "modules refuse every login",
            [](auto &f) -> auto & { return f.ofModule.refuse; }),
        flag(
            "keep-old", "modules restart when they are set up, with the settings that they had",
            [](auto &f) -> auto & { return f.ofModule.keepOld; }),
        flag(
            "long-name", "modules report a name of 16 characters",
            [](auto &f) -> auto & { return f.ofModule.longName; }),
        flag(
            "raw-name", "modules report a name that is no UTF-8",
            [](auto &f) -> auto & { return f.ofModule.rawName; }),
        flag(
            "same-address", "all modules report the first one's address",
            [](auto &f) -> auto & { return f.ofModule.sameAddress; }),
        count(
            "split", "BYTES", "the switch's answers leave in datagrams of at most so many bytes",
            100, 1400, [](auto &f) -> auto & { return f.ofModule.splitBytes; }),
    };
    return all;
}

} // namespace

std::string setFault(Faults &faults, const std::string &name, const std::string &value)
{
    if (name == "none") {
        faults = Faults{};
        return {};
    }
    const auto entry = std::find_if(entries().begin(), entries().end(),
                                    [&name](const Entry &e) { return e.name == name; });
    if (entry == entries().end())
        return "there is no fault \"" + name + "\"";
    if (value == "off") {
        entry->clear(faults);
        return {};
    }
    if (entry->set(faults, value))
        return {};
    if (entry->argument.empty())
        return "the fault " + name + " takes no value";
    return "the fault " + name + " needs " + entry->argument + ", not \"" + value + "\"";
}

std::string setFault(Faults &faults, const std::string &assignment)
{
    const std::size_t sign = assignment.find('=');
    if (sign == std::string::npos)
        return setFault(faults, assignment, {});
    return setFault(faults, assignment.substr(0, sign), assignment.substr(sign + 1));
}

std::string faultsText(const Faults &faults)
{
    std::string text;
    for (const Entry &entry : entries()) {
        const auto value = entry.show(faults);
        if (!value)
            continue;
        text += entry.name;
        if (!value->empty())
            text.append("=").append(*value);
        text += "\n";
    }
    return text;
}

std::string faultHelp()
{
    constexpr std::size_t column = 32;
    std::string text;
    for (const Entry &entry : entries()) {
        std::string line = "  " + entry.name;
        if (!entry.argument.empty())
            line.append("=").append(entry.argument);
        line.resize(std::max(line.size() + 2, column), ' ');
        text.append(line).append(entry.help).append("\n");
    }
    return text;
}
