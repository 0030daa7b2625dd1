#include "cli/output.h"

#include "log/one_line.h"

#include <cerrno>
#include <cstring>
#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {
int descriptorOf(std::FILE *file)
{
#ifdef Q_OS_WIN
    return _fileno(file);
#else
    return fileno(file);
#endif
}

bool isTerminalFile(std::FILE *file)
{
#ifdef Q_OS_WIN
    return _isatty(descriptorOf(file)) != 0;
#else
    return isatty(descriptorOf(file)) != 0;
#endif
}
} // namespace

void Output::write(const std::string &text)
{
    if (hasEnded_)
        return;
    if (std::fwrite(text.data(), 1, text.size(), file_) == text.size() && std::fflush(file_) == 0)
        return;
    const int error = errno;
    hasEnded_ = true;
    if (error != EPIPE)
        problem_ = QString::fromLocal8Bit(std::strerror(error));
}

void Output::writeLine(const QString &line)
{
    write(asOneLine(line.toStdString()) + "\n");
}

int Output::descriptor() const
{
    return descriptorOf(file_);
}

bool Output::isTerminal() const
{
    return isTerminalFile(file_);
}

bool Output::takesColours() const
{
#ifdef Q_OS_WIN
    return false; // older consoles show the sequences
#else
    return isTerminal() && !qEnvironmentVariableIsSet("NO_COLOR");
#endif
}

QString visible(const QString &text)
{
    return QString::fromStdString(asOneLine(text.toStdString()));
}

bool isInputTerminal()
{
    return isTerminalFile(stdin);
}
