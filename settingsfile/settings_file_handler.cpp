#include "settingsfile/settings_file_handler.h"

#include "device/settings_text.h"
#include "log/event_log.h"

#include <QFile>
#include <QFileInfo>
#include <utility>

namespace {
constexpr qint64 largestFile = 1024LL * 1024; // bytes
}

SettingsFileHandler::~SettingsFileHandler()
{
    const QString problem = finishOutput();
    if (!problem.isEmpty())
        writeLog("The last settings file could not be saved: " + problem.toStdString());
}

QString SettingsFileHandler::save(const QString &path, const std::string &text, bool leaveOpen)
{
    Q_ASSERT(output_ == nullptr);
    auto output = std::make_unique<QSaveFile>(path);
    if (!output->open(QIODevice::WriteOnly))
        return output->errorString();
    const auto size = static_cast<qint64>(text.size());
    // Flushed here: finishing alone may succeed after what was buffered could not be written.
    if (output->write(text.data(), size) != size || !output->flush()) {
        const QString problem = output->errorString();
        output->cancelWriting();
        return problem;
    }
    output_ = std::move(output);
    return leaveOpen ? QString() : finishOutput();
}

QString SettingsFileHandler::finishOutput()
{
    const std::unique_ptr<QSaveFile> output = std::move(output_);
    return output == nullptr || output->commit() ? QString() : output->errorString();
}

void SettingsFileHandler::forget()
{
    fileLoaded_ = false;
    fileName_.clear();
    text_.clear();
}

QString SettingsFileHandler::read(const QString &path)
{
    forget();
    fileName_ = path;
    const QFileInfo info(path);
    const QString name = info.fileName();
    if (info.exists() && !info.isFile())
        return QStringLiteral("%1 cannot be read: it is not a file").arg(name);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("%1 cannot be read: %2").arg(name, file.errorString());
    const QByteArray bytes = file.read(largestFile + 1);
    if (file.error() != QFile::NoError)
        return QStringLiteral("%1 cannot be read: %2").arg(name, file.errorString());
    if (bytes.size() > largestFile)
        return QStringLiteral("%1 is no settings file: it is larger than 1 MiB").arg(name);
    if (bytes.contains('\0'))
        return QStringLiteral("%1 is no settings file: it holds a NUL byte").arg(name);
    if (!holdsAnySetting(bytes.toStdString()))
        return QStringLiteral("%1 is no settings file: it holds none of the settings").arg(name);
    text_ = bytes.toStdString();
    return {};
}
