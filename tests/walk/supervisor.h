#pragma once

#include "figures.h"
#include "steps.h"

#include <QDir>
#include <QStringList>

/// Sends walks on their way in processes of their own, since the program may end under them, as it
/// should or by a crash, and shortens those that fail.
class Supervisor
{
public:
    /// `passedOn` are options for the walking processes.
    Supervisor(const QDir &folder, QStringList passedOn);

    /// Walks `plan`; prints the figures, and when it fails seed, steps and where its steps are.
    /// Returns the exit status: 0 or 1.
    int walk(const WalkPlan &plan);
    /// The same, and drops steps while it still fails in the same way.
    int replay(const WalkPlan &plan);

private:
    struct Outcome
    {
        Figures figures;
        QByteArray kind; ///< of the failure; empty: none
        QByteArray text;
        int line = 0; ///< of the plan, up to which it came
    };

    Outcome run(const WalkPlan &plan);
    /// One process's share, from line `from`; whether another one is to go on.
    bool runPart(const QString &file, int from, Outcome &outcome);
    void tellFailure(const WalkPlan &plan, const Outcome &outcome, const QString &file) const;
    WalkPlan shortened(WalkPlan plan, const QByteArray &kind);

    QDir folder_;
    QStringList passedOn_;
    int runs_ = 0;
};
