#include "device/configuration_reply.h"

#include "device/reply.h"
#include "device/reply_words.h"

#include <algorithm>
#include <exception>

namespace {
bool isControl(char character)
{
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x20U || byte == 0x7FU;
}

std::string_view withoutLineEnd(std::string_view value)
{
    const auto last = value.find_last_not_of(" \t\r");
    return last == std::string_view::npos ? std::string_view() : value.substr(0, last + 1);
}

std::optional<int> numberIn(std::string_view value, int first, int last)
{
    try {
        const int number = replyNumber(std::string(value));
        if (number >= first && number <= last)
            return number;
    } catch (const std::exception &) {
        return std::nullopt;
    }
    return std::nullopt;
}

std::optional<int> portIn(std::string_view value)
{
    return numberIn(value, 1, channelCount);
}

std::optional<bool> wordIn(std::string_view value, bool (*saysOn)(std::string_view))
{
    if (std::any_of(value.begin(), value.end(), isControl))
        return std::nullopt;
    return saysOn(value);
}

std::optional<int> speedIn(const QString &field)
{
    bool isNumber = false;
    const int speed = field.trimmed().toInt(&isNumber);
    if (!isNumber || speed < slowestSpeed || speed > fastestSpeed)
        return std::nullopt;
    return speed;
}

std::optional<MouseMovement> movementIn(std::string_view value)
{
    const DataLabelFields fields = dataLabelFields(QString::fromUtf8(value));
    const std::optional<int> x = speedIn(fields.x);
    const std::optional<int> y = speedIn(fields.y.value_or(QString()));
    if (!x || !y)
        return std::nullopt;
    return MouseMovement{*x, *y, QString::fromUtf8(customEntryName(value, reportedNameOffset))};
}

std::optional<DisplayLayout> layoutIn(std::string_view value)
{
    DisplayLayout layout;
    try {
        const auto codes = layoutCodes(std::string(value));
        for (std::size_t at = 0; at < codes.size(); ++at) {
            const std::optional<GridPosition> cell = cellOfCode(codes.at(at));
            if (!cell)
                return std::nullopt;
            layout.at(at) = *cell;
        }
    } catch (const std::exception &) {
        return std::nullopt;
    }
    if (!isArrangement(layout))
        return std::nullopt;
    return layout;
}

/// Reads setting by setting and notes what cannot be read.
class Reader
{
public:
    /// What `read` makes of the value of `replyKey` in `reply`.
    template <typename Read>
    auto take(SettingKey key, std::string_view reply, std::string_view replyKey, Read read)
        -> decltype(read(std::string_view()))
    {
        const std::string_view value =
            withoutLineEnd(findReplyValue(reply, replyKey).value_or(std::string_view()));
        if (value.empty()) {
            note(key, ReplyProblem::Kind::Missing, value);
            return std::nullopt;
        }
        auto result = read(value);
        if (!result)
            note(key, ReplyProblem::Kind::Malformed, value);
        return result;
    }

    void note(SettingKey key, ReplyProblem::Kind kind, std::string_view value)
    {
        problems_.push_back({key, kind, std::string(value)});
    }

