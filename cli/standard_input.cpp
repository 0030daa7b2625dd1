#include "cli/standard_input.h"

#include <stdexcept>
#include <string>
#ifdef Q_OS_WIN
#include <QFile>
#include <cstdio>
#include <iostream>
#else
#include "cli/failure.h"
#include "cli/interrupts.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>
#endif

#ifdef Q_OS_WIN
std::optional<QString> inputLine()
{
    std::string line;
    if (!std::getline(std::cin, line))
        return {};
    return QString::fromStdString(line);
}

QByteArray wholeInput()
{
    QFile file;
    if (!file.open(stdin, QIODevice::ReadOnly))
        throw std::runtime_error(file.errorString().toStdString());
    QByteArray text = file.readAll();
    if (file.error() != QFile::NoError)
        throw std::runtime_error(file.errorString().toStdString());
    return text;
}
#else
namespace {
/// At most `most` bytes, as soon as there are any; none at the end.
QByteArray piece(std::size_t most)
{
    if (!waitForInput())
        throw Interrupted();
    QByteArray bytes(static_cast<qsizetype>(most), Qt::Uninitialized);
    const ssize_t count = ::read(STDIN_FILENO, bytes.data(), most);
    if (count < 0)
        throw std::runtime_error(std::strerror(errno));
    bytes.truncate(count);
    return bytes;
}
} // namespace

std::optional<QString> inputLine()
{
    QByteArray line;
    while (!line.endsWith('\n')) {
        const QByteArray next = piece(1); // what follows the line is somebody else's
        if (next.isEmpty() && line.isEmpty())
            return {};
        if (next.isEmpty())
            return QString::fromUtf8(line);
        line += next;
    }
    line.chop(1);
    return QString::fromUtf8(line);
}

QByteArray wholeInput()
{
    constexpr std::size_t size = 4096;
    QByteArray text;
    for (QByteArray next = piece(size); !next.isEmpty(); next = piece(size))
        text += next;
    return text;
}
#endif
