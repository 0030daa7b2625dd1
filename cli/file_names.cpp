#include "cli/file_names.h"

#include "cli/failure.h"

#include <QRegularExpression>
#include <QSet>
#include <algorithm>
#include <filesystem>
#include <system_error>

namespace {
const QLatin1String placeholder("{name}");

namespace fs = std::filesystem;

/// From the root and without links, as far as there is such a file; empty where that cannot be
/// learnt.
fs::path wholePath(const QString &name)
{
    std::error_code unknown;
    return fs::weakly_canonical(fs::absolute(fs::path(name.toStdU16String()), unknown), unknown);
}

bool isReserved(const QString &name)
{
    static const QRegularExpression reserved(
        QStringLiteral("^(con|prn|aux|nul|com[0-9¹²³]|lpt[0-9¹²³])[ ]*(\\..*)?$"),
        QRegularExpression::CaseInsensitiveOption);
    return reserved.match(name).hasMatch();
}

bool isPlain(const QString &name)
{
    static const QString forbidden = QStringLiteral("/\\:*?\"<>|");
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..") &&
           !isReserved(name) && std::none_of(name.cbegin(), name.cend(), [](QChar character) {
               return forbidden.contains(character) || character.category() == QChar::Other_Control;
           });
}
} // namespace

bool namesEachDevice(const QString &pattern)
{
    return pattern.contains(placeholder);
}

bool isSameFile(const QString &one, const QString &other)
{
    if (one.isEmpty() || other.isEmpty())
        return false;
    std::error_code unknown; // where nothing can be learnt, they count as two
    const fs::path first = wholePath(one);
    const fs::path second = wholePath(other);
    return fs::equivalent(first, second, unknown) || (!first.empty() && first == second);
}

QStringList filesFor(const QString &pattern, const std::vector<Device> &devices)
{
    QStringList files;
    QStringList mistakes;
    QSet<QString> taken;
    for (const Device &device : devices) {
        if (namesEachDevice(pattern) && !isPlain(device.name))
            mistakes.append(
                QStringLiteral("\"%1\" cannot be part of a file's name; give the device "
                               "a NAME of its own in a list")
                    .arg(device.name));
        files.append(QString(pattern).replace(placeholder, device.name));
        // On many systems "Desk" and "desk" are one file.
        const QString one = files.last().toCaseFolded();
        if (namesEachDevice(pattern) && taken.contains(one))
            mistakes.append(
                QStringLiteral("\"%1\" would be the file of two devices; give them names "
                               "that differ in more than case")
                    .arg(files.last()));
        taken.insert(one);
    }
    if (!mistakes.isEmpty())
        throw UsageError(mistakes);
    return files;
}
