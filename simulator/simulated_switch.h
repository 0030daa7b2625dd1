#pragma once

#include "simulator/switch_model.h"

#include <QObject>
#include <QTimer>
#include <chrono>
#include <vector>

/// The switch as the faces share it: the model, and the clock for its restarts
/// and for what it says unasked.
class SimulatedSwitch : public QObject
{
    Q_OBJECT

public:
    /// `restartTime`: how long it is deaf and silent after a reset; 0: not at all.
    explicit SimulatedSwitch(std::chrono::milliseconds restartTime, QObject *parent = nullptr);

    /// As SwitchModel::receive. The answer goes to the asking line alone.
    std::vector<Piece> receive(const QByteArray &bytes, int line);
    /// Somebody presses the front panel; announced to all lines.
    void press(int channel);
    /// `bytes` bytes of text out of the blue, to all lines.
    void flood(int bytes);
    void reset();
    void setFaults(const SwitchFaults &faults);

    const SwitchModel &model() const { return model_; }

Q_SIGNALS:
    /// Said unasked: every line gets it.
    void announced(const std::vector<Piece> &pieces);
    void happened(const SwitchEvent &event);

private:
    SwitchModel model_;
    QTimer unsolicited_;
    QTimer restart_;
};
