#include "device/reply_words.h"

#include "device/command.h"
#include "device/custom_setting.h"

#include <array>

std::string_view customSettingReplyKey(int setting)
{
    static constexpr std::array<std::string_view, customSettings> keys = {"C1\t", "C2\t", "C3\t",
                                                                          "C4\t"};
    static_assert(!keys.back().empty());
    return keys.at(static_cast<std::size_t>(setting));
}

bool saysCursorRollingOn(std::string_view value)
{
    return value == "Enabled" || value == cursorRollingOnCommand;
}

bool saysRelativeMouse(std::string_view value)
{
    return value == "Relative Mouse Mode" || value == relativeMouseCommand;
}

bool saysBuzzerOn(std::string_view value)
{
    return value == "on" || value == beepOnCommand;
}
