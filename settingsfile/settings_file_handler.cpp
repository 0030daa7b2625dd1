#include "settingsfile/settings_file_handler.h"

#include "device/settings_storage.h"
#include "log/event_log.h"

#include <utility>

SettingsFileHandler::~SettingsFileHandler()
{
    close();
}

void SettingsFileHandler::close()
{
    const QString problem = finishOutput();
    if (!problem.isEmpty())
        writeLog("The last settings file could not be saved: " + problem.toStdString());
}

QString SettingsFileHandler::save(const QString &path, const std::string &text, bool leaveOpen)
{
    Q_ASSERT(output_ == nullptr);
    auto output = std::make_unique<QSaveFile>(path);
    const QString problem = writeSettingsFile(*output, text);
    if (!problem.isEmpty())
        return problem;
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
    SettingsFileText file = readSettingsFile(path);
    text_ = std::move(file.text);
    return file.problem;
}
