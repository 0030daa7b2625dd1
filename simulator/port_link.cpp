#include "simulator/port_link.h"

#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace fs = std::filesystem;

namespace {

fs::path pathOf(const QString &name)
{
    return fs::path(name.toStdU16String());
}

bool leadsTo(const fs::path &link, const fs::path &target)
{
    std::error_code error;
    return fs::is_symlink(fs::symlink_status(link, error)) &&
           fs::read_symlink(link, error) == target;
}

[[noreturn]] void refuse(const QString &path, const std::string &reason)
{
    throw std::runtime_error("cannot make the link " + path.toStdString() + ": " + reason);
}

} // namespace

PortLink::PortLink(const QString &path, const QString &target) : path_(path), target_(target)
{
    const fs::path link = pathOf(path);
    std::error_code error;
    const fs::file_status there = fs::symlink_status(link, error);
    if (fs::is_symlink(there)) {
        if (fs::exists(link, error) && !leadsTo(link, pathOf(target)))
            refuse(path, "it leads to " + fs::read_symlink(link, error).string() +
                             " already; is another simulator running? Remove it if not");
        fs::remove(link, error);
    } else if (fs::exists(there)) {
        refuse(path, "there is a file of that name");
    }
    fs::create_symlink(pathOf(target), link, error);
    if (error)
        refuse(path, error.message());
}

PortLink::~PortLink()
{
    std::error_code error;
    const fs::path link = pathOf(path_);
    if (leadsTo(link, pathOf(target_)))
        fs::remove(link, error);
}
