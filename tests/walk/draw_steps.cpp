#include "chance.h"
#include "steps.h"

#include <QList>
#include <algorithm>
#include <utility>

namespace {
using Draw = QByteArray (*)(Chance &chance, Road road);

struct Kind
{
    int weight;
    Draw draw;
};

QByteArray digits(int number)
{
    return QByteArray::number(number);
}

QByteArray unit(Chance &chance)
{
    return digits(chance.between(1, 2));
}

QByteArray cell(Chance &chance)
{
    return digits(chance.below(4)) + " " + digits(chance.below(4));
}

QByteArray generalSetting(Chance &chance, Road)
{
    static const QList<std::pair<QByteArray, int>> combos = {
        {"comboBox_KM_Control", 4},
        {"comboBox_USB_Control", 4},
        {"comboBox_Select_Display_Mode", 2},
        {"comboBox_Select_active_port", 3},
        {"comboBox_Enable_or_Disable_Cursor_Roll", 2}};
    const auto &combo = chance.of(combos);
    return "choose " + combo.first + " " + digits(chance.below(combo.second));
}

QByteArray resolution(Chance &chance, Road)
{
    return "choose comboBox_mouse_movement_resolution_setting_" + digits(chance.between(1, 4)) +
           " " + digits(chance.below(13));
}

/// Names, speeds and mistakes as people type them.
QByteArray customSetting(Chance &chance, Road)
{
    static const QByteArrayList names = {"OFFICE",
                                         "DESK",
                                         "wall",
                                         "B\xc3\x9cRO",
                                         "TWO WORDS",
                                         "7",
                                         "4K",
                                         "CUSTOM1",
                                         "CUSTOM4",
                                         "A",
                                         "",
                                         "Sixteen-letters!",
                                         "a name of far more than 24 bytes",
                                         "//c3",
                                         "Current KM Control: 2",
                                         " PADDED "};
    static const QByteArrayList oddSpeeds = {"007", "501", "0", "abc", "", " 80", "12.5"};
    const auto speed = [&chance] {
        return chance.oneIn(8) ? chance.of(oddSpeeds) : digits(chance.between(1, 500));
    };
    return "custom " + digits(chance.below(4)) + "|" + speed() + "|" + speed() + "|" +
           chance.of(names);
}

QByteArray layoutMove(Chance &chance, Road)
{
    static const QByteArrayList directions = {"Left", "Right", "Up", "Down"};
    if (chance.oneIn(3))
        return "drop " + cell(chance) + " " + cell(chance);
    return "move " + digits(chance.between(1, 4)) + " " + chance.of(directions);
}

QByteArray button(Chance &chance, Road)
{
    static const QByteArrayList buttons = {
        "pushButton_ON_Beep",    "pushButton_OFF_Beep",
        "pushButton_ON_Beep",    "pushButton_OFF_Beep",
        "pushButton_Refresh",    "pushButton_Refresh",
        "pushButton_Refresh",    "pushButtonSubmit",
        "pushButtonSubmit",      "pushButtonSubmit",
        "pushButton_Soft_Reset", "pushButton_Factory_Reset",
        "ConfigurationBtn",      "pushButton_Mouse_Speed_Settings",
        "TopologyAndDisplayBtn"};
    return "press " + chance.of(buttons);
}

QByteArray connection(Chance &chance, Road road)
{
    static const QByteArrayList onSerial = {
        "press pushButton_OFF_Connection", "press pushButton_ON_Connection",
        "choose comboBox_SelectPort 0",    "choose comboBox_SelectPort 1",
        "choose comboBox_SelectPort 1",    "press pushButton_Connection_Settings"};
    static const QByteArrayList onNetwork = {
        "press pushButton_OFF_Connection", "press pushButton_ON_Connection",
        "press pushButton_Connection_Settings", "press pushButton_Connection_Settings",
        "press pushButton_Admin_Settings"};
    return chance.of(road == Road::Serial ? onSerial : onNetwork);
}

QByteArray settingsFile(Chance &chance, Road)
{
    static const QByteArrayList files = {"a.txt", "b.txt", "c.txt"};
    static const QByteArrayList others = {"empty.txt", "short.txt", "noise.txt", "missing.txt"};
    if (chance.oneIn(2))
        return "save " + chance.of(files);
    return "load " + chance.of(chance.oneIn(4) ? others : files);
}

QByteArray keys(Chance &chance, Road)
{
    static const QByteArrayList all = {"Tab",  "Tab",   "Tab",    "Backtab", "Down", "Up",
                                       "Home", "Space", "Return", "Escape",  "1",    "End"};
    QByteArray step = "keys";
    for (int left = chance.between(1, 4); left > 0; --left)
        step += " " + chance.of(all);
    return step;
}

/// Another window, with whatever was under way in the first.
QByteArray newWindow(Chance &, Road)
{
    return "restart";
}

/// Without "same-address", under which nobody could say which of the two switches is the chosen
/// one.
QByteArray moduleFault(Chance &chance)
{
    switch (chance.below(13)) {
    case 12:
        return "keep-old";
    case 11:
        return "module-silence";
    case 0:
        return "discovery-size " + digits(chance.between(1, 60)) + ":" +
               digits(chance.between(1, 3));
    case 1:
    case 2:
        return "late " + digits(chance.between(1, 60));
    case 3:
        return "duplicates " + digits(chance.between(1, 3));
    case 4:
        return "truncated " + digits(chance.between(1, 259));
    case 5:
        return "refuse";
    case 6:
        return "long-name";
    case 7:
        return "raw-name";
    default:
        return "split " + digits(chance.between(20, 1400));
    }
}

QByteArray switchFault(Chance &chance)
{
    static const QByteArrayList keys = {"//RL",
                                        "KM Port Limit",
                                        "KM Cursor Rolling",
                                        "KM tracking mode",
                                        "Channels resolution",
                                        "Buzzer",
                                        "C1",
                                        "C2",
                                        "C3",
                                        "C4",
                                        "Current Hotkey Trigger",
                                        "Current KM Control",
                                        "Current USB Control",
                                        "//FF"};
    switch (chance.below(12)) {
    case 0:
        return "silence";
    case 1:
    case 2:
        return "delay " + digits(chance.between(5, 200));
    case 3:
    case 4:
        return "chunks " + digits(chance.between(1, 64));
    case 5:
        return "garbage";
    case 6:
        return "missing " + chance.of(keys);
    case 7:
        return "crlf";
    case 8:
        return "oversize " + digits(chance.between(100, 3000));
    case 9:
        return "unsolicited " + digits(chance.between(30, 500));
    case 10:
        return "flood " + digits(chance.between(100, 9000));
    default:
        return "bad-port-limit " + digits(chance.between(1, 7));
    }
}

QByteArray fault(Chance &chance, Road road)
{
    const bool ofModule = road == Road::Udp && chance.percent(35);
    const QByteArray which = "fault " + unit(chance) + " ";
    if (chance.oneIn(8))
        return which + (chance.oneIn(2) ? "usb-colon" : "blank-padding");
    return which + (ofModule ? moduleFault(chance) : switchFault(chance));
}

QByteArray frontPanel(Chance &chance, Road)
{
    return "panel " + unit(chance) + " " + digits(chance.between(1, 4));
}

QByteArray flood(Chance &chance, Road)
{
    return "flood " + unit(chance) + " " + digits(chance.between(1, 9000));
}

QByteArray cable(Chance &chance, Road)
{
    return (chance.percent(80) ? "unplug " : "plug ") + unit(chance);
}

QByteArray deskReset(Chance &chance, Road)
{
    return "factory " + unit(chance);
}

QByteArray pause(Chance &chance, Road)
{
    return "wait " + digits(chance.between(1, chance.oneIn(4) ? 300 : 60));
}

constexpr Kind kinds[] = {
    {18, generalSetting}, {9, resolution},   {9, customSetting}, {10, layoutMove}, {16, button},
    {7, connection},      {7, settingsFile}, {6, keys},          {1, newWindow},   {10, fault},
    {7, frontPanel},      {2, flood},        {3, cable},         {1, deskReset},   {9, pause}};

/// Draws steps one by one. What goes wrong is made good some steps later, more often than not, so
/// that most of a walk is spent with a switch at hand.
class Drawer
{
public:
    Drawer(std::uint64_t seed, Road road) : chance_(seed), road_(road) {}

