#pragma once

#include "support/serial_window.h"

#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

/// What the settings file of these tests holds.
inline constexpr char settingsLines[] = "KM Control: //c3\n"
                                        "USB Control: //u4\n"
                                        "Limit Ports: //D3\n"
                                        "Cursor Rolling: //o0\n"
                                        "Buzzer: //B0\n"
                                        "Mouse Mode: //ks\n";

/// A window at one of two switches, with a settings file to load.
struct TwoSwitches : SerialWindow
{
    TwoSwitches()
    {
        qputenv("PELORA_EXTRA_SERIAL_PORTS",
                (cable->path() + QLatin1Char(':') + secondCable.path()).toLocal8Bit());
        QFile file(path());
        if (!file.open(QIODevice::WriteOnly) || file.write(settingsLines) < 0)
            qFatal("the test's file cannot be written");
    }

    QString path() const { return folder.filePath(QStringLiteral("desk.txt")); }

    bool startWithFile(const WindowSettings &settings = quick())
    {
        start(settings,
              SettingsFile::Dialogs{[this] {
                                        ++savesAsked;
                                        return folder.filePath(QStringLiteral("saved.txt"));
                                    },
                                    [this] { return path(); }});
        return waitForRead();
    }

    QTemporaryDir folder;
    PtyPair secondCable;
    ScriptedSwitch second{secondCable};
    int savesAsked = 0;
};

inline bool areDeviceControlsDisabled(const WindowBench &bench)
{
    for (const char *name :
         {"pushButton_Create_Settings_File", "pushButton_Load_Settings_File", "pushButton_Refresh",
          "pushButtonSubmit", "pushButton_Submit_Custom_Mouse_Movement_Settings",
          "pushButton_Factory_Reset", "pushButton_Soft_Reset", "pushButton_ON_Beep",
          "pushButton_OFF_Beep", "pushButton_Mouse_Speed_Settings", "TopologyAndDisplayBtn",
          "pushButton_Admin_Settings"}) {
        if (bench.button(name)->isEnabled())
            return false;
    }
    return !bench.combo("comboBox_KM_Control")->isEnabled() &&
           !bench.combo("comboBox_mouse_movement_resolution_setting_1")->isEnabled();
}

inline bool isDisconnected(const WindowBench &bench)
{
    return !bench.isGreen() && bench.button("pushButton_ON_Connection")->isEnabled() &&
           !bench.button("pushButton_OFF_Connection")->isEnabled() &&
           areDeviceControlsDisabled(bench);
}

/// Lets a timer run out that is longer than every delay of a quick window.
inline void passAllDelays()
{
    bool passed = false;
    QTimer::singleShot(400, qApp, [&] { passed = true; });
    QTRY_VERIFY(passed);
}
