// A random walk through the real window, offscreen, beside simulated switches that misbehave.
// scripts/walk builds and starts it.
//   pelora-walk [--seed N] [--steps N] [--road serial|udp] [--folder FOLDER]
//   pelora-walk --replay FILE [--folder FOLDER]

#include "supervisor.h"
#include "walk.h"

#include "log/window_dress.h"

#include <QApplication>
#include <QCommandLineParser>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {
constexpr int mistakeStatus = 2;

/// The offscreen platform says of every window that it has no size hints.
void passOn(QtMsgType, const QMessageLogContext &, const QString &text)
{
    if (!text.contains(QStringLiteral("propagateSizeHints")))
        std::fprintf(stderr, "%s\n", qPrintable(text));
}

bool isPart(int argc, char **argv)
{
    return std::any_of(argv, argv + argc,
                       [](const char *argument) { return std::strcmp(argument, "--part") == 0; });
}

int mistake(const char *text)
{
    std::fprintf(stderr, "pelora-walk: %s\n", text);
    return mistakeStatus;
}

QString given(const QCommandLineParser &parser, const char *option)
{
    return parser.value(QString::fromLatin1(option));
}

/// The part that walks: a window in a process of its own, which may end before its walk.
int walkPart(const QCommandLineParser &parser, const WalkPlan &plan)
{
    Walk walk(plan, QDir(given(parser, "folder")), parser.isSet(QStringLiteral("verbose")));
    walk.keepFault(given(parser, "keep-fault").toUtf8());
    const QString breakage = given(parser, "break");
    if (!breakage.isEmpty() && !walk.setBreakage(breakage.toLatin1()))
        return mistake("--break takes gap, memory, files, dialog, end or early-end");
    return walk.run(given(parser, "part").toInt());
}
} // namespace

int main(int argc, char *argv[])
{
    qInstallMessageHandler(passOn);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    std::unique_ptr<QCoreApplication> application;
    if (isPart(argc, argv)) {
        application = std::make_unique<QApplication>(argc, argv);
        useLightPalette();
    } else {
        application = std::make_unique<QCoreApplication>(argc, argv);
    }
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Walks at random through the window beside misbehaving switches."));
    parser.addHelpOption();
    parser.addOptions({
        {QStringLiteral("seed"), QStringLiteral("Draw the steps from this number (1)."),
         QStringLiteral("N"), QStringLiteral("1")},
        {QStringLiteral("steps"), QStringLiteral("So many steps (200)."), QStringLiteral("N"),
         QStringLiteral("200")},
        {QStringLiteral("road"), QStringLiteral("serial or udp (serial)."), QStringLiteral("ROAD"),
         QStringLiteral("serial")},
        {QStringLiteral("replay"),
         QStringLiteral("Walk the steps of this file, and drop steps while it still fails."),
         QStringLiteral("FILE")},
        {QStringLiteral("folder"), QStringLiteral("Where the walk leaves its files (.)."),
         QStringLiteral("FOLDER"), QStringLiteral(".")},
        {QStringLiteral("verbose"), QStringLiteral("Tell every step and answer.")},
        {QStringLiteral("keep-fault"),
         QStringLiteral("A fault of the simulator that is never healed: the walk is to fail."),
         QStringLiteral("FAULT")},
        {QStringLiteral("break"),
         QStringLiteral("Something that goes wrong in every check: the walk is to fail."),
         QStringLiteral("WHAT")},
        {QStringLiteral("part"), QStringLiteral("Be the process that walks, from this line on."),
         QStringLiteral("LINE")},
    });
    parser.process(*application);

    WalkPlan plan;
    if (parser.isSet(QStringLiteral("replay"))) {
        const auto read = readPlan(given(parser, "replay"));
        if (!read)
            return mistake("the steps file cannot be read");
        plan = *read;
    } else {
        const auto road = roadNamed(given(parser, "road").toLatin1());
        bool isNumber = false;
        const int steps = given(parser, "steps").toInt(&isNumber);
        if (!road || !isNumber || steps < 1)
            return mistake("--road takes serial or udp, --steps a number from 1 on");
        plan.seed = given(parser, "seed").toULongLong(&isNumber);
        if (!isNumber)
            return mistake("--seed takes a number");
        plan.road = *road;
        plan.steps = drawSteps(plan.seed, steps, *road);
    }
    if (parser.isSet(QStringLiteral("part")))
        return walkPart(parser, plan);

    QStringList passedOn;
    if (parser.isSet(QStringLiteral("verbose")))
        passedOn.append(QStringLiteral("--verbose"));
    for (const QString &option : {QStringLiteral("keep-fault"), QStringLiteral("break")}) {
        if (parser.isSet(option))
            passedOn += {QStringLiteral("--") + option, parser.value(option)};
    }
    const QDir folder(QDir(given(parser, "folder")).absolutePath());
    if (!folder.mkpath(QStringLiteral(".")))
        return mistake("the folder cannot be made");
    Supervisor supervisor(folder, passedOn);
    return parser.isSet(QStringLiteral("replay")) ? supervisor.replay(plan) : supervisor.walk(plan);
}
