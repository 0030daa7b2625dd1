#include "cli/failure.h"

QString kindOf(ExitStatus status)
{
    switch (status) {
    case ExitStatus::Ok:
    case ExitStatus::Differs:
        return {};
    case ExitStatus::Usage:
        return QStringLiteral("usage");
    case ExitStatus::NoDevice:
        return QStringLiteral("no-device");
    case ExitStatus::NotUnderstood:
        return QStringLiteral("not-understood");
    case ExitStatus::NotTaken:
        return QStringLiteral("not-taken");
    case ExitStatus::BadCredentials:
        return QStringLiteral("credentials");
    case ExitStatus::Interrupted:
        return QStringLiteral("interrupted");
    }
    return {};
}
