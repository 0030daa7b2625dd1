#include "figures.h"

#include <QByteArrayList>
#include <algorithm>
#include <cstdio>

namespace {
template <typename Number>
void take(QByteArrayList &numbers, Number &number)
{
    number = numbers.isEmpty() ? Number() : static_cast<Number>(numbers.takeFirst().toLongLong());
}

template <typename Each>
void forEach(Figures &figures, Each each)
{
    each(figures.steps);
    each(figures.leftOut);
    each(figures.checks);
    each(figures.commands);
    each(figures.faults);
    each(figures.dialogs);
    each(figures.connections);
    each(figures.ends);
    each(figures.longestGap);
    each(figures.firstMemory);
    each(figures.mostMemory);
    each(figures.lastMemory);
    each(figures.firstFiles);
    each(figures.mostFiles);
    each(figures.lastFiles);
}
} // namespace

QByteArray Figures::text() const
{
    Figures copy = *this;
    QByteArrayList numbers;
    forEach(copy, [&](auto number) { numbers.append(QByteArray::number(qint64{number})); });
    return numbers.join(' ');
}

Figures Figures::from(const QByteArray &text)
{
    QByteArrayList numbers = text.split(' ');
    Figures figures;
    forEach(figures, [&](auto &number) { take(numbers, number); });
    return figures;
}

void Figures::add(const Figures &next)
{
    steps += next.steps;
    leftOut += next.leftOut;
    checks += next.checks;
    commands += next.commands;
    faults += next.faults;
    dialogs += next.dialogs;
    connections += next.connections;
    ends += next.ends;
    longestGap = std::max(longestGap, next.longestGap);
    if (firstMemory == 0)
        firstMemory = next.firstMemory;
    if (firstFiles == 0)
        firstFiles = next.firstFiles;
    mostMemory = std::max(mostMemory, next.mostMemory);
    mostFiles = std::max(mostFiles, next.mostFiles);
    if (next.lastMemory != 0) {
        lastMemory = next.lastMemory;
        lastFiles = next.lastFiles;
    }
}

void Figures::print() const
{
    std::printf("steps        %d, %d of them at controls that were disabled\n"
                "checks       %d\n"
                "commands     %d\n"
                "faults       %d\n"
                "dialogs      %d\n"
                "connections  %d\n"
                "early ends   %d, each told to the user and with a switch that was not there\n"
                "longest gap  %lld ms of the event loop\n"
                "memory       %lld KiB after the first legs, at most %lld, %lld at the end\n"
                "open files   %d after the first legs, at most %d, %d at the end\n",
                steps, leftOut, checks, commands, faults, dialogs, connections, ends,
                static_cast<long long>(longestGap), static_cast<long long>(firstMemory),
                static_cast<long long>(mostMemory), static_cast<long long>(lastMemory), firstFiles,
                mostFiles, lastFiles);
    std::fflush(stdout);
}
