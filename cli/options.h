#pragma once

#include <string>
#include <vector>

/// What the command line says, as it stands there (UTF-8).
struct Options
{
    enum class Command {
        Ports,
        Discover,
        Get,
        Set,
        Save,
        Diff,
        Apply,
        ResetSoft,
        ResetFactory,
        Watch,
        ModuleShow,
        ModuleSet,
        Completion
    };

    Command command = Command::Get;

    std::vector<std::string> devices; ///< --device
    std::string deviceList;           ///< --devices; empty: none
    int jobs = 64;
    bool json = false;
    int timeout = 3000; ///< ms, as is `wait`
    int retries = 2;
    int wait = 1500;
    std::string record; ///< --record; empty: none

    std::vector<std::string> keys;        ///< get
    std::vector<std::string> assignments; ///< set, module set
    std::string file;                     ///< save, diff, apply
    bool force = false;
    bool dryRun = false;
    bool yes = false; ///< reset factory

    std::string user; ///< module
    std::string passwordFile;
    bool newPassword = false;
    std::string newPasswordFile;

    std::string shell; ///< completion
};
