#pragma once

#include <QMessageBox>
#include <QString>

/// Notice boxes: how the program speaks to its user, and the one handler of everything that throws.

/// The window over which notices stand from now on; none with null. A modal dialog that is shown
/// over it counts for more. No notice keeps the program alive when that window is closed.
void setNoticeWindow(QWidget *window);

/// Dresses `box` as a notice (title "Information" whatever the icon, program icon, "Segoe UI" 12
/// points, one OK button, `text` as plain text) and shows it without blocking any window.
/// The caller owns the box.
void showNotice(const QString &text, QMessageBox::Icon icon, QMessageBox &box);

/// Shows the same notice on a box of its own and returns when the user has closed it. It blocks
/// all windows of the program meanwhile.
void showNoticeModal(const QString &text, QMessageBox::Icon icon);

/// A warning box of the system's standard look with its own title, modal, with an OK button. Used
/// for the few messages that end the program or stop a read-back for good.
void showWarningBox(const QString &title, const QString &text);

/// Ends the process with exit status 1 after a warning box titled " " (one blank) with `text`.
/// Goes through std::exit: the main window is not destroyed and the log gets no stop marker.
[[noreturn]] void warnAndExit(const QString &text);

/// Writes `message` (ASCII) to the event log and shows it in a modal notice with the warning icon.
void reportFailure(const char *message);

/// Runs `work` and reports `message` if it throws anything. Returns whether it came through.
/// Every slot whose work can throw goes through here: no exception reaches Qt.
template <typename Work>
bool guarded(const char *message, Work &&work)
{
    try {
        work();
        return true;
    } catch (...) {
        reportFailure(message);
        return false;
    }
}
