#include "simulator/switch_answers.h"

#include "simulator/text_form.h"

namespace {

/// Collects the lines of one answer, without those whose key is to be missing.
class Lines
{
public:
    explicit Lines(const std::set<std::string> &missing) : missing_(missing) {}

    void add(const std::string &key, const std::string &rest)
    {
        if (missing_.count(key) == 0)
            text_.append(key).append(rest).append("\n");
    }
    void addText(const std::string &text) { text_ += text; }
    const std::string &text() const { return text_; }

private:
    const std::set<std::string> &missing_;
    std::string text_;
};

} // namespace

std::string configurationAnswer(const SwitchState &state, const SwitchFaults &faults)
{
    Lines lines(faults.missingKeys);
    lines.add("//RL", " Pelora KM switch");
    lines.addText(fillerText(faults.oversizeBytes));
    lines.add("KM Port Limit",
              faults.badPortLimitReads > 0 ? ": x" : ": " + std::to_string(state.activePorts));
    lines.add("KM Cursor Rolling", state.cursorRolling ? ": Enabled" : ": Disabled");
    lines.add("KM tracking mode",
              state.relativeMouse ? ": Relative Mouse Mode" : ": Absolute Mouse Mode");
    std::string resolutions = ":";
    for (const int resolution : state.resolutions)
        resolutions.append(" ").append(std::to_string(resolution));
    lines.add("Channels resolution", resolutions);
    lines.add("Buzzer", state.buzzer ? ": on" : ": off");
    const char fill = faults.blankPadding ? ' ' : '0';
    for (std::size_t i = 0; i < state.custom.size(); ++i) {
        const CustomSetting &setting = state.custom[i];
        lines.add("C" + std::to_string(i + 1), "\t" + padded(setting.x, 3, fill) + " " +
                                                   padded(setting.y, 3, fill) + " " + setting.name);
    }
    return lines.text();
}

std::string statusAnswer(const SwitchState &state, const SwitchFaults &faults)
{
    Lines lines(faults.missingKeys);
    lines.add("Current Hotkey Trigger", ": " + state.hotkeyTrigger);
    lines.add("Current KM Control", ": " + std::to_string(state.kmControl));
    // Deliberately a blank and no colon: this is what the switch prints, unlike the line above, and
    // the utility's status reading looks for exactly that.
    lines.add("Current USB Control",
              (faults.usbColon ? ": " : " ") + std::to_string(state.usbControl));
    return lines.text();
}

std::string layoutAnswer(const SwitchState &state, const SwitchFaults &faults)
{
    std::string groups;
    for (std::size_t i = 0; i < state.layout.size(); ++i) {
        // The first group's "FF" is part of the key.
        groups.append(i == 0 ? "0" : "FF0").append(std::to_string(i + 1));
        groups.append("B").append(padded(state.layout[i], 2));
    }
    Lines lines(faults.missingKeys);
    lines.add("//FF", groups);
    return lines.text();
}

const std::vector<std::string> &answerKeys()
{
    static const std::vector<std::string> keys = [] {
        std::vector<std::string> all{"//RL",
                                     "KM Port Limit",
                                     "KM Cursor Rolling",
                                     "KM tracking mode",
                                     "Channels resolution",
                                     "Buzzer"};
        for (int number = 1; number <= SwitchState::customCount; ++number)
            all.push_back("C" + std::to_string(number));
        for (const char *key :
             {"Current Hotkey Trigger", "Current KM Control", "Current USB Control", "//FF"})
            all.emplace_back(key);
        return all;
    }();
    return keys;
}

std::string fillerText(int bytes)
{
    static const std::string line =
        "0123456789 the quick brown fox jumps over the lazy dog again.\n";
    std::string text;
    if (bytes <= 0)
        return text;
    const auto wanted = static_cast<std::size_t>(bytes);
    text.reserve(wanted + line.size());
    while (text.size() < wanted)
        text += line;
    text.resize(wanted);
    text.back() = '\n';
    return text;
}
