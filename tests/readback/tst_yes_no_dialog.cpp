#include "readback/yes_no_dialog.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

namespace {
struct Question
{
    QPushButton *button(const char *name)
    {
        return dialog.findChild<QPushButton *>(QLatin1String(name));
    }

    Yes_No_Dialog dialog{QStringLiteral("Perform factory reset?"), QStringLiteral("Confirm"),
                         QStringLiteral("Cancel")};
};
} // namespace

/// The small question with two answers.
class YesNoDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itShowsTheQuestionAndBothAnswers()
    {
        Question q;
        q.dialog.show();
        QCOMPARE(q.dialog.windowTitle(), QStringLiteral("Norvik\u00ae Pelora Utility"));
        QVERIFY(!q.dialog.windowIcon().isNull());
        QCOMPARE(q.dialog.minimumSize(), QSize(312, 100));
        QCOMPARE(q.dialog.maximumSize(), QSize(312, 100));
        auto *question = q.dialog.findChild<QLabel *>(QStringLiteral("label_question"));
        QCOMPARE(question->text(), QStringLiteral("Perform factory reset?"));
        QCOMPARE(q.button("pushButton_OK")->text(), QStringLiteral("Confirm"));
        QCOMPARE(q.button("pushButton_Cancel")->text(), QStringLiteral("Cancel"));
        QVERIFY(q.button("pushButton_Cancel")->isDefault());
        QVERIFY(!q.button("pushButton_OK")->isDefault());
        for (const QWidget *widget :
             {static_cast<QWidget *>(question), static_cast<QWidget *>(q.button("pushButton_OK")),
              static_cast<QWidget *>(q.button("pushButton_Cancel"))}) {
            QVERIFY(widget->width() >= widget->sizeHint().width());
            QVERIFY(widget->height() >= widget->sizeHint().height());
            QVERIFY(q.dialog.rect().contains(widget->geometry()));
        }
    }

    void theFirstButtonAnswersOkWhateverItsText()
    {
        Question q;
        q.dialog.show();
        QCOMPARE(q.dialog.answer(), QString());
        QTest::mouseClick(q.button("pushButton_OK"), Qt::LeftButton);
        QVERIFY(q.dialog.isHidden());
        QCOMPARE(q.dialog.answer(), QStringLiteral("OK"));
    }

    void theSecondButtonAnswersCancel()
    {
        Question q;
        q.dialog.show();
        QTest::mouseClick(q.button("pushButton_Cancel"), Qt::LeftButton);
        QVERIFY(q.dialog.isHidden());
        QCOMPARE(q.dialog.answer(), QStringLiteral("Cancel"));
    }

    void enterIsCancelUnlessTheUserHasGoneToConfirm()
    {
        Question q;
        q.dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&q.dialog));
        QVERIFY(q.button("pushButton_Cancel")->hasFocus());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QVERIFY(q.dialog.isHidden());
        QCOMPARE(q.dialog.answer(), QStringLiteral("Cancel"));
    }

    void enterConfirmsOnAFocusedConfirm()
    {
        Question q;
        q.dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&q.dialog));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
        QVERIFY(q.button("pushButton_OK")->hasFocus());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QVERIFY(q.dialog.isHidden());
        QCOMPARE(q.dialog.answer(), QStringLiteral("OK"));
    }

    void enterIsCancelWithoutAFocus()
    {
        Question q;
        q.dialog.show();
        QTest::keyClick(&q.dialog, Qt::Key_Return);
        QCOMPARE(q.dialog.answer(), QStringLiteral("Cancel"));
    }

    void closingLeavesTheAnswerEmpty()
    {
        Question q;
        q.dialog.show();
        q.dialog.close();
        QVERIFY(q.dialog.isHidden());
        QCOMPARE(q.dialog.answer(), QString());
    }

    void escapeLeavesTheAnswerEmpty()
    {
        Question q;
        q.dialog.show();
        QTest::keyClick(&q.dialog, Qt::Key_Escape);
        QVERIFY(q.dialog.isHidden());
        QCOMPARE(q.dialog.answer(), QString());
    }
};

QTEST_MAIN(YesNoDialogTest)
#include "tst_yes_no_dialog.moc"
