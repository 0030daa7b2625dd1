#include "cli/passwords.h"

#include "cli/failure.h"
#include "cli/output.h"
#include "cli/standard_input.h"

#include <QFile>
#include <iostream>
#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <termios.h>
#include <unistd.h>
#endif

namespace {
/// The terminal does not show what is typed while this lives. Ctrl+\ and Ctrl+Z would end or
/// suspend the program before it shows it again, and are no keys meanwhile.
class NoEcho
{
public:
    Q_DISABLE_COPY_MOVE(NoEcho)
#ifdef Q_OS_WIN
    NoEcho()
    {
        GetConsoleMode(input_, &before_);
        SetConsoleMode(input_, before_ & ~static_cast<DWORD>(ENABLE_ECHO_INPUT));
    }
    ~NoEcho()
    {
        SetConsoleMode(input_, before_);
    }

private:
    HANDLE input_ = GetStdHandle(STD_INPUT_HANDLE);
    DWORD before_ = 0;
#else
    NoEcho()
    {
        tcgetattr(STDIN_FILENO, &before_);
        termios silent = before_;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        silent.c_cc[VQUIT] = _POSIX_VDISABLE;
        silent.c_cc[VSUSP] = _POSIX_VDISABLE;
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
    }
    ~NoEcho()
    {
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_);
    }

private:
    termios before_{};
#endif
};

/// What is typed at `question`; UsageError at the end of input, Interrupted at Ctrl+C.
QString typed(const QString &question)
{
    std::cerr << question.toStdString() << std::flush;
    try {
        if (const std::optional<QString> line = inputLine())
            return *line;
    } catch (const Interrupted &) {
        std::cerr << '\n';
        throw;
    }
    throw UsageError(QStringLiteral("nothing was typed"));
}

QString typedSilently(const QString &question)
{
    const NoEcho silence;
    QString text = typed(question);
    std::cerr << '\n';
    return text;
}

QString firstLineOf(const std::string &path)
{
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadOnly))
        throw UsageError(QStringLiteral("the password file %1 cannot be read: %2")
                             .arg(file.fileName(), file.errorString()));
    constexpr qint64 longest = 1024; // bytes
    QByteArray line = file.readLine(longest);
    while (line.endsWith('\n') || line.endsWith('\r'))
        line.chop(1);
    return QString::fromUtf8(line);
}

void requireTerminal(const char *variable, const char *option)
{
    if (!isInputTerminal())
        throw UsageError(QStringLiteral("no password; set %1 or give %2")
                             .arg(QLatin1String(variable), QLatin1String(option)));
}
} // namespace

QString modulePassword(const std::string &file)
{
    constexpr const char *variable = "PELORA_PASSWORD";
    if (!file.empty())
        return firstLineOf(file);
    if (qEnvironmentVariableIsSet(variable))
        return qEnvironmentVariable(variable);
    requireTerminal(variable, "--password-file FILE");
    return typedSilently(QStringLiteral("Password of the module: "));
}

QString newModulePassword(const std::string &file)
{
    constexpr const char *variable = "PELORA_NEW_PASSWORD";
    if (!file.empty())
        return firstLineOf(file);
    if (qEnvironmentVariableIsSet(variable))
        return qEnvironmentVariable(variable);
    requireTerminal(variable, "--new-password-file FILE");
    QString password = typedSilently(QStringLiteral("New password: "));
    if (typedSilently(QStringLiteral("New password, again: ")) != password)
        throw UsageError(QStringLiteral("the two new passwords differ; nothing was changed"));
    return password;
}

bool askYesNo(const QString &question)
{
    return typed(question + QStringLiteral(" [y/N] "))
        .trimmed()
        .startsWith(QLatin1Char('y'), Qt::CaseInsensitive);
}
