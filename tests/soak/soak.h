#pragma once

#include "command_watch.h"
#include "desk.h"
#include "dialog_answers.h"
#include "steps.h"
#include "user.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QDir>
#include <QList>
#include <functional>
#include <memory>
#include <vector>

/// The same thing done very often, to see whether the program keeps something of it: read-backs,
/// connections, wizard runs, text. What it holds of the system is noted when it has got into its
/// stride, in the middle and at the end of each; that it holds more each time is a failure.
class Soak
{
public:
    /// `hours` is the share of the whole: 24 is all of it.
    Soak(Road road, const QDir &folder, double hours);
    ~Soak();

    /// For the test of the soak itself: "memory", "files", "objects" or "timers" are kept each
    /// time. False when `kind` is none of these.
    bool leak(const QByteArray &kind);

    /// Inside the event loop; prints what it did. Returns the exit status: 0 or 1.
    int run();

private:
    enum class Leak { None, Memory, File, Object, Timer };

    struct Sample
    {
        qint64 memory; ///< KiB
        int files;
        int objects;
        int timers;
    };

    void keepSomething();
    bool repeat(const char *what, int times, qint64 memoryBound, const std::function<bool()> &once);
    static bool inATurn(const std::function<bool()> &once);
    bool judge(const char *what, int times, qint64 memoryBound, const QList<Sample> &samples) const;
    static Sample sample();

    bool isRead() const;
    bool waitForRead();
    bool readBack();
    bool connectAnew();
    bool runWizard();

    /// Until the terminal is full, every answer is more memory.
    bool fillTerminal();
    /// Has the switch say much at once and press a button behind it. Returns the characters that
    /// came (CR LF is one) or 0 when the answer to the button did not.
    qint64 hearText();

    bool agrees();

    const Road road_;
    const double share_;
    Leak leak_ = Leak::None;
    Desk desk_;
    CommandWatch watch_;
    DialogAnswers answers_;
    User user_;
    QByteArrayList keptBytes_;
    std::vector<std::unique_ptr<QObject>> keptObjects_;
};
