#include "simulator/switch_state.h"

#include "simulator/text_form.h"

std::string stateText(const SwitchState &state)
{
    std::string text;
    const auto line = [&text](const std::string &name, const std::string &value) {
        text.append(name).append(": ").append(value).append("\n");
    };
    const auto row = [](const std::array<int, 4> &numbers, int width) {
        std::string joined = padded(numbers[0], width);
        for (std::size_t i = 1; i < numbers.size(); ++i)
            joined.append(" ").append(padded(numbers[i], width));
        return joined;
    };
    line("KM control", std::to_string(state.kmControl));
    line("USB control", std::to_string(state.usbControl));
    line("Mouse mode", state.relativeMouse ? "relative" : "absolute");
    line("Cursor rolling", state.cursorRolling ? "on" : "off");
    line("Active ports", std::to_string(state.activePorts));
    line("Buzzer", state.buzzer ? "on" : "off");
    line("Layout", row(state.layout, 2));
    line("Resolutions", row(state.resolutions, 1));
    for (std::size_t i = 0; i < state.custom.size(); ++i) {
        const CustomSetting &setting = state.custom[i];
        line("Custom " + std::to_string(i + 1), std::to_string(setting.x) + " " +
                                                    std::to_string(setting.y) + " " +
                                                    printable(setting.name));
    }
    line("Hotkey trigger", printable(state.hotkeyTrigger));
    return text;
}
