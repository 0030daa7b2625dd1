#include "desk.h"

#include "event_wait.h"

#include <algorithm>

using namespace std::chrono_literals;

namespace {
constexpr auto longestAnswer = 20s;
constexpr int lastingTrouble = 3000; // ms
constexpr int chunkGap = 2;          // ms

QString portPath(const QDir &folder, int unit)
{
    return folder.filePath(QStringLiteral("switch-%1").arg(unit));
}
} // namespace

Desk::Desk(Road road, const QDir &folder) : road_(road), folder_(folder)
{
    clock_.start();
    sinceReport_.start();
}

Desk::~Desk()
{
    for (const auto &simulator : simulators_) {
        simulator->process.disconnect(this);
        simulator->process.closeWriteChannel();
        if (!simulator->process.waitForFinished(3000))
            simulator->process.kill();
        simulator->process.waitForFinished(3000);
    }
}

QString Desk::start()
{
    const auto link = [this](int unit) {
        return QStringList{QStringLiteral("--link"), portPath(folder_, unit)};
    };
    if (road_ == Road::Serial) {
        startOne(1, QStringList{QStringLiteral("serial")} + link(1));
        startOne(2, QStringList{QStringLiteral("serial"), QStringLiteral("--no-pacing")} + link(2));
    } else {
        startOne(0, QStringList{QStringLiteral("all"), QStringLiteral("--address"),
                                QStringLiteral("192.0.2.7"), QStringLiteral("--fleet"),
                                QStringLiteral("2"), QStringLiteral("--quiet-gap"),
                                QStringLiteral("25")} +
                        link(1));
    }
    if (look().size() == 2)
        return {};
    QString why = QStringLiteral("the simulators do not start");
    for (const auto &simulator : simulators_)
        why += QStringLiteral(": ") + simulator->process.errorString();
    return why + QStringLiteral(" ") + QString::fromUtf8(reports_.join(' '));
}

void Desk::startOne(int unit, const QStringList &arguments)
{
    simulators_.push_back(std::make_unique<Simulator>());
    reports_.append(QByteArray());
    Simulator &made = *simulators_.back();
    made.unit = unit;
    connect(&made.process, &QProcess::readyReadStandardError, this,
            [this, &made] { readReports(made); });
    connect(&made.process, &QProcess::readyReadStandardOutput, this,
            [&made] { made.said += made.process.readAllStandardOutput(); });
    made.process.start(
        QStringLiteral(SIMULATOR_PROGRAM),
        arguments + QStringList{QStringLiteral("--console"), QStringLiteral("--until-stdin-closes"),
                                QStringLiteral("--verbose"), QStringLiteral("--restart-time"),
                                QStringLiteral("60")});
}

QByteArray Desk::portList() const
{
    QStringList paths{portPath(folder_, 1)};
    if (road_ == Road::Serial)
        paths.append(portPath(folder_, 2));
    return paths.join(QDir::listSeparator()).toLocal8Bit();
}

Desk::Simulator &Desk::simulatorOf(int unit)
{
    return *simulators_.at(unit == 2 && simulators_.size() > 1 ? 1 : 0);
}

void Desk::type(Simulator &simulator, const QByteArray &line)
{
    simulator.process.write(line + "\n");
}

void Desk::typeFault(Simulator &simulator, const QByteArray &fault)
{
    noteTrouble();
    if (fault == "none") {
        simulator.hasFault = false;
        simulator.delay = 0;
        simulator.chunk = 0;
        type(simulator, "fault none");
        if (!keptFault_.isEmpty())
            type(simulator, "fault " + keptFault_);
        return;
    }
    ++faultsSet_;
    simulator.hasFault = true;
    const QByteArrayList words = fault.split(' ');
    if (words.first() == "delay")
        simulator.delay = words.value(1).toInt();
    if (words.first() == "chunks") {
        simulator.chunk = words.value(1).toInt();
        // A byte every 20 ms would say one answer in ten seconds.
        type(simulator, "fault gap " + QByteArray::number(chunkGap));
    }
    type(simulator, "fault " + fault);
}

void Desk::obey(const Step &step)
{
    const int unit = step.number(0);
    Simulator &simulator = simulatorOf(unit);
    const QByteArray ofSwitch = simulator.unit == 0 ? " " + step.word(0) : QByteArray();
    if (step.action == "fault") {
        typeFault(simulator, step.rest.mid(2));
    } else if (step.action == "panel") {
        type(simulator, "press " + step.word(1) + ofSwitch);
    } else if (step.action == "flood") {
        noteTrouble();
        type(simulator, "flood " + step.word(1) + ofSwitch);
    } else if (step.action == "factory") {
        noteTrouble();
        type(simulator, "reset");
    } else if (step.action == "unplug" || step.action == "plug") {
        noteTrouble();
        type(simulator, step.action);
    }
}

void Desk::keepFault(const QByteArray &fault)
{
    keptFault_ = fault;
    for (const auto &simulator : simulators_)
        type(*simulator, "fault " + fault);
}

