#include "cli/arguments.h"

#include <CLI/CLI.hpp>
#include <sstream>

namespace {
constexpr int mostJobs = 1000;
constexpr int longestWait = 600000; ///< ms
constexpr int mostRetries = 100;
constexpr int mistakeStatus = 2;

void addEverywhere(CLI::App &app, Options &options)
{
    app.add_option("-d,--device", options.devices,
                   "serial:PORT, udp:ADDRESS[:PORT] or module:NAME-OR-MAC; may be given several "
                   "times. Without one: PELORA_DEVICE")
        ->type_name("DEVICE")
        ->allow_extra_args(false)
        ->take_all();
    app.add_option("-D,--devices", options.deviceList,
                   "a list: NAME DEVICE or DEVICE a line, # begins a comment; - is standard input")
        ->type_name("FILE");
    app.add_option("--jobs", options.jobs, "how many devices at the same time, at most")
        ->type_name("N")
        ->check(CLI::Range(1, mostJobs))
        ->capture_default_str();
    app.add_flag("--json", options.json, "one JSON object per device and line");
    app.add_option("--timeout", options.timeout,
                   "longest wait for an answer to begin, and then for the rest of it")
        ->type_name("MS")
        ->check(CLI::Range(1, longestWait))
        ->capture_default_str();
    app.add_option("--retries", options.retries, "further attempts after the first")
        ->type_name("N")
        ->check(CLI::Range(0, mostRetries))
        ->capture_default_str();
    app.add_option("--wait", options.wait, "how long answers to a search for modules are taken")
        ->type_name("MS")
        ->check(CLI::Range(1, longestWait))
        ->capture_default_str();
    app.add_option("--record", options.record,
                   "keep everything that passes on the link, as JSON lines")
        ->type_name("FILE");
}

CLI::App *command(CLI::App &app, Options &options, const char *name, const char *help,
                  Options::Command which)
{
    CLI::App *made = app.add_subcommand(name, help);
    made->callback([&options, which] { options.command = which; });
    return made;
}

void addFile(CLI::App *command, Options &options, const char *help)
{
    command->add_option("file", options.file, help)->type_name("FILE")->required();
}

void addManner(CLI::App *command, Options &options)
{
    command->add_flag("--force", options.force, "send everything, also what is so already");
    command->add_flag("-n,--dry-run", options.dryRun,
                      "show the commands that would be sent, and send none");
}

void addChanges(CLI::App &app, Options &options)
{
    using Command = Options::Command;
    CLI::App *set =
        command(app, options, "set", "change settings, and see that they were taken", Command::Set);
    set->add_option("settings", options.assignments,
                    "such as km-control=3, resolution.2=4K, layout=12/34")
        ->type_name("KEY=VALUE")
        ->required();
    addManner(set, options);
    addFile(command(app, options, "save", "write the configuration into a settings file",
                    Command::Save),
            options, "the file; {name} in it is the device's name");
    addFile(command(app, options, "diff", "show what apply would change; status 1 if anything",
                    Command::Diff),
            options, "the settings file; {name} in it is the device's name");
    CLI::App *apply = command(app, options, "apply",
                              "bring the switch to what a settings file says", Command::Apply);
    addFile(apply, options, "the settings file; {name} in it is the device's name");
    addManner(apply, options);
}

void addResets(CLI::App &app, Options &options)
{
    CLI::App *reset = app.add_subcommand("reset", "restart the switch");
    reset->require_subcommand(1);
    reset->fallthrough();
    command(*reset, options, "soft", "all settings stay", Options::Command::ResetSoft);
    command(*reset, options, "factory", "all settings as they left the works",
            Options::Command::ResetFactory)
        ->add_flag("--yes", options.yes, "do not ask whether it is meant");
}

void addLogin(CLI::App *command, Options &options)
{
    command
        ->add_option("-u,--user", options.user,
                     "the module's user name; the password comes from PELORA_PASSWORD, "
                     "--password-file or a prompt")
        ->type_name("USER")
        ->required();
    command->add_option("--password-file", options.passwordFile, "its first line is the password")
        ->type_name("FILE");
}

void addModule(CLI::App &app, Options &options)
{
    CLI::App *module = app.add_subcommand("module", "the network module in front of the switch");
    module->require_subcommand(1);
    module->fallthrough();
    addLogin(command(*module, options, "show", "address allocation, addresses and name",
                     Options::Command::ModuleShow),
             options);
    CLI::App *set = command(*module, options, "set", "change them; what is not named stays",
                            Options::Command::ModuleSet);
    set->add_option("values", options.assignments,
                    "dhcp, ip=ADDRESS, mask=MASK, gateway=ADDRESS, name=NAME, username=USER")
        ->type_name("VALUE");
    addLogin(set, options);
    set->add_flag("--new-password", options.newPassword,
                  "change the password, to the one of PELORA_NEW_PASSWORD or of a prompt");
    set->add_option("--new-password-file", options.newPasswordFile,
                    "change the password, to this file's first line")
        ->type_name("FILE");
}

/// What is wrong, in one line. `app` has been parsed as far as that came.
std::string mistake(const CLI::ParseError &error, const CLI::App &app)
{
    const std::vector<std::string> unknown = app.remaining(true);
    if (dynamic_cast<const CLI::RequiredError *>(&error) != nullptr && !unknown.empty())
        return "there is no command or option \"" + unknown.front() + "\"";
    const std::string text = error.what();
    return text.substr(0, text.find('\n'));
}
} // namespace

