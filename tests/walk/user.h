#pragma once

#include "command_watch.h"
#include "dialog_answers.h"
#include "steps.h"

#include "app/main_window.h"

#include <QDir>
#include <QSet>
#include <memory>

/// The user of a walk: the hands at the window's controls. What a control that is touched may send
/// is announced to the watch before the window does it.
class User
{
public:
    User(Desk &desk, CommandWatch &watch, DialogAnswers &answers, const QDir &folder,
         const WindowSettings &settings = quickSettings());
    /// The program's times, a tenth of what they are.
    static WindowSettings quickSettings();

    /// A window, with the wizard that its start runs.
    void openWindow();
    /// Ends the window with whatever is under way.
    void closeWindow() { window_.reset(); }
    KM_Configuration_Tool_Norvik &window() const { return *window_; }
    bool hasWindow() const { return window_ != nullptr; }

    /// Does one step, which may take until its dialogs have been answered. What the user cannot get
    /// at (it is disabled) is left out; whether it was done.
    bool act(const Step &step);

    /// Clicks a button if the user can.
    bool press(const char *button);
    /// Picks an item from a list if the user can.
    bool choose(const char *combo, int index);
    bool isEnabled(const char *widget) const;
    bool isGreen() const;
    /// The switch that the window says it is set to; 0 when it says none.
    int chosenUnit() const;
    bool isOnNetwork() const;
    QString moduleAddress() const;
    QString terminal() const;
    /// The terminal's last line that is not empty.
    QString lastLine() const;
    void clearTerminal();

private:
    template <typename Widget>
    Widget &find(const char *name) const;

    bool doStep(const Step &step);
    void watchControls();
    void announceChoice(const QByteArray &combo, int index);
    void announceButton(const QByteArray &button);
    void announceFile(const QString &name);
    bool bringUp(QWidget &widget);
    bool setCustom(const Step &step);
    bool move(const Step &step);
    bool drop(const Step &step);
    bool pressKeys(const Step &step);

    Desk &desk_;
    CommandWatch &watch_;
    DialogAnswers &answers_;
    QDir folder_;
    WindowSettings settings_;
    QSet<QByteArray> changed_; ///< lists that show another item since the step began
    QString file_;             ///< that the file dialog of this step is given
    std::unique_ptr<KM_Configuration_Tool_Norvik> window_;
};
