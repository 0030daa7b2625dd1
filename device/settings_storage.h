#pragma once

#include <QSaveFile>
#include <QString>
#include <string>

/// A settings file on the disk.

/// What was read of a file, or why nothing was.
struct SettingsFileText
{
    QString problem; ///< "desk.txt is no settings file: it holds a NUL byte"; empty when it is one
    std::string text;
};

/// Reads the file `path`: at most 1 MiB, no NUL byte, at least one of the 23 keys.
SettingsFileText readSettingsFile(const QString &path);

/// Opens `output` and writes `text`, to the disk as far as that can be known before the end: what
/// remains is to commit. Returns what went wrong, in the system's words, empty when nothing did;
/// the file of that name is as it was then, and stays so.
QString writeSettingsFile(QSaveFile &output, const std::string &text);
