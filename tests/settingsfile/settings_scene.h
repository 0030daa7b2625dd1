#pragma once

#include "layout/grid_bench.h"
#include "layout/layout_submission.h"
#include "log/event_log.h"
#include "mouse/mouse_settings.h"
#include "settingsfile/settings_file.h"
#include "settingsfile/settings_file_handler.h"
#include "support/dialog_recorder.h"
#include "support/link_bench.h"

#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

/// Stands in for the main window, whose slots the timers call.
class SettingsWindow : public QWidget
{
    Q_OBJECT

public:
    std::function<void()> secondPart;

public Q_SLOTS:
    void load_second_part_of_settings() { secondPart(); }
    void refresh_UI() {}
};

/// Everything that a settings file is made from and applied to, without the main window. Every
/// combo sends "echo" when it changes while the handlers are armed.
class SettingsScene
{
public:
    explicit SettingsScene(std::chrono::milliseconds secondPart = std::chrono::milliseconds(30))
        : mouse(window,
                {{&resolutions[0], &resolutions[1], &resolutions[2], &resolutions[3]},
                 {&labels[0], &labels[1], &labels[2], &labels[3]},
                 &setting,
                 &name,
                 &x,
                 &y},
                bench.link, bench.controls, {std::chrono::milliseconds(20)}),
          file(
              window, {&kmControl, &usbControl, &activePorts, &cursorRolling, &mouseMode},
              {handler, bench.link, bench.controls, mouse, table.grid, layout},
              [this] { return kmType; }, [this] { ++plainReads; }, {secondPart},
              {[this] {
                   if (whileSaving)
                       whileSaving();
                   return saveName;
               },
               [this] {
                   if (whileOpening)
                       whileOpening();
                   return openName;
               }})
    {
        window.secondPart = [this] { file.loadSecondPart(); };
        fill(kmControl, {"1", "2", "3", "4"});
        fill(usbControl, {"1", "2", "3", "4"});
        fill(activePorts, {"Ports 1 and 2", "Ports 1, 2, and 3", "Ports 1, 2, 3, and 4"});
        fill(cursorRolling, {"Off", "On"});
        fill(mouseMode, {"Absolute Mode", "Relative Mode"});
        fill(setting, {"C1", "C2", "C3", "C4"});
        for (QComboBox &combo : resolutions)
            fill(combo, {"1080p", "4K", "2K", "3840x1080", "5760x1080", "7680x1080", "1920x2160",
                         "1920x3240", "1920x4320"});
        activePorts.setCurrentIndex(2);
        bench.open();
    }

    /// Four custom settings and everything else away from its start, as a read-back would show it.
    void showExample()
    {
        kmControl.setCurrentIndex(2);
        usbControl.setCurrentIndex(1);
        cursorRolling.setCurrentIndex(1);
        mouseMode.setCurrentIndex(1);
        bench.controls.setBeepButtonsEnabled(false, true);
        const char *const values[] = {"100 250 OFFICE", "120 080 DESK", "001 500 HOME",
                                      "300 300 LAB"};
        for (int at = 0; at < 4; ++at) {
            mouse.setCustomEntry(at, values[at], 8);
            mouse.setDataLabel(at, values[at]);
        }
        mouse.setChannelResolutions("3 10 1 13");
        table.grid.place({{{1, 0}, {1, 1}, {2, 1}, {3, 1}}}, 2);
    }

    QString path(const char *fileName) const
    {
        return folder.filePath(QString::fromLatin1(fileName));
    }

    /// Writes a file into the scene's folder and makes it the one that the user opens.
    void offer(const QByteArray &contents)
    {
        openName = path("offered.txt");
        QFile offered(openName);
        if (!offered.open(QIODevice::WriteOnly) || offered.write(contents) != contents.size())
            qFatal("the test's file cannot be written");
    }

    static QByteArray contentsOf(const QString &path)
    {
        QFile written(path);
        return written.open(QIODevice::ReadOnly) ? written.readAll() : QByteArray("no file");
    }

    static QByteArray log() { return contentsOf(eventLogPath()); }

    QTemporaryDir folder;
    DialogRecorder user;
    SettingsWindow window;
    QPushButton load;
    QPushButton refresh;
    LinkBench bench{{}, {&load, &refresh}};
    GridBench table;
    QComboBox kmControl;
    QComboBox usbControl;
    QComboBox activePorts;
    QComboBox cursorRolling;
    QComboBox mouseMode;
    QComboBox resolutions[4];
    QComboBox setting;
    QLabel labels[4];
    QLineEdit name;
    QLineEdit x;
    QLineEdit y;
    QString saveName;
    QString openName;
    std::function<void()> whileSaving;  ///< what happens while the save dialog is shown
    std::function<void()> whileOpening; ///< what happens while the open dialog is shown
    std::string kmType = "orca";
    int plainReads = 0;
    SettingsFileHandler handler;
    MouseSettings mouse;
    LayoutSubmission layout{table.grid, bench.link, activePorts};
    SettingsFile file;

private:
    void fill(QComboBox &combo, std::initializer_list<const char *> items)
    {
        for (const char *item : items)
            combo.addItem(QString::fromLatin1(item));
        QObject::connect(&combo, &QComboBox::currentIndexChanged, &combo, [this] {
            if (bench.controls.areHandlersArmed())
                bench.link.forwardCommand("echo");
        });
    }
};
