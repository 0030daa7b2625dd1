#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <cstdint>
#include <optional>

/// Where a walk leads: along two serial lines, or over the network to two modules, with a serial
/// line beside the first of them.
enum class Road { Serial, Udp };

/// One action of a walk, a line of text: the action, what it is done with, and behind a tilde the
/// seed of the answers to the dialogs that it brings about.
///
///   choose comboBox_KM_Control 2 ~5
///   fault 1 delay 40
struct Step
{
    QByteArray action;
    QByteArray rest; ///< all between the action and the tilde
    std::uint64_t answers = 0;

    /// Word `at` of the rest, counted from 0; empty where there are fewer.
    QByteArray word(int at) const { return rest.split(' ').value(at); }
    int number(int at) const { return word(at).toInt(); }
};

Step readStep(const QByteArray &line);

/// Whether a step is the desk's (the switches, the cables, the front panels) rather than the
/// user's: those may come at any moment, under an open dialog as well.
bool isOfDesk(const Step &step);

/// Behind so many steps stands the line "check".
constexpr int stepsOfALeg = 20;

/// `count` steps as `seed` has them, with their checks; the last line is a check.
QByteArrayList drawSteps(std::uint64_t seed, int count, Road road);

/// A walk on paper. In its file the first lines are "# seed 7" and "# road serial".
struct WalkPlan
{
    std::uint64_t seed = 0;
    Road road = Road::Serial;
    QByteArrayList steps;
};

bool writePlan(const QString &path, const WalkPlan &plan);
/// Nothing when the file cannot be read or names no road.
std::optional<WalkPlan> readPlan(const QString &path);

std::optional<Road> roadNamed(const QByteArray &name);
const char *nameOf(Road road);

/// How many of `lines` are steps, checks left aside.
int stepsIn(const QByteArrayList &lines);
