#pragma once

#include "chance.h"
#include "desk.h"

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QString>
#include <QTimer>
#include <functional>

class Change_setting_for_USR_Dialog;
class Credentials_Dialog;
class IP_Settings_Dialog;
class QDialog;
class QFileDialog;
class QMessageBox;
class QWidget;
class Select_connection_method_Dialog;
class Select_hardware_Dialog;
class Yes_No_Dialog;

/// Answers whatever dialog comes at random: after a while, with any of its buttons, with right and
/// wrong texts. The same step is answered in the same way each time. Works from inside the event
/// loops of modal dialogs.
class DialogAnswers : public QObject
{
public:
    DialogAnswers(Road road, const Desk &desk, const QDir &folder);

    /// From now on answers follow `seed`.
    void follow(std::uint64_t seed);
    /// The name that the next file dialog is given.
    void setFile(const QString &name) { file_ = name; }
    /// While it is obliging every answer is at once and the one that leads on.
    void setObliging(bool obliging) { isObliging_ = obliging; }
    bool isObliging() const { return isObliging_; }

    /// Whether a dialog stands between the user and the window.
    static bool blocksWindow();
    /// The title and text of one dialog that is shown; empty when there is none.
    static QString shown();

    int answered() const { return answered_; }
    int fileDialogs() const { return fileDialogs_; }
    /// Told of a message box that ends the program, before it does.
    std::function<void(const QString &text)> onEnd;
    /// Told how each dialog was answered.
    std::function<void(const QString &text)> onAnswer;

private:
    struct Meeting
    {
        QElapsedTimer since;
        int wait = 0; ///< ms
        bool isQueued = false;
    };

    void look();
    void answer(QDialog &dialog);
    void answerBox(QMessageBox &box);
    void answerFile(QFileDialog &dialog);
    void answerMethod(Select_connection_method_Dialog &dialog);
    void answerHardware(Select_hardware_Dialog &dialog);
    void answerLogin(Credentials_Dialog &dialog);
    void answerAddresses(IP_Settings_Dialog &dialog);
    void answerAdmin(Change_setting_for_USR_Dialog &dialog);
    void answerQuestion(Yes_No_Dialog &dialog);

    bool likes(int share) { return isObliging_ || chance_.percent(share); }
    void press(QWidget &dialog, const char *button);
    static void type(QWidget &dialog, const char *field, const QString &text);
    void give(const QString &what);

    const Road road_;
    const Desk &desk_;
    QDir folder_;
    Chance chance_{0};
    QTimer poll_;
    QHash<QDialog *, Meeting> meetings_;
    QString file_;
    bool isObliging_ = false;
    int answered_ = 0;
    int fileDialogs_ = 0;
    int answersOfStep_ = 0;
};