    std::vector<ReplyProblem> problems()
    {
        std::stable_sort(problems_.begin(), problems_.end(),
                         [](const ReplyProblem &left, const ReplyProblem &right) {
                             return left.key < right.key;
                         });
        return std::move(problems_);
    }

private:
    std::vector<ReplyProblem> problems_;
};

void takeCustomSettings(Reader &reader, std::string_view reply, SwitchConfiguration &configuration)
{
    for (int at = 0; at < customSettings; ++at) {
        const SettingKey key = customSetting(at + 1);
        const std::string_view value = withoutLineEnd(
            findReplyValue(reply, customSettingReplyKey(at)).value_or(std::string_view()));
        if (customEntryName(value, reportedNameOffset).empty())
            reader.note(key, ReplyProblem::Kind::Missing, value);
        else
            configuration.custom.at(static_cast<std::size_t>(at)) =
                reader.take(key, reply, customSettingReplyKey(at), movementIn);
    }
}

/// The names that a resolution may be reported by, those of malformed custom settings included.
QStringList reportedNames(std::string_view reply)
{
    QStringList names = presetNames();
    for (int at = 0; at < customSettings; ++at)
        names.append(QString::fromUtf8(customEntryName(
            findReplyValue(reply, customSettingReplyKey(at)).value_or(std::string_view()),
            reportedNameOffset)));
    return names;
}

void takeResolutions(Reader &reader, std::string_view reply, SwitchConfiguration &configuration)
{
    const QStringList names = reportedNames(reply);
    for (int channel = 1; channel <= channelCount; ++channel) {
        const auto at = static_cast<std::size_t>(channel - 1);
        configuration.resolutions.at(at) =
            reader.take(resolutionSetting(channel), reply, resolutionsReplyKey,
                        [&](std::string_view value) -> std::optional<int> {
                            const std::optional<int> item = channelResolutions(value, names).at(at);
                            return item ? std::optional(*item + 1) : std::nullopt;
                        });
    }
}

void takeStatus(Reader &reader, std::string_view reply, SwitchConfiguration &configuration)
{
    configuration.hotkeyTrigger =
        reader.take(SettingKey::Hotkey, reply, hotkeyReplyKey,
                    [](std::string_view value) { return std::optional(QString::fromUtf8(value)); });
    configuration.kmControl = reader.take(SettingKey::KmControl, reply, kmControlReplyKey, portIn);
    configuration.usbControl =
        reader.take(SettingKey::UsbControl, reply, usbControlReplyKey, [](std::string_view value) {
            if (value.front() == ':')
                value.remove_prefix(1);
            return portIn(value);
        });
}

const std::vector<std::string_view> &answerKeys()
{
    static const std::vector<std::string_view> keys = [] {
        std::vector<std::string_view> all = {
            portLimitReplyKey,   cursorRollingReplyKey, mouseModeReplyKey,
            resolutionsReplyKey, buzzerReplyKey,        hotkeyReplyKey,
            kmControlReplyKey,   usbControlReplyKey,    layoutReplyKey};
        for (int setting = 0; setting < customSettings; ++setting)
            all.push_back(customSettingReplyKey(setting));
        return all;
    }();
    return keys;
}
} // namespace

ConfigurationReading readConfiguration(std::string_view configurationReply,
                                       std::string_view statusReply, std::string_view layoutReply)
{
    Reader reader;
    SwitchConfiguration configuration;
    takeStatus(reader, statusReply, configuration);
    configuration.activePorts = reader.take(
        SettingKey::ActivePorts, configurationReply, portLimitReplyKey,
        [](std::string_view value) { return numberIn(value, fewestActivePorts, mostActivePorts); });
    const auto takeWord = [&](SettingKey key, std::string_view replyKey,
                              bool (*saysOn)(std::string_view)) {
        return reader.take(key, configurationReply, replyKey,
                           [=](std::string_view value) { return wordIn(value, saysOn); });
    };
    configuration.cursorRolling =
        takeWord(SettingKey::CursorRolling, cursorRollingReplyKey, saysCursorRollingOn);
    configuration.relativeMouse =
        takeWord(SettingKey::MouseMode, mouseModeReplyKey, saysRelativeMouse);
    configuration.buzzerOn = takeWord(SettingKey::Buzzer, buzzerReplyKey, saysBuzzerOn);
    takeCustomSettings(reader, configurationReply, configuration);
    takeResolutions(reader, configurationReply, configuration);
    configuration.layout = reader.take(SettingKey::Layout, layoutReply, layoutReplyKey, layoutIn);
    return {configuration, reader.problems()};
}

ConfigurationReading readConfiguration(std::string_view reply)
{
    return readConfiguration(reply, reply, reply);
}

bool holdsPartOfAnswer(std::string_view reply)
{
    const std::vector<std::string_view> &keys = answerKeys();
    return std::any_of(keys.begin(), keys.end(), [reply](std::string_view key) {
        return key != kmControlReplyKey && key != usbControlReplyKey &&
               reply.find(key) != std::string_view::npos;
    });
}

bool isWholeAnswer(std::string_view reply)
{
    const std::vector<std::string_view> &keys = answerKeys();
    return std::all_of(keys.begin(), keys.end(), [reply](std::string_view key) {
        const auto found = reply.find(key);
        return found != std::string_view::npos && reply.find('\n', found) != std::string_view::npos;
    });
}
