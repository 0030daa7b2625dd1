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

/// The names of `option` with their dashes.
Words namesOf(const CLI::Option &option)
{
    Words words;
    for (const std::string &name : option.get_snames())
        words.push_back("-" + name);
    for (const std::string &name : option.get_lnames())
        words.push_back("--" + name);
    return words;
}

void append(Words &words, const Words &more)
{
    words.insert(words.end(), more.begin(), more.end());
}

/// The options of `app` with their dashes, of those that `counts` picks.
template <typename Counts>
Words optionsOf(const CLI::App &app, Counts counts)
{
    Words words;
    for (const CLI::Option *option : app.get_options()) {
        if (!option->get_positional() && counts(*option))
            append(words, namesOf(*option));
    }
    return words;
}

Words optionsOf(const CLI::App &app)
{
    return optionsOf(app, [](const CLI::Option &) { return true; });
}

bool takesValue(const CLI::Option &option)
{
    return option.get_items_expected_max() > 0;
}

bool takesFile(const CLI::Option &option)
{
    return option.get_type_name() == "FILE";
}

bool takesDevice(const CLI::Option &option)
{
    return option.get_type_name() == "DEVICE";
}

/// The options of `app` and of all commands, of those that `counts` picks.
template <typename Counts>
Words allOptions(CLI::App &app, Counts counts)
{
    Words words = optionsOf(app, counts);
    for (CLI::App *command : commandsOf(app))
        append(words, allOptions(*command, counts));
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

const std::string deviceHeads = "serial: udp: module:"; // NOLINT(cert-err58-cpp): cannot throw

/// A `case` for each command as typed, "module set" for one behind another, and a pattern for each
/// word that leads to one.
void addCases(std::string &cases, Words &patterns, CLI::App &app, const std::string &name)
{
    for (CLI::App *command : commandsOf(app)) {
        const std::string full =
            name.empty() ? command->get_name() : name + " " + command->get_name();
        patterns.push_back("'" + name + " " + command->get_name() + "'");
        cases += "    '" + full + "') words='" + joined(argumentsOf(*command)) + "' options='" +
                 joined(optionsOf(*command)) + "'" + (takesFile(*command) ? " files=yes" : "") +
                 " ;;\n";
        addCases(cases, patterns, *command, full);
    }
}

/// For bash, and for zsh by way of its bashcompinit: `function`, and that it is for peloractl. What
/// has been typed is split at blanks here, since bash splits it at ":" and "=" too, so that
/// "module:DESK-7" would look like a command. `readWords` is the shell's way to read a line into an
/// array.
std::string bashCompletion(CLI::App &app, const std::string &function, const std::string &readWords)
{
    std::string cases;
    Words patterns;
    addCases(cases, patterns, app, {});
    return function +
           "() {\n"
           "  local line=${COMP_LINE:0:$COMP_POINT} current one option= command= words= options= "
           "files=\n"
           "  local -a typed\n"
           "  current=${line##*[[:blank:]]}\n"
           "  " +
           readWords +
           " typed <<< \"${line%\"$current\"}\"\n"
           "  for one in \"${typed[@]}\"; do\n"
           "    [ -n \"$one\" ] || continue\n" // zsh reads one behind the last blank
           "    if [ -n \"$option\" ]; then option=; continue; fi\n"
           "    case $one in\n"
           "      " +
           joined(allOptions(app, takesValue), "|") +
           ") option=$one; continue ;;\n"
           "    esac\n"
           "    case \"$command $one\" in\n"
           "      " +
           joined(patterns, "|") +
           ") command=\"${command:+$command }$one\" ;;\n"
           "    esac\n"
           "  done\n"
           "  case $command in\n"
           "    '') words='" +
           joined(argumentsOf(app)) + "' ;;\n" + cases +
           "  esac\n"
           "  case $current in -*) files= words=\"$options " +
           joined(optionsOf(app)) +
           "\" ;; esac\n"
           "  case $option in\n"
           "    '') ;;\n"
           "    " +
           joined(allOptions(app, [](const auto &option) { return takesFile(option); }), "|") +
           ") words= files=yes ;;\n"
           "    " +
           joined(allOptions(app, takesDevice), "|") + ") words='" + deviceHeads +
           "' files= ;;\n"
           "    *) words= files= ;;\n"
           "  esac\n"
           "  COMPREPLY=()\n"
           "  case $current in *[=:]*) words= ;; esac\n"
           "  for one in $(compgen -W \"$words\" -- \"$current\"); do\n"
           "    case $one in *[=:]) ;; *) one=\"$one \" ;; esac\n"
           "    COMPREPLY+=(\"$one\")\n"
           "  done\n"
           "  [ -n \"$files\" ] || return 0\n"
           "  local IFS=$'\\n'\n"
           "  COMPREPLY+=($(compgen -f -- \"$2\"))\n"
           "  compopt -o filenames +o nospace 2>/dev/null\n"
           "  return 0\n"
           "}\n"
           "complete -o nospace -F " +
           function + " peloractl\n";
}

/// To be read in, or to be found as `_peloractl` in a folder of $fpath: then it is a function's
/// body that zsh runs for the first completion, which it has to make as well.
std::string zshCompletion(CLI::App &app)
{
    return "#compdef peloractl\n"
           "(( $+functions[compdef] )) || { autoload -U compinit && compinit -i }\n"
           "autoload -U +X bashcompinit && bashcompinit\n" +
           bashCompletion(app, "_peloractl_words", "read -rA") +
           "[[ ${funcstack[1]} != _peloractl ]] || _bash_complete -o nospace -F "
           "_peloractl_words\n";
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
        if (takesValue(*option))
            text += takesFile(*option) ? " -r -F" : " -x";
        if (takesDevice(*option))
            text += " -a " + quoted(deviceHeads);
        text += " -d " + quoted(option->get_description()) + "\n";
    }
}

