#include "log/event_log.h"

#include "log/one_line.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <filesystem>
#include <fstream>

namespace {
// Lives from before main to after it, so that code running at either end may still log.
std::ofstream logStream; // NOLINT(cert-err58-cpp): a closed stream cannot throw here
} // namespace

QString eventLogPath()
{
#ifdef Q_OS_WIN
    return QStringLiteral("C:\\Users\\Public\\Documents\\KM_log.txt");
#else
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QDir(folder).filePath(QStringLiteral("KM_log.txt"));
#endif
}

int openLog()
{
    const QString path = eventLogPath();
#ifndef Q_OS_WIN
    QDir().mkpath(QFileInfo(path).absolutePath());
#endif
    logStream.open(std::filesystem::path(path.toStdU16String()), std::ios::out | std::ios::trunc);
    if (!logStream.is_open())
        return -1;
    logStream << "Start.........\n" << std::flush;
    return 1;
}

void writeLog(const std::string &message)
{
    const QString stamp =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    logStream << asOneLine(message) << "   " << stamp.toStdString() << '\n' << std::flush;
}

void closeLog()
{
    logStream << "Stop.........\n" << std::flush;
    logStream.close();
}
