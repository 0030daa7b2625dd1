#pragma once

#include <QString>

/// A symbolic link to a virtual port, so that the port has a name that stays.
///
/// Takes the place of nothing but a link of its own or one that leads nowhere (left by a program
/// that was killed), and goes when this object goes, if it still leads to the same port.
class PortLink
{
public:
    /// Throws std::runtime_error with a text for the user when the link cannot be made.
    PortLink(const QString &path, const QString &target);
    ~PortLink();
    PortLink(const PortLink &) = delete;
    PortLink &operator=(const PortLink &) = delete;

private:
    QString path_;
    QString target_;
};
