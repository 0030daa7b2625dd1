#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QList>
#include <QMessageBox>
#include <QPointer>
#include <QSet>
#include <QTimer>
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

/// Sits in for the user while a test runs: notes every message box and presses its OK, and hands
/// every other dialog, once each time it appears, to the answer that the test has given for its
/// class. Works from inside the nested event loops of modal dialogs.
class DialogRecorder : public QObject
{
public:
    DialogRecorder()
    {
        connect(&poll_, &QTimer::timeout, this, &DialogRecorder::look);
        poll_.start(5);
    }

    /// The message boxes in the order in which they appeared.
    const QList<RecordedBox> &seen() const { return seen_; }

    bool sawText(const QString &text) const
    {
        for (const RecordedBox &box : seen_) {
            if (box.text == text)
                return true;
        }
        return false;
    }

    /// `answer` is called with each dialog of class `Dialog` that appears.
    template <typename Dialog>
    void on(std::function<void(Dialog &)> answer)
    {
        answers_.append([answer = std::move(answer)](QDialog &dialog) {
            auto *wanted = dynamic_cast<Dialog *>(&dialog);
            if (wanted)
                answer(*wanted);
            return wanted != nullptr;
        });
    }

    /// Leaves dialogs of class `Dialog` to somebody else from now on.
    template <typename Dialog>
    void ignore()
    {
        answers_.prepend(
            [](QDialog &dialog) { return dynamic_cast<Dialog *>(&dialog) != nullptr; });
    }

    /// From now on message boxes are noted and stay open.
    void leaveBoxesOpen() { leavesBoxesOpen_ = true; }

    /// Called with every message box before its OK is pressed, for pictures and closer looks.
    void beforeOk(std::function<void(QMessageBox &)> look) { beforeOk_ = std::move(look); }

private:
    void look()
    {
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget *window : windows) {
            auto *dialog = qobject_cast<QDialog *>(window);
            if (!dialog || !dialog->isVisible() || handled_.contains(dialog))
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
            if (beforeOk_)
                beforeOk_(*box);
            if (leavesBoxesOpen_)
                return;
            if (QAbstractButton *ok = box->button(QMessageBox::Ok))
                ok->click();
            else
                box->close();
            return;
        }
        for (const auto &answer : std::as_const(answers_)) {
            if (answer(dialog))
                return;
        }
    }

    QTimer poll_;
    QList<RecordedBox> seen_;
    QSet<QObject *> handled_;
    QList<std::function<bool(QDialog &)>> answers_;
    std::function<void(QMessageBox &)> beforeOk_;
    bool leavesBoxesOpen_ = false;
};
