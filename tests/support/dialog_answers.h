#pragma once

#include <QDialog>
#include <QList>
#include <QMessageBox>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <functional>

/// For tests of code that runs modal dialogs: they block the test, so whatever is to happen in
/// them is arranged before. Everything here looks for QApplication::activeModalWidget() from a
/// timer and acts when the dialog is there.

/// A message box as the user saw it.
struct SeenBox
{
    QString title;
    QString text;
    QMessageBox::Icon icon;
    QMessageBox::StandardButtons buttons;
};

/// While it lives, notes every modal message box and presses one of its buttons.
class BoxAnswers : public QObject
{
    Q_OBJECT

public:
    explicit BoxAnswers(QMessageBox::StandardButton answer = QMessageBox::Ok);

    /// What was answered so far, oldest first.
    const QList<SeenBox> &seen() const { return seen_; }
    QStringList texts() const;
    void forget() { seen_.clear(); }

    /// Runs on each box before its button is pressed.
    void setInspector(std::function<void(QMessageBox &box)> inspector);

private:
    void look();

    QMessageBox::StandardButton answer_;
    QList<SeenBox> seen_;
    std::function<void(QMessageBox &box)> inspector_;
    QTimer timer_;
};

/// Waits for a modal dialog of a type, then runs an action on it, once.
template <typename Dialog>
class DialogAction : public QObject
{
public:
    explicit DialogAction(std::function<void(Dialog &dialog)> action) : action_(std::move(action))
    {
        connect(&timer_, &QTimer::timeout, this, &DialogAction::look);
        timer_.start(1);
    }

    /// Whether the dialog came and the action began.
    bool hasRun() const { return hasRun_; }

private:
    void look();

    std::function<void(Dialog &dialog)> action_;
    bool hasRun_ = false;
    QTimer timer_;
};

/// The program's active modal widget, or null.
QWidget *activeModalDialog();

/// Clicks the button with this object name with the mouse, as a user would; fails the test when
/// there is no such button or it is disabled.
void clickButton(QWidget &window, const char *objectName);

/// Types into the line edit with this object name, in place of what stands there.
void typeInto(QWidget &window, const char *objectName, const QString &text);

template <typename Dialog>
void DialogAction<Dialog>::look()
{
    auto *dialog = qobject_cast<Dialog *>(activeModalDialog());
    if (dialog == nullptr || !dialog->isVisible())
        return;
    timer_.stop();
    hasRun_ = true;
    action_(*dialog);
}
