#include "device/settings_storage.h"

#include "device/settings_text.h"

#include <QFile>
#include <QFileInfo>

namespace {
constexpr qint64 largestFile = 1024LL * 1024; // bytes

/// What is wrong with the bytes of a file, as a clause; empty when nothing is.
QString problemOf(const QByteArray &bytes)
{
    if (bytes.size() > largestFile)
        return QStringLiteral("it is larger than 1 MiB");
    if (bytes.contains('\0'))
        return QStringLiteral("it holds a NUL byte");
    if (!holdsAnySetting(bytes.toStdString()))
        return QStringLiteral("it holds none of the settings");
    return {};
}
} // namespace

SettingsFileText readSettingsFile(const QString &path)
{
    const QFileInfo info(path);
    const QString name = info.fileName();
    const auto unreadable = [&name](const QString &why) {
        return SettingsFileText{QStringLiteral("%1 cannot be read: %2").arg(name, why), {}};
    };
    if (info.exists() && !info.isFile())
        return unreadable(QStringLiteral("it is not a file"));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return unreadable(file.errorString());
    const QByteArray bytes = file.read(largestFile + 1);
    if (file.error() != QFile::NoError)
        return unreadable(file.errorString());
    const QString problem = problemOf(bytes);
    if (!problem.isEmpty())
        return {QStringLiteral("%1 is no settings file: %2").arg(name, problem), {}};
    return {{}, bytes.toStdString()};
}

QString writeSettingsFile(QSaveFile &output, const std::string &text)
{
    // A device or a pipe would be replaced by a file of its name.
    const QFileInfo present(output.fileName());
    if (present.exists() && !present.isFile())
        return QStringLiteral("it is not a file");
    if (!output.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return output.errorString();
    // Piece by piece: a disk that fills up takes a part and says why only when it takes no more.
    const auto size = static_cast<qint64>(text.size());
    for (qint64 written = 0; written < size;) {
        const qint64 taken = output.write(text.data() + written, size - written);
        if (taken <= 0) {
            const QString problem = output.errorString();
            output.cancelWriting();
            return problem;
        }
        written += taken;
    }
    return {};
}
