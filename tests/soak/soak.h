#pragma once

#include "command_watch.h"
#include "desk.h"
#include "dialog_answers.h"
#include "steps.h"
#include "user.h"

#include <QByteArray>
#include <QDir>
#include <QList>
#include <functional>
#include <memory>

/// The same thing done very often, to see whether the program keeps something of it: read-backs,
/// connections, wizard runs, text. What it holds of the system is noted when it has got into its
/// stride, in the middle and at the end of each; that it holds more each time is a failure.
class Soak
{
public:
    /// `hours` is the share of the whole: 24 is all of it.
    Soak(Road road, const QDir &folder, double hours);
    ~Soak();

    /// For the test of the soak itself: something is kept each time.
    void leak() { leaks_ = true; }

    /// Inside the event loop; prints what it did. Returns the exit status: 0 or 1.
    int run();

private:
    struct Sample
    {
        qint64 memory; ///< KiB
        int files;
        int objects;
        int timers;
    };

    bool repeat(const char *what, int times, qint64 memoryBound, const std::function<bool()> &once);
    static bool inATurn(const std::function<bool()> &once);
    bool judge(const char *what, int times, qint64 memoryBound, const QList<Sample> &samples) const;
    static Sample sample();

    bool isRead() const;
    bool waitForRead();
    bool readBack();
    bool connectAnew();
    bool runWizard();
    bool hearText();
    bool agrees();

    const Road road_;
    const double share_;
    bool leaks_ = false;
    Desk desk_;
    CommandWatch watch_;
    DialogAnswers answers_;
    User user_;
    QList<QByteArray> kept_;
    QList<QObject *> keptObjects_;
};
