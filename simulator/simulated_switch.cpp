#include "simulator/simulated_switch.h"

SimulatedSwitch::SimulatedSwitch(std::chrono::milliseconds restartTime, QObject *parent)
    : QObject(parent)
{
    model_.setRestartsAfterReset(restartTime.count() > 0);
    restart_.setSingleShot(true);
    restart_.setTimerType(Qt::PreciseTimer);
    restart_.setInterval(restartTime);
    connect(&restart_, &QTimer::timeout, this, [this] { model_.finishRestart(); });
    model_.onEvent = [this](const SwitchEvent &event) { Q_EMIT happened(event); };
    connect(&unsolicited_, &QTimer::timeout, this,
            [this] { Q_EMIT announced(model_.pressNext()); });
}

std::vector<Piece> SimulatedSwitch::receive(const QByteArray &bytes, int line)
{
    std::vector<Piece> answers = model_.receive(bytes, line);
    if (model_.isRestarting() && !restart_.isActive())
        restart_.start();
    return answers;
}

void SimulatedSwitch::press(int channel)
{
    Q_EMIT announced(model_.press(channel));
}

void SimulatedSwitch::flood(int bytes)
{
    Q_EMIT announced(model_.flood(bytes));
}

void SimulatedSwitch::reset()
{
    model_.resetState();
}

void SimulatedSwitch::setFaults(const SwitchFaults &faults)
{
    const bool sameRhythm = faults.unsolicitedEvery == model_.faults().unsolicitedEvery;
    model_.setFaults(faults);
    if (sameRhythm)
        return;
    if (faults.unsolicitedEvery.count() > 0)
        unsolicited_.start(faults.unsolicitedEvery);
    else
        unsolicited_.stop();
}
