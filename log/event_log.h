#pragma once

#include <QString>
#include <string>

/// The event log: one text file per process, started anew by every run.
///
/// Each line is the message, three blanks and the local time ("yyyy-MM-dd hh:mm:ss"), for example
/// `Write data error   2024-03-02 14:03:05`. The marker lines "Start........." and "Stop........."
/// carry no time. A log that cannot be written is silent: lines are dropped, nothing is shown,
/// nothing throws.

/// Where this system's log lives: "C:\Users\Public\Documents\KM_log.txt" on Windows, `KM_log.txt`
/// in the user's documents folder elsewhere.
QString eventLogPath();

/// Opens the log, truncating the previous run's, and writes the start marker. Elsewhere than on
/// Windows a missing folder is made. Returns 1 when the file is open afterwards, -1 otherwise.
int openLog();

/// Writes one line with `message` (UTF-8 bytes, no line end). Lost when the log is closed.
///
/// Whatever the message holds, it stays one line, as asOneLine (log/one_line.h) makes it.
void writeLog(const std::string &message);

/// Writes the stop marker and closes the file.
void closeLog();
