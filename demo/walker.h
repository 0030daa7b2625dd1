#pragma once

#include "app/main_window.h"
#include "support/dialog_recorder.h"

#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QTest>

/// A patient user in front of the real window: clicks, types, waits until it can see what it waits
/// for, and takes pictures. What does not happen ends the process with status 1: it may be waited
/// for inside a modal dialog, whose event loop no exception may pass.
class Walker
{
public:
    explicit Walker(const QDir &pictures);

    [[noreturn]] static void fail(const char *why, const char *what);

    /// Saves what `widget` looks like as NAME.png and prints the path.
    void picture(QWidget &widget, const QString &name);

    /// A picture of `dialog` and then a click on its button.
    void answer(QDialog &dialog, const QString &pictureName, const char *button);

    void click(const char *button);
    /// Presses the cursor keys until the combo box shows item `index`.
    void choose(const char *combo, int index);
    void type(const char *lineEdit, const QString &text);

    /// Waits until `seen` is true, at most ten seconds.
    void waitUntil(const char *what, const std::function<bool()> &seen);
    /// Waits until a notice with `text` has come, after those that were waited for before.
    void waitForNotice(const QString &text);
    void expect(const char *what, bool holds);

    /// Prints "name: value" as the window shows it.
    void tell(const char *name, const QString &value);

    template <typename Widget>
    Widget &find(const char *name) const
    {
        return child<Widget>(*window_, name);
    }
    template <typename Widget>
    static Widget &child(const QWidget &parent, const char *name)
    {
        auto *found = parent.findChild<Widget *>(QString::fromLatin1(name));
        if (!found)
            fail("there is no ", name);
        return *found;
    }

    bool isGreen() const;
    int index(const char *combo) const { return find<QComboBox>(combo).currentIndex(); }

    void setWindow(KM_Configuration_Tool_Norvik &window) { window_ = &window; }
    KM_Configuration_Tool_Norvik &window() { return *window_; }
    DialogRecorder &dialogs() { return dialogs_; }
    const QDir &folder() const { return pictures_; }

private:
    QDir pictures_;
    KM_Configuration_Tool_Norvik *window_ = nullptr;
    DialogRecorder dialogs_;
    int pictureNumber_ = 0;
    qsizetype noticesAwaited_ = 0;
};
