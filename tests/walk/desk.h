#pragma once

#include "steps.h"
#include "switch_picture.h"

#include <QDir>
#include <QElapsedTimer>
#include <QObject>
#include <QProcess>
#include <functional>
#include <memory>
#include <vector>

/// Something that a switch or a module said it did: a line of the simulator's reports.
struct DeskEvent
{
    enum class Kind {
        Command,        ///< `text` was obeyed
        Rejected,       ///< `text` was not, for `reason`
        ModuleRequest,  ///< a module answered or took `text`, such as "search"
        ModuleRejected, ///< a module or all of them refused something, for `reason`
        Other
    };
    Kind kind = Kind::Other;
    int unit = 1; ///< 1 or 2; of a frame that no module took, 0
    QByteArray text;
    QByteArray reason;
};

/// The two switches of a walk: simulators in processes of their own, with their consoles as the
/// hands of whoever stands at the desk.
///
/// On the serial road each is one program with one line, the first at the speed of a line and the
/// second as fast as it is read. On the network both are one program: two modules, and a serial
/// line to the first of their switches.
class Desk : public QObject
{
public:
    Desk(Road road, const QDir &folder);
    ~Desk() override;

    /// Starts the simulators; what went wrong, or nothing.
    QString start();
    /// The serial ports' paths, for the list in which the utility looks for them.
    QByteArray portList() const;

    /// Carries out a step of the desk.
    void obey(const Step &step);
    /// A fault that is there from the start and stays: what the walk is to find.
    void keepFault(const QByteArray &fault);
    /// The switches behave again and all cables are plugged in. `alsoModules`: the modules are as
    /// at the start, which resets the switches too.
    void heal(bool alsoModules);

    /// Asks the simulators for their state and waits for it; no picture of one that is gone.
    QList<SwitchPicture> look();
    /// What was last seen of switch `unit`.
    SwitchPicture lastSeen(int unit) const { return pictures_.value(unit - 1); }
    /// The switch behind a port's path or a module's address; 0 when there is none.
    int unitAt(const QString &portOrAddress) const;

    /// Whether something is or has lately been amiss with a switch, so that the utility may find
    /// nobody there.
    bool isUnwell() const;
    void noteTrouble();
    /// What was amiss is over, and all that it brought about: from now on nothing excuses a utility
    /// that finds nobody.
    void forgetTrouble() { sinceTrouble_.invalidate(); }
    /// Whether a switch misbehaves at this moment.
    bool hasFault() const;
    bool hasEnded() const;
    int faultsSet() const { return faultsSet_; }
    /// Time since a simulator last reported something.
    qint64 quietFor() const { return sinceReport_.elapsed(); }
    /// Whether answers may still be under way that a fault holds up. The window does not show those
    /// that come before the switch is there for it.
    bool isSpeaking() const { return clock_.elapsed() < speakingUntil_; }

    std::function<void(const DeskEvent &)> onEvent;
    /// Told when something goes wrong, and when it is made good.
    std::function<void()> onTrouble;

private:
    struct Simulator
    {
        QProcess process;
        QByteArray said;
        int unit = 0; ///< 0: the units are named in what it reports
        bool hasFault = false;
        qint64 delay = 0; ///< ms before every answer
        int chunk = 0;    ///< bytes in a piece of an answer; 0: all
    };

    Simulator &simulatorOf(int unit);
    void type(Simulator &simulator, const QByteArray &line);
    void typeFault(Simulator &simulator, const QByteArray &fault);
    void startOne(int unit, const QStringList &arguments);
    void readReports(Simulator &simulator);
    void take(const Simulator &simulator, const QByteArray &line);
    void noteSpeech(const Simulator &simulator, const QByteArray &command);

    Road road_;
    QDir folder_;
    std::vector<std::unique_ptr<Simulator>> simulators_;
    QList<SwitchPicture> pictures_;
    QByteArrayList reports_; ///< what is left of lines under way, by simulator
    QByteArray keptFault_;
    QElapsedTimer clock_;
    qint64 speakingUntil_ = 0;   ///< by the clock
    QElapsedTimer sinceTrouble_; ///< not valid until there is any
    QElapsedTimer sinceReport_;
    int faultsSet_ = 0;
    int mark_ = 0;
};
