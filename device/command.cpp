#include "device/command.h"

#include "device/ports.h"

std::string numberedCommand(const std::string &prefix, int number)
{
    return prefix + std::to_string(number);
}

std::string mouseModeCommand(int index)
{
    return index == 0 ? absoluteMouseCommand : relativeMouseCommand;
}

std::string cursorRollingCommand(int index)
{
    return index == 0 ? cursorRollingOffCommand : cursorRollingOnCommand;
}

std::string kmControlCommand(int index)
{
    return numberedCommand("//c", index + 1);
}

std::string usbControlCommand(int index)
{
    return numberedCommand("//u", index + 1);
}

std::string activePortsCommand(int index)
{
    return numberedCommand("//D", index + fewestActivePorts);
}

std::string buzzerCommand(bool on)
{
    return on ? beepOnCommand : beepOffCommand;
}