std::unique_ptr<CLI::App> commandLine(Options &options)
{
    using Command = Options::Command;
    auto app = std::make_unique<CLI::App>(
        "Reads and changes Norvik Pelora switches from the command line.", "peloractl");
    app->set_version_flag("--version", "peloractl " PELORA_VERSION, "show the version and end");
    app->set_help_flag("-h,--help", "show this help and end");
    app->require_subcommand(1);
    app->fallthrough();
    app->allow_windows_style_options(false);
    addEverywhere(*app, options);

    command(*app, options, "ports", "list the serial ports", Command::Ports);
    command(*app, options, "discover", "find the network modules on the LAN", Command::Discover);
    command(*app, options, "get", "show the configuration, or some keys of it", Command::Get)
        ->add_option("keys", options.keys, "such as km-control, resolution.2, layout")
        ->type_name("KEY");
    addChanges(*app, options);
    addResets(*app, options);
    command(*app, options, "watch", "show what the switch says, as it says it, until Ctrl+C",
            Command::Watch);
    addModule(*app, options);
    command(*app, options, "completion", "print a completion for a shell", Command::Completion)
        ->add_option("shell", options.shell, "bash, zsh or fish")
        ->type_name("SHELL")
        ->required()
        ->check(CLI::IsMember({"bash", "zsh", "fish"}));
    app->footer("Keys: km-control, usb-control, active-ports, cursor-rolling, buzzer, mouse-mode,\n"
                "resolution.1 to .4, custom.1 to .4, layout, hotkey. See man peloractl.");
    return app;
}

std::variant<Options, EarlyEnd> readArguments(const QStringList &arguments)
{
    Options options;
    const std::unique_ptr<CLI::App> app = commandLine(options);
    std::vector<std::string> words; // the last one first, as it is wanted here
    for (qsizetype at = arguments.size() - 1; at > 0; --at)
        words.push_back(arguments.at(at).toStdString());
    try {
        app->parse(words);
    } catch (const CLI::ParseError &error) {
        if (error.get_exit_code() != static_cast<int>(CLI::ExitCodes::Success))
            return EarlyEnd{"peloractl: " + mistake(error, *app) + "; see peloractl --help\n",
                            mistakeStatus};
        std::ostringstream text;
        app->exit(error, text, text);
        return EarlyEnd{text.str(), 0};
    }
    return options;
}
