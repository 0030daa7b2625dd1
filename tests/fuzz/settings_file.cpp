#include "device/configuration_file.h"
#include "property.h"
#include "switch_sight.h"

namespace {
/// Line ends as another system writes them, behind a byte order mark.
std::string fromAnotherSystem(std::string_view text)
{
    std::string result = "\xEF\xBB\xBF";
    for (const char character : text) {
        if (character == '\n')
            result += '\r';
        result += character;
    }
    return result;
}

bool isSetting(SettingKey key)
{
    return key != SettingKey::Hotkey; // which is in no file
}
} // namespace

/// The bytes are a settings file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view text = textOf(data, size);
    const SettingsReading read = readSettings(text);
    for (const SettingKey key : allSettingKeys()) {
        const auto written = read.commands.find(key);
        require((written != read.commands.end()) == hasSetting(read.configuration, key),
                "what is known has its command");
        if (written != read.commands.end())
            requireSets({written->second, key}, read.configuration);
    }
    if (!text.starts_with("\xEF\xBB\xBF") && text.find('\r') == std::string_view::npos)
        require(readSettings(fromAnotherSystem(text)).configuration == read.configuration,
                "a file that another system wrote says the same");

    const std::string saved = settingsText(read.configuration);
    const SettingsReading again = readSettings(saved);
    require(again.errors.empty(), "a saved file has no bad line",
            again.errors.empty() ? std::string() : again.errors.front().value);
    require(again.configuration == read.configuration, "a saved file is read as it was", saved);
    require(settingsText(again.configuration) == saved, "and saved again as it is", saved);
    require(holdsAnySetting(saved), "a saved file is taken for one");

    std::vector<SettingKey> keys;
    for (const SettingKey key : allSettingKeys()) {
        if (isSetting(key) && hasSetting(read.configuration, key))
            keys.push_back(key);
    }
    for (const SettingCommand &command :
         commandsFor(keys, SwitchConfiguration(), read.configuration, read.commands))
        requireSets(command, read.configuration);
    return 0;
}
