#include "cli/completion.h"

#include "cli/arguments.h"
#include "device/setting_key.h"

#include <CLI/CLI.hpp>

namespace {
using Words = std::vector<std::string>;

std::string joined(const Words &words, const std::string &between = " ")
{
    std::string text;
    for (const std::string &word : words)
        text += (text.empty() ? "" : between) + word;
    return text;
}

std::vector<CLI::App *> commandsOf(CLI::App &app)
{
    return app.get_subcommands([](CLI::App *) { return true; });
}

/// The options of `app` with their dashes.
Words optionsOf(const CLI::App &app)
{
    Words words;
    for (const CLI::Option *option : app.get_options()) {
        for (const std::string &name : option->get_snames())
            words.push_back("-" + name);
        for (const std::string &name : option->get_lnames())
            words.push_back("--" + name);
    }
    return words;
}

/// The options whose value is a file.
Words fileOptionsOf(const CLI::App &app)
{
    Words words;
    for (const CLI::Option *option : app.get_options()) {
        if (option->get_type_name() != "FILE" || option->get_positional())
            continue;
        for (const std::string &name : option->get_snames())
            words.push_back("-" + name);
        for (const std::string &name : option->get_lnames())
            words.push_back("--" + name);
    }
    return words;
}

Words keys()
{
    Words words;
    for (const SettingKey key : allSettingKeys())
        words.push_back(settingName(key).toStdString());
    return words;
}

Words assignments()
{
    Words words;
    for (const std::string &key : keys()) {
        if (key != "hotkey")
            words.push_back(key + "=");
    }
    return words;
}

/// What may stand behind `command`, beside options.
Words argumentsOf(CLI::App &command)
{
    Words words;
    for (const CLI::App *sub : commandsOf(command))
        words.push_back(sub->get_name());
    if (command.get_name() == "get")
        return keys();
    if (command.get_name() == "set" && command.get_parent()->get_name() == "module")
        return {"dhcp", "ip=", "mask=", "gateway=", "name=", "username="};
    if (command.get_name() == "set")
        return assignments();
    if (command.get_name() == "completion")
        return {"bash", "zsh", "fish"};
    return words;
}

bool takesFile(const CLI::App &command)
{
    return command.get_option_no_throw("file") != nullptr;
}

/// A `case` of words: the command as typed, "module set" for one behind another.
void addCase(std::string &text, CLI::App &command, const std::string &name)
{
    text += "    '" + name + "') words='" + joined(argumentsOf(command)) + " " +
            joined(optionsOf(command)) + "'" + (takesFile(command) ? "; files=yes" : "") + " ;;\n";
    for (CLI::App *sub : commandsOf(command))
        addCase(text, *sub, name + " " + sub->get_name());
}

/// Bash; zsh reads the same through bashcompinit.
std::string bashCompletion(CLI::App &app)
{
    Words names;
    std::string cases;
    std::string nested;
    Words files = fileOptionsOf(app);
    for (CLI::App *command : commandsOf(app)) {
        names.push_back(command->get_name());
        addCase(cases, *command, command->get_name());
        for (CLI::App *sub : commandsOf(*command)) {
            for (const std::string &word : fileOptionsOf(*sub))
                files.push_back(word);
        }
        if (!commandsOf(*command).empty())
            nested += (nested.empty() ? "" : "|") + command->get_name();
    }
    return "_peloractl() {\n"
           "  local word=${COMP_WORDS[COMP_CWORD]} last=${COMP_WORDS[COMP_CWORD-1]}\n"
           "  local command= words= files= at one\n"
           "  COMPREPLY=()\n"
           "  case $last in " +
           joined(files, "|") +
           ") COMPREPLY=($(compgen -f -- \"$word\")); return ;; esac\n"
           "  for ((at = 1; at < COMP_CWORD; at++)); do\n"
           "    one=${COMP_WORDS[at]}\n"
           "    case $command in\n"
           "      '') case $one in " +
           joined(names, "|") +
           ") command=$one ;; esac ;;\n"
           "      " +
           nested +
           ") case $one in -*) ;; *) command=\"$command $one\" ;; esac ;;\n"
           "    esac\n"
           "  done\n"
           "  case $command in\n"
           "    '') words='" +
           joined(names) + "' ;;\n" + cases +
           "  esac\n"
           "  COMPREPLY=($(compgen -W \"$words " +
           joined(optionsOf(app)) +
           "\" -- \"$word\"))\n"
           "  [ -z \"$files\" ] || COMPREPLY+=($(compgen -f -- \"$word\"))\n"
           "  case ${COMPREPLY[0]-} in *=) compopt -o nospace 2>/dev/null ;; esac\n"
           "}\n"
           "complete -o filenames -F _peloractl peloractl\n";
}

std::string quoted(const std::string &text)
{
    std::string inside;
    for (const char character : text)
        inside += character == '\'' ? "\\'" : std::string(1, character);
    return "'" + inside + "'";
}

void addFishOptions(std::string &text, const CLI::App &app, const std::string &condition)
{
    for (const CLI::Option *option : app.get_options()) {
        if (option->get_positional())
            continue;
        text += "complete -c peloractl" + condition;
        for (const std::string &name : option->get_snames())
            text += " -s " + name;
        for (const std::string &name : option->get_lnames())
            text += " -l " + name;
        if (option->get_type_size() > 0)
            text += option->get_type_name() == "FILE" ? " -r -F" : " -x";
        text += " -d " + quoted(option->get_description()) + "\n";
    }
}

void addFishCommand(std::string &text, CLI::App &command)
{
    const std::string condition =
        " -n " + quoted("__fish_seen_subcommand_from " + command.get_name());
    const Words words = argumentsOf(command);
    if (!words.empty())
        text += "complete -c peloractl" + condition + " -a " + quoted(joined(words)) + "\n";
    if (takesFile(command))
        text += "complete -c peloractl" + condition + " -F\n";
    addFishOptions(text, command, condition);
    for (CLI::App *sub : commandsOf(command))
        addFishCommand(text, *sub);
}

std::string fishCompletion(CLI::App &app)
{
    std::string text = "complete -c peloractl -f\n";
    addFishOptions(text, app, "");
    for (CLI::App *command : commandsOf(app)) {
        text += "complete -c peloractl -n __fish_use_subcommand -a " + command->get_name() +
                " -d " + quoted(command->get_description()) + "\n";
        addFishCommand(text, *command);
    }
    return text;
}
} // namespace

std::string completionFor(const std::string &shell)
{
    Options unused;
    const std::unique_ptr<CLI::App> app = commandLine(unused);
    if (shell == "fish")
        return fishCompletion(*app);
    const std::string bash = bashCompletion(*app);
    return shell == "bash" ? bash : "autoload -U +X bashcompinit && bashcompinit\n" + bash;
}
