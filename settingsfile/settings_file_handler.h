#pragma once

#include <QSaveFile>
#include <QString>
#include <memory>
#include <string>

/// The settings file on disk: the one that is being written and the one that was read last.
///
/// Writing is whole or not at all: until an output is finished, the file of that name is as it was.
class SettingsFileHandler
{
public:
    SettingsFileHandler() = default;
    /// As close().
    ~SettingsFileHandler();
    SettingsFileHandler(const SettingsFileHandler &) = delete;
    SettingsFileHandler &operator=(const SettingsFileHandler &) = delete;

    /// Writes `text` to the file `path`; no output may be open. With `leaveOpen` the output stays
    /// open, and the file gets its contents only when the output is finished. Returns why it
    /// failed, empty when it did not.
    [[nodiscard]] QString save(const QString &path, const std::string &text, bool leaveOpen);
    /// Finishes an output that was left open. Returns why that failed, empty when there was nothing
    /// to finish too.
    [[nodiscard]] QString finishOutput();
    /// Finishes an output that was left open, at the program's end: a failure goes to the event
    /// log, which has to be open still.
    void close();

    /// Forgets the file that was read last.
    void forget();
    /// Reads the file `path` (at most 1 MiB, no NUL byte, at least one of the 23 keys) and keeps
    /// its name and text. Returns what is wrong with it as a sentence for the user, empty when
    /// nothing is.
    [[nodiscard]] QString read(const QString &path);

    const QString &fileName() const { return fileName_; }
    const std::string &text() const { return text_; }

    /// Whether the file that was read last is being applied or has been.
    bool isFileLoaded() const { return fileLoaded_; }
    void markLoaded() { fileLoaded_ = true; }

private:
    bool fileLoaded_ = false;
    QString fileName_;
    std::string text_;
    std::unique_ptr<QSaveFile> output_;
};
