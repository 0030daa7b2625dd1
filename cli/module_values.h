#pragma once

#include "session/module_session.h"

#include <string>
#include <vector>

/// What `module set` is to change; what is not named stays as it is.
struct ModuleValues
{
    std::optional<bool> dhcp;
    std::optional<QString> ip; ///< dotted, without zeros in front, as are the next two
    std::optional<QString> mask;
    std::optional<QString> gateway;
    std::optional<QString> name;
    std::optional<QString> username;
    std::optional<QString> password;

    /// Whether the module is to have a new user name or password.
    bool changesCredentials() const { return username || password; }
};

/// Reads "dhcp", "ip=ADDRESS" (which makes the address static), "mask=MASK", "gateway=ADDRESS",
/// "name=NAME" and "username=USER". Throws UsageError with a line for each that is none.
ModuleValues moduleValuesFrom(const std::vector<std::string> &texts);

/// Throws UsageError unless `password` can be a module's: 1 to 6 bytes.
void requirePassword(const QString &password);

/// All that is to be written into a module that has `now`.
ModuleSettings settingsFor(const ModuleValues &values, const usr_frame::ConfigurationReply &now,
                           const ModuleCredentials &credentials);
