#pragma once

#include "app/main_window.h"
#include "log/event_log.h"
#include "support/dialog_recorder.h"

#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTextEdit>

/// The main window with the delays shortened and somebody who answers its dialogs. What stands at
/// the other end of the link, a cable or a network, is for those who derive from it.
class WindowBench
{
public:
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
        settings.generalSettings.networkReadAfterReset = milliseconds(60);
        settings.settingsFile.secondPart = milliseconds(150);
        return settings;
    }

    /// Constructs and shows the window, which runs the wizard.
    void start(const WindowSettings &settings = quick(),
               const std::optional<SettingsFile::Dialogs> &fileDialogs = std::nullopt)
    {
        window = std::make_unique<KM_Configuration_Tool_Norvik>(nullptr, settings, fileDialogs);
        window->show();
    }

    /// Waits until an answer has been applied: the custom settings show.
    bool waitForRead() const
    {
        return QTest::qWaitFor(
            [this] { return label("label_Custom_1")->text() == QStringLiteral("100 250 OFFICE"); });
    }

    template <typename Widget = QComboBox>
    Widget *find(const char *name) const
    {
        auto *found = window->findChild<Widget *>(QString::fromLatin1(name));
        if (!found)
            qFatal("the window has no %s", name);
        return found;
    }
    QComboBox *combo(const char *name) const { return find(name); }
    QPushButton *button(const char *name) const { return find<QPushButton>(name); }
    QLabel *label(const char *name) const { return find<QLabel>(name); }
    QString terminal() const { return find<QTextEdit>("textEdit_Main_Terminal")->toPlainText(); }

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

    /// Checks the method in the wizard's first dialog and goes on.
    static void choose(Select_connection_method_Dialog &dialog, const char *radioButton)
    {
        dialog.findChild<QRadioButton *>(QString::fromLatin1(radioButton))->setChecked(true);
        press(dialog, "pushButton_continue");
    }
    static void press(QWidget &dialog, const char *button)
    {
        dialog.findChild<QPushButton *>(QString::fromLatin1(button))->click();
    }

    DialogRecorder user;
    std::unique_ptr<KM_Configuration_Tool_Norvik> window;
};
