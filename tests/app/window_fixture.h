#pragma once

#include "app/main_window.h"
#include "log/event_log.h"
#include "support/dialog_recorder.h"
#include "support/scripted_switch.h"

#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTextEdit>

/// The main window as a user with an RS232 cable meets it, with the delays shortened.
struct SerialWindow
{
    static WindowSettings quick()
    {
        using std::chrono::milliseconds;
        WindowSettings settings;
        settings.readBack.scrollToEnd = milliseconds(5);
        settings.readBack.takeOver = milliseconds(60);
        settings.readBack.layoutLoad = milliseconds(60);
        settings.readBack.refreshDisable = milliseconds(10);
        settings.readBack.refreshEnable = milliseconds(150);
        settings.generalSettings.serialReadAfterReset = milliseconds(80);
        return settings;
    }

    SerialWindow()
    {
        qputenv("PELORA_EXTRA_SERIAL_PORTS", cable->path().toLocal8Bit());
        user.on<Select_connection_method_Dialog>([](Select_connection_method_Dialog &dialog) {
            dialog.findChild<QRadioButton *>(QStringLiteral("radioButton_RS232"))->setChecked(true);
            dialog.findChild<QPushButton *>(QStringLiteral("pushButton_continue"))->click();
        });
    }

    ~SerialWindow()
    {
        window.reset();
        qunsetenv("PELORA_EXTRA_SERIAL_PORTS");
    }

    /// Constructs and shows the window, which runs the wizard.
    void start(const WindowSettings &settings = quick())
    {
        window = std::make_unique<KM_Configuration_Tool_Norvik>(nullptr, settings);
        window->show();
    }

    /// Starts and waits until the switch's configuration stands in the controls.
    bool startAndRead(const WindowSettings &settings = quick())
    {
        start(settings);
        return waitForRead();
    }

    /// Waits until an answer has been applied: the custom settings show.
    bool waitForRead()
    {
        return QTest::qWaitFor(
            [this] { return label("label_Custom_1")->text() == QStringLiteral("100 250 OFFICE"); });
    }

    QComboBox *combo(const char *name) const { return child<QComboBox>(name); }
    QPushButton *button(const char *name) const { return child<QPushButton>(name); }
    QLabel *label(const char *name) const { return child<QLabel>(name); }
    QString terminal() const { return child<QTextEdit>("textEdit_Main_Terminal")->toPlainText(); }

    bool isGreen() const
    {
        return button("pushButton_Connection_Indicator")
            ->styleSheet()
            .contains(QStringLiteral("green"));
    }

    static QByteArray log()
    {
        QFile file(eventLogPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    void unplug()
    {
        device->leave();
        cable->pull();
    }

    std::unique_ptr<PtyPair> cable = std::make_unique<PtyPair>();
    std::unique_ptr<ScriptedSwitch> device = std::make_unique<ScriptedSwitch>(*cable);
    DialogRecorder user;
    std::unique_ptr<KM_Configuration_Tool_Norvik> window;

private:
    template <typename Widget>
    Widget *child(const char *name) const
    {
        auto *found = window->findChild<Widget *>(QString::fromLatin1(name));
        if (!found)
            qFatal("the window has no %s", name);
        return found;
    }
};