void Desk::heal(bool alsoModules)
{
    for (const auto &simulator : simulators_) {
        typeFault(*simulator, "none");
        type(*simulator, "plug");
        if (alsoModules)
            type(*simulator, "reset");
    }
}

QList<SwitchPicture> Desk::look()
{
    // What is no command is answered with its own text: all before it has been said by then.
    const QByteArray mark = "mark-" + QByteArray::number(++mark_);
    for (const auto &simulator : simulators_) {
        simulator->said.clear();
        type(*simulator, "state");
        type(*simulator, mark);
    }
    const auto isThere = [&] {
        return std::all_of(simulators_.begin(), simulators_.end(),
                           [&](const auto &each) { return each->said.contains(mark); });
    };
    QList<SwitchPicture> seen;
    if (!waitUntil([&] { return isThere() || hasEnded(); }, longestAnswer) || hasEnded())
        return seen;
    for (const auto &simulator : simulators_)
        seen += picturesIn(simulator->said.left(simulator->said.indexOf(mark)));
    pictures_ = seen;
    return seen;
}

int Desk::unitAt(const QString &portOrAddress) const
{
    for (int unit = 1; unit <= 2; ++unit) {
        if (portOrAddress == portPath(folder_, unit))
            return unit;
    }
    // Each module keeps to addresses of its own parity: 192.0.2.7, 9 and 11, and 8, 10 and 12.
    const int last = portOrAddress.section(QLatin1Char('.'), 3, 3).toInt();
    return last == 0 ? 0 : (last % 2 == 1 ? 1 : 2);
}

void Desk::noteTrouble()
{
    sinceTrouble_.start();
    if (onTrouble)
        onTrouble();
}

bool Desk::hasFault() const
{
    return !keptFault_.isEmpty() || std::any_of(simulators_.begin(), simulators_.end(),
                                                [](const auto &each) { return each->hasFault; });
}

bool Desk::isUnwell() const
{
    return hasFault() || (sinceTrouble_.isValid() && sinceTrouble_.elapsed() < lastingTrouble);
}

bool Desk::hasEnded() const
{
    return std::any_of(simulators_.begin(), simulators_.end(), [](const auto &each) {
        return each->process.state() == QProcess::NotRunning;
    });
}

void Desk::readReports(Simulator &simulator)
{
    const auto at = std::find_if(simulators_.begin(), simulators_.end(),
                                 [&](const auto &each) { return each.get() == &simulator; });
    QByteArray &rest = reports_[at - simulators_.begin()];
    rest += simulator.process.readAllStandardError();
    sinceReport_.start();
    for (qsizetype end = rest.indexOf('\n'); end >= 0; end = rest.indexOf('\n')) {
        const QByteArray line = rest.left(end);
        rest.remove(0, end + 1);
        take(simulator, line);
    }
}

/// "switch: command //c3", "switch 2: rejected //c9: the number must be 1 to 4", "module 1:
/// search", "module: frame rejected: the checksum is 03, not 02"
void Desk::take(const Simulator &simulator, const QByteArray &line)
{
    const qsizetype colon = line.indexOf(": ");
    const QByteArrayList who = line.left(colon).split(' ');
    const QByteArray what = line.mid(colon + 2);
    DeskEvent event;
    event.unit = simulator.unit != 0 ? simulator.unit : who.value(1).toInt();
    if (who.first() == "switch" && what.startsWith("command ")) {
        event.kind = DeskEvent::Kind::Command;
        event.text = what.mid(8);
        noteSpeech(simulator, event.text);
        if (event.text == "//R" || event.text == "//F")
            noteTrouble();
    } else if (who.first() == "switch" && what.startsWith("rejected ")) {
        const qsizetype end = what.lastIndexOf(": ");
        event.kind = DeskEvent::Kind::Rejected;
        event.text = what.mid(9, end - 9);
        event.reason = what.mid(end + 2);
    } else if (who.first() == "module") {
        const bool isPlain = !what.contains("reject") && !what.contains("refused") &&
                             !what.contains("while") && !what.contains("wrong") &&
                             !what.contains("without") && !what.contains("cannot");
        event.kind = isPlain ? DeskEvent::Kind::ModuleRequest : DeskEvent::Kind::ModuleRejected;
        event.text = what;
        event.reason = what;
        if (what.startsWith("commit") || what == "restarted")
            noteTrouble();
    }
    if (onEvent)
        onEvent(event);
}

/// The answers to commands go out one after another.
void Desk::noteSpeech(const Simulator &simulator, const QByteArray &command)
{
    const int bytes = command == "//rl" ? 500 : 100; // and somewhat less
    const qint64 pieces = simulator.chunk > 0 ? bytes / simulator.chunk : 0;
    speakingUntil_ =
        std::max(speakingUntil_, clock_.elapsed()) + simulator.delay + pieces * (chunkGap + 1);
}