    QByteArray next()
    {
        ++at_;
        const auto due = std::find_if(due_.begin(), due_.end(),
                                      [this](const Due &each) { return each.at <= at_; });
        if (due != due_.end()) {
            const QByteArray step = due->step;
            due_.erase(due);
            return finished(step);
        }
        return finished(draw());
    }

private:
    struct Due
    {
        int at;
        QByteArray step;
    };

    QByteArray draw()
    {
        int all = 0;
        for (const Kind &kind : kinds)
            all += kind.weight;
        int left = chance_.below(all);
        const Kind *kind = kinds;
        for (; left >= kind->weight; ++kind)
            left -= kind->weight;
        return kind->draw(chance_, road_);
    }

    QByteArray finished(const QByteArray &text)
    {
        const Step step = readStep(text);
        if (step.action == "fault" && step.word(1) != "none")
            laterOn(12, "fault " + step.word(0) + " none");
        if (step.action == "unplug") {
            laterOn(3, "plug " + step.word(0));
            laterOn(6, "press pushButton_ON_Connection");
        }
        if (step.rest == "pushButton_OFF_Connection")
            laterOn(5, "press pushButton_ON_Connection");
        return isOfDesk(step) ? text : text + " ~" + digits(chance_.between(1, 9999));
    }

    void laterOn(int steps, const QByteArray &step)
    {
        if (chance_.percent(90))
            due_.append({at_ + chance_.between(1, steps), step});
    }

    Chance chance_;
    Road road_;
    QList<Due> due_;
    int at_ = 0;
};
} // namespace

QByteArrayList drawSteps(std::uint64_t seed, int count, Road road)
{
    Drawer drawer(seed, road);
    QByteArrayList lines;
    for (int at = 1; at <= count; ++at) {
        lines.append(drawer.next());
        if (at % stepsOfALeg == 0 || at == count)
            lines.append("check");
    }
    return lines;
}
