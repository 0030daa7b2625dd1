#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QLineEdit>
#include <QList>
#include <QMessageBox>
#include <QPointer>
#include <QSet>
#include <QStringList>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <functional>

/// What a test saw of one message box.
struct RecordedBox
{
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    bool modal = false;
    QFont font;
    QMessageBox::StandardButtons buttons;
};

/// Sits in for the user while a test runs: notes every message box and presses one of its buttons,
/// and hands every other dialog, once each time it appears, to the answer that the test has given
/// for its class. Works from inside the nested event loops of modal dialogs.
class DialogRecorder : public QObject
{
public:
    /// `button` is the one that is pressed in message boxes. A box that lacks it is closed, and the
    /// test that is running fails.
    explicit DialogRecorder(QMessageBox::StandardButton button = QMessageBox::Ok) : button_(button)
    {
        connect(&poll_, &QTimer::timeout, this, &DialogRecorder::look);
        poll_.start(5);
    }

    /// The message boxes in the order in which they appeared.
    const QList<RecordedBox> &seen() const { return seen_; }
    void forget() { seen_.clear(); }

    /// What they said.
    QStringList texts() const
    {
        QStringList texts;
        for (const RecordedBox &box : seen_)
            texts.append(box.text);
        return texts;
    }

    bool sawText(const QString &text) const { return texts().contains(text); }

    /// `answer` is called with each dialog of class `Dialog` that appears. The answer that was
    /// given last for a class counts.
    template <typename Dialog>
    void on(std::function<void(Dialog &)> answer)
    {
        answers_.prepend(answerOf<Dialog>(std::move(answer), false));
    }

    /// `answer` is called with the next modal dialog of class `Dialog`, and then no more.
    template <typename Dialog>
    void once(std::function<void(Dialog &)> answer)
    {
        answers_.prepend(answerOf<Dialog>(std::move(answer), true));
    }

    /// Whether a dialog that is to be answered once has not come yet.
    bool isWaiting() const
    {
        return std::any_of(answers_.cbegin(), answers_.cend(),
                           [](const Answer &answer) { return answer.once; });
    }

    /// Looks away, and looks again: while it rests it does nothing at all, for measurements.
    void rest() { poll_.stop(); }
    void wake() { poll_.start(); }

    /// From now on message boxes are noted and stay open.
    void leaveBoxesOpen() { leavesBoxesOpen_ = true; }

    /// From now on message boxes that wait for no answer are neither noted nor closed.
    void passOverModelessBoxes() { passesOverModelessBoxes_ = true; }

    /// Called with every message box before its button is pressed, for pictures and closer looks.
    void beforeButton(std::function<void(QMessageBox &)> look) { beforeButton_ = std::move(look); }

private:
    struct Answer
    {
        std::function<bool(QDialog &)> isFor;
        std::function<void(QDialog &)> run;
        bool once;
    };

    template <typename Dialog>
    static Answer answerOf(std::function<void(Dialog &)> answer, bool once)
    {
        return {[once](QDialog &dialog) {
                    return dynamic_cast<Dialog *>(&dialog) != nullptr &&
                           (!once || dialog.isModal());
                },
                [answer = std::move(answer)](QDialog &dialog) {
                    answer(dynamic_cast<Dialog &>(dialog));
                },
                once};
    }

    QList<Answer>::iterator answerFor(QDialog &dialog)
    {
        return std::find_if(answers_.begin(), answers_.end(),
                            [&](const Answer &answer) { return answer.isFor(dialog); });
    }

    bool isWanted(QDialog &dialog)
    {
        if (qobject_cast<QMessageBox *>(&dialog))
            return dialog.isModal() || !passesOverModelessBoxes_;
        return answerFor(dialog) != answers_.end();
    }

    void look()
    {
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget *window : windows) {
            auto *dialog = qobject_cast<QDialog *>(window);
            if (!dialog || !dialog->isVisible() || handled_.contains(dialog) || !isWanted(*dialog))
                continue;
            handled_.insert(dialog);
            dialog->installEventFilter(this);
            // Not from within the timer: it does not fire again before its slot has returned, and
            // an answer may run into the next dialog.
            QMetaObject::invokeMethod(
                this,
                [this, shown = QPointer<QDialog>(dialog)] {
                    if (shown)
                        handle(*shown);
                },
                Qt::QueuedConnection);
        }
    }

    /// A dialog that hides may come again, and so may another one at its address.
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Hide)
            handled_.remove(watched);
        return false;
    }

    void handle(QDialog &dialog)
    {
        if (auto *box = qobject_cast<QMessageBox *>(&dialog)) {
            seen_.append({box->windowTitle(), box->text(), box->icon(), box->isModal(), box->font(),
                          box->standardButtons()});
            if (beforeButton_)
                beforeButton_(*box);
            if (leavesBoxesOpen_)
                return;
            press(*box);
            return;
        }
        const auto found = answerFor(dialog);
        if (found == answers_.end())
            return;
        const Answer answer = *found;
        if (answer.once)
            answers_.erase(found);
        answer.run(dialog);
    }

    void press(QMessageBox &box) const
    {
        if (QAbstractButton *button = box.button(button_)) {
            button->click();
            return;
        }
        if (QTest::currentTestFunction())
            QTest::qFail("the message box lacks the button to press", __FILE__, __LINE__);
        box.close();
    }

    QTimer poll_;
    QList<RecordedBox> seen_;
    QSet<QObject *> handled_;
    QList<Answer> answers_;
    std::function<void(QMessageBox &)> beforeButton_;
    QMessageBox::StandardButton button_;
    bool leavesBoxesOpen_ = false;
    bool passesOverModelessBoxes_ = false;
};

/// Clicks the button with this object name with the mouse, as a user would; fails the test when
/// there is no such button or it is disabled.
inline void clickButton(QWidget &window, const char *objectName)
{
    auto *button = window.findChild<QAbstractButton *>(QString::fromLatin1(objectName));
    QVERIFY2(button != nullptr, objectName);
    QVERIFY2(button->isEnabled(), objectName);
    QTest::mouseClick(button, Qt::LeftButton);
}

/// Types into the line edit with this object name, in place of what stands there.
inline void typeInto(QWidget &window, const char *objectName, const QString &text)
{
    auto *edit = window.findChild<QLineEdit *>(QString::fromLatin1(objectName));
    QVERIFY2(edit != nullptr, objectName);
    edit->clear();
    QTest::keyClicks(edit, text);
}
