#pragma once

#include "support/scripted_switch.h"
#include "support/window_bench.h"

/// The main window as a user with an RS232 cable meets it.
struct SerialWindow : WindowBench
{
    SerialWindow()
    {
        qputenv("PELORA_EXTRA_SERIAL_PORTS", cable->path().toLocal8Bit());
        user.on<Select_connection_method_Dialog>(
            [this](Select_connection_method_Dialog &dialog) { choose(dialog, method); });
    }

    ~SerialWindow()
    {
        window.reset();
        qunsetenv("PELORA_EXTRA_SERIAL_PORTS");
    }

    /// Starts and waits until the switch's configuration stands in the controls.
    bool startAndRead(const WindowSettings &settings = quick())
    {
        start(settings);
        return waitForRead();
    }

    void unplug()
    {
        device->leave();
        cable->pull();
    }

    std::unique_ptr<PtyPair> cable = std::make_unique<PtyPair>();
    std::unique_ptr<ScriptedSwitch> device = std::make_unique<ScriptedSwitch>(*cable);
    const char *method = "radioButton_RS232";
};
