#pragma once

#include "command_watch.h"
#include "desk.h"
#include "dialog_answers.h"
#include "figures.h"
#include "steps.h"
#include "user.h"

#include <QDialog>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>
#include <vector>

/// One process's share of a walk: a window, its user and the desk, from a line of the plan to its
/// end or to the program's.
///
/// What it finds out it says on standard output, a line each: "at LINE", "figures NUMBERS",
/// "failure KIND line LINE: TEXT", and "end LINE TEXT" before the program ends early.
class Walk : public QObject
{
public:
    static constexpr int failureStatus = 3;

    /// `folder` is this process's own. `verbose`: tells every step and answer on standard error.
    Walk(const WalkPlan &plan, const QDir &folder, bool verbose);

    /// A fault that is never healed, for walks that are to fail.
    void keepFault(const QByteArray &fault) { keptFault_ = fault; }
    /// Something that the checks are to find, done in each of them: "gap", "memory", "files",
    /// "dialog", "end" or "early-end". False when `what` is none of these.
    bool setBreakage(const QByteArray &what);

    /// Walks from line `from` of the plan; the exit status: 0, or failureStatus.
    int run(int from);

private:
    struct Failure
    {
        QByteArray kind;
        QString text;
    };

    /// How often the utility has waited for modules without its event loop.
    struct Waits
    {
        int searches = 0;
        int logins = 0;
    };

    /// A time in which the event loop did not turn.
    struct Gap
    {
        qint64 length = 0; ///< ms; 0: there is none to be looked at
        Waits before;
        QElapsedTimer since;
    };

    bool inProgram(const std::function<void()> &work);
    void walkLeg(int from, int end);
    void advance();
    void check();

    void settle();
    void waitForQuiet();
    void connectAgain();
    void readBack();
    void checkWindow();
    void checkFile();
    void checkTouch();
    void checkCommands();
    void checkDialogs();
    void breakSomething();
    void takeGap(qint64 length);
    void checkGap();
    void checkResources();

    SwitchPicture pictureOfChosen();
    void tick();
    void fail(const QByteArray &kind, const QString &text);
    void endEarly(const QString &text);
    void tell(const QByteArray &text) const;
    void report();

    WalkPlan plan_;
    QDir folder_;
    bool verbose_;
    QByteArray keptFault_;
    QByteArray breakage_; ///< empty: none
    QByteArrayList keptMemory_;
    std::vector<std::unique_ptr<QFile>> keptFiles_;
    std::unique_ptr<QDialog> keptDialog_;
    Desk desk_;
    CommandWatch watch_;
    DialogAnswers answers_;
    User user_;
    Figures figures_;
    QList<Failure> failures_;

    QTimer pump_;
    int next_ = 0;   ///< line of the plan
    int legEnd_ = 0; ///< behind the leg's last line
    bool isBusy_ = false;
    bool isQueued_ = false;
    QElapsedTimer resting_;
    int rest_ = 0; ///< ms until the next step

    QTimer heartbeat_;
    QElapsedTimer sinceBeat_;
    qint64 beats_ = 0;
    Gap gap_; ///< the longest that has not been looked at
    Waits waits_;
    Waits waitsAtBeat_;
    bool wasGreen_ = false;
    bool isNameKnown_ = true; ///< the module was asked for it when all was well
    QString lastTerminal_;
    QElapsedTimer sinceTerminal_;
};
