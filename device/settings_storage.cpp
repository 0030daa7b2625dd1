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
    if (!output.open(QIODevice::WriteOnly))
        return output.errorString();
    const auto size = static_cast<qint64>(text.size());
    // Flushed here: finishing alone may succeed after what was buffered could not be written.
    if (output.write(text.data(), size) != size || !output.flush()) {
        const QString problem = output.errorString();
        output.cancelWriting();
        return problem;
    }
    return {};
}