/// What may stand behind `app`, which is typed as `name`: the program itself without one.
void addFishCommand(std::string &text, CLI::App &app, const std::string &name)
{
    const std::string condition = " -n " + quoted("__peloractl_at " + name);
    const std::vector<CLI::App *> commands = commandsOf(app);
    for (const CLI::App *command : commands)
        text += "complete -c peloractl" + condition + " -a " + command->get_name() + " -d " +
                quoted(command->get_description()) + "\n";
    if (const Words words = argumentsOf(app); commands.empty() && !words.empty())
        text += "complete -c peloractl" + condition + " -a " + quoted(joined(words)) + "\n";
    if (takesFile(app))
        text += "complete -c peloractl" + condition + " -F\n";
    if (!name.empty())
        addFishOptions(text, app, condition);
    for (CLI::App *command : commands)
        addFishCommand(text, *command,
                       name.empty() ? command->get_name() : name + " " + command->get_name());
}

std::string fishCompletion(CLI::App &app)
{
    std::string cases;
    Words patterns;
    addCases(cases, patterns, app, {});
    std::string text =
        "function __peloractl_at --description 'Whether these are the commands so far'\n"
        "  set -l typed (commandline -opc)\n"
        "  set -e typed[1]\n"
        "  set -l command\n"
        "  set -l option\n"
        "  for one in $typed\n"
        "    if test -n \"$option\"\n"
        "      set option\n"
        "    else if contains -- $one " +
        joined(allOptions(app, takesValue)) +
        "\n"
        "      set option $one\n"
        "    else if contains -- \"$command $one\" " +
        joined(patterns) +
        "\n"
        "      set -a command $one\n"
        "    end\n"
        "  end\n"
        "  test \"$command\" = \"$argv\"\n"
        "end\n"
        "complete -c peloractl -f\n";
    addFishOptions(text, app, "");
    addFishCommand(text, app, {});
    return text;
}
} // namespace

std::string completionFor(const std::string &shell)
{
    Options unused;
    const std::unique_ptr<CLI::App> app = commandLine(unused);
    if (shell == "fish")
        return fishCompletion(*app);
    return shell == "bash" ? bashCompletion(*app, "_peloractl", "read -ra") : zshCompletion(*app);
}
