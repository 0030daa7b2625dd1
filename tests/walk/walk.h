#pragma once

#include "command_watch.h"
#include "desk.h"
#include "dialog_answers.h"
#include "figures.h"
#include "steps.h"
#include "user.h"

#include <QDir>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <chrono>
#include <functional>

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

    /// Walks from line `from` of the plan; the exit status: 0, or failureStatus.
    int run(int from);

private:
    struct Failure
    {
        QByteArray kind;
        QString text;
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
    qint64 legGap_ = 0;
    int searches_ = 0; ///< for modules, in this leg
    int logins_ = 0;
    bool wasGreen_ = false;
    QString lastTerminal_;
    QElapsedTimer sinceTerminal_;
};
