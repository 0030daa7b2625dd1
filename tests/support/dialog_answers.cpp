#include "tests/support/dialog_answers.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QTest>

QWidget *activeModalDialog()
{
    return QApplication::activeModalWidget();
}

BoxAnswers::BoxAnswers(QMessageBox::StandardButton answer) : answer_(answer)
{
    connect(&timer_, &QTimer::timeout, this, &BoxAnswers::look);
    timer_.start(1);
}

QStringList BoxAnswers::texts() const
{
    QStringList texts;
    for (const SeenBox &box : seen_)
        texts.append(box.text);
    return texts;
}

void BoxAnswers::setInspector(std::function<void(QMessageBox &box)> inspector)
{
    inspector_ = std::move(inspector);
}

void BoxAnswers::look()
{
    auto *box = qobject_cast<QMessageBox *>(activeModalDialog());
    if (box == nullptr || !box->isVisible())
        return;
    seen_.append({box->windowTitle(), box->text(), box->icon(), box->standardButtons()});
    if (inspector_) {
        timer_.stop(); // an inspector that lets events through must not be called again by them
        inspector_(*box);
        timer_.start();
    }
    QAbstractButton *button = box->button(answer_);
    if (button == nullptr) {
        QTest::qFail("the message box lacks the button to press", __FILE__, __LINE__);
        box->reject();
        return;
    }
    button->click();
}

void clickButton(QWidget &window, const char *objectName)
{
    auto *button = window.findChild<QAbstractButton *>(QString::fromLatin1(objectName));
    QVERIFY2(button != nullptr, objectName);
    QVERIFY2(button->isEnabled(), objectName);
    QTest::mouseClick(button, Qt::LeftButton);
}

void typeInto(QWidget &window, const char *objectName, const QString &text)
{
    auto *edit = window.findChild<QLineEdit *>(QString::fromLatin1(objectName));
    QVERIFY2(edit != nullptr, objectName);
    edit->clear();
    QTest::keyClicks(edit, text);
}
