#include "tests/support/dialog_recorder.h"
#include "tests/usr/fake_module.h"
#include "usr/credentials_dialog.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <memory>

using namespace std::chrono_literals;

namespace {
QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}
} // namespace

/// The login dialog, used as a user would.
class CredentialsDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        boxes_ = std::make_unique<DialogRecorder>();
        module_ = std::make_unique<FakeModule>();
        module_->answerSearches(
            {{FakeModule::discoveryReply(QByteArray("\xc0\xa8\x01\x07", 4),
                                         QByteArray("\x9c\xa5\x25\x1a\x2b\x3c", 6), "Desk")}});
        module_->answerLogins({{FakeModule::configuration('\x80')}});
        dialog_ = std::make_unique<Credentials_Dialog>(nullptr, text("192.168.1.7"),
                                                       module_->network(100ms, 5ms));
    }

    void cleanup()
    {
        dialog_.reset();
        module_.reset();
        boxes_.reset();
    }

    void looks()
    {
        dialog_->show();
        QCOMPARE(dialog_->size(), QSize(405, 205));
        QCOMPARE(dialog_->minimumSize(), dialog_->maximumSize());
        QCOMPARE(dialog_->windowTitle(), text("Norvik\xC2\xAE Pelora Utility"));
        QVERIFY(!dialog_->windowIcon().isNull());
        QStringList texts;
        for (const QLabel *label : dialog_->findChildren<QLabel *>()) {
            texts.append(label->text());
            QVERIFY2(label->width() >= label->sizeHint().width(), qPrintable(label->text()));
        }
        for (const char *expected :
             {"KM Login", "Enter the login credentials below for this connection",
              "Device:", "Username:", "Password:", "192.168.1.7"})
            QVERIFY2(texts.contains(text(expected)), expected);
        QCOMPARE(
            dialog_->findChild<QLabel *>(text("label_heading"))->palette().windowText().color(),
            QColor(0, 120, 215));
        QCOMPARE(continueButton()->text(), text("Continue"));
        QVERIFY(continueButton()->isDefault());
        const QString style = continueButton()->styleSheet().simplified();
        QVERIFY(style.contains(text("background-color: rgb(180, 180, 180); "
                                    "border: 2.5px solid rgb(77, 156, 238); border-radius: 0px; "
                                    "color: black;")));
        QVERIFY(style.contains(text("QPushButton:hover { background-color: rgb(77, 156, 238); "
                                    "border-color: rgb(189, 189, 189); }")));
        QVERIFY(style.contains(text("QPushButton:pressed { background-color: rgb(189, 189, 189); "
                                    "border-color: rgb(77, 156, 238); }")));
    }

    void theMainWindowsStyleDoesNotReachIt()
    {
        QWidget window;
        window.setStyleSheet(text("QPushButton {font-size: 14px;height: 45px;width: 100px;}"
                                  "QLabel {font-size: 14px;}"));
        Credentials_Dialog dialog(&window, text("192.168.1.7"));
        dialog.show();
        QCOMPARE(dialog.size(), QSize(405, 205));
        QCOMPARE(dialog.findChild<QPushButton *>()->size(), QSize(130, 32));
        QCOMPARE(dialog.findChild<QLabel *>(text("label_heading"))->font().pixelSize(), 20);
        QVERIFY(dialog.minimumSizeHint().height() <= 205);
        for (const QLabel *label : dialog.findChildren<QLabel *>())
            QVERIFY2(label->width() >= label->sizeHint().width(), qPrintable(label->text()));
    }

    void thePasswordIsMaskedAndShownNowhere()
    {
        typeInto(*dialog_, "lineEdit_username", text("admin"));
        typeInto(*dialog_, "lineEdit_password", text("secret"));
        const auto *edit = dialog_->findChild<QLineEdit *>(text("lineEdit_password"));
        QCOMPARE(edit->echoMode(), QLineEdit::Password);
        QVERIFY(!edit->displayText().contains(text("secret")));
        for (const QWidget *widget : dialog_->findChildren<QWidget *>())
            QVERIFY(widget->toolTip().isEmpty());
    }

    void captionsAreBuddiesAndTheTabOrderFollowsTheEye()
    {
        for (const auto &[caption, field] : {std::pair("label_username", "lineEdit_username"),
                                             std::pair("label_password", "lineEdit_password")})
            QCOMPARE(dialog_->findChild<QLabel *>(text(caption))->buddy()->objectName(),
                     text(field));
        dialog_->show();
        QVERIFY(QTest::qWaitForWindowActive(dialog_.get()));
        for (const char *name :
             {"lineEdit_username", "lineEdit_password", "pushButton_ip_allocation"}) {
            QCOMPARE(dialog_->focusWidget()->objectName(), text(name));
            QTest::keyClick(dialog_->focusWidget(), Qt::Key_Tab);
        }
    }

    void wrongEntriesKeepItOpenAndSendNothing_data()
    {
        QTest::addColumn<QString>("username");
        QTest::addColumn<QString>("password");
        QTest::addColumn<QString>("complaint");
        QTest::newRow("username of 7")
            << text("1234567") << text("secret") << text("Username is too long");
        QTest::newRow("both too long")
            << text("1234567") << text("1234567") << text("Username is too long");
        QTest::newRow("password of 7")
            << text("secret") << text("1234567") << text("Password is too long");
        QTest::newRow("long password before empty username")
            << QString() << text("1234567") << text("Password is too long");
        QTest::newRow("both empty: the username is checked first")
            << QString() << QString() << text("Enter username");
        QTest::newRow("empty password") << text("admin") << QString() << text("Enter password");
    }

    void wrongEntriesKeepItOpenAndSendNothing()
    {
        QFETCH(QString, username);
        QFETCH(QString, password);
        QFETCH(QString, complaint);
        dialog_->show();
        enter(username, password);
        clickButton(*dialog_, "pushButton_ip_allocation");
        QCOMPARE(boxes_->texts(), QStringList{complaint});
        QCOMPARE(boxes_->seen().first().icon, QMessageBox::Warning);
        QCOMPARE(boxes_->seen().first().title, text("Information"));
        QVERIFY(dialog_->isVisible());
        QCOMPARE(dialog_->username(), username);
        QCOMPARE(dialog_->password(), password);
        QVERIFY(dialog_->ipAllocation().isEmpty());
        QVERIFY(module_->frames().isEmpty());
    }

    void sixCharactersPassAndTheAllocationIsHandedBack_data()
    {
        QTest::addColumn<char>("flags");
        QTest::addColumn<QString>("allocation");
        QTest::newRow("DHCP") << '\x40' << text("00");
        QTest::newRow("static") << '\x80' << text("80");
    }

    void sixCharactersPassAndTheAllocationIsHandedBack()
    {
        QFETCH(char, flags);
        module_->answerLogins({{FakeModule::configuration(flags)}});
        boxes_->once<Credentials_Dialog>([this](Credentials_Dialog &dialog) {
            enter(text("userna"), text("pass12"));
            clickButton(dialog, "pushButton_ip_allocation");
        });
        dialog_->exec();
        QVERIFY(!boxes_->isWaiting());
        QVERIFY(!dialog_->isVisible());
        QVERIFY(!dialog_->isClosed());
        QTEST(dialog_->ipAllocation(), "allocation");
        QCOMPARE(dialog_->username(), text("userna"));
        QCOMPARE(dialog_->password(), text("pass12"));
        QVERIFY(boxes_->seen().isEmpty());
        QCOMPARE(module_->frames(),
                 (QList<QByteArray>{QByteArray("\xff\x01\x01\x02", 4),
                                    QByteArray("\xff\x13\x03\x9c\xa5\x25\x1a\x2b\x3cuserna"
                                               "pass12\xa5",
                                               22)}));
    }

    void aRefusalEndsInMinusOneAndIsNotClosed()
    {
        module_->answerLogins({{FakeModule::refusal()}});
        boxes_->once<Credentials_Dialog>([this](Credentials_Dialog &dialog) {
            enter(text("admin"), text("wrong"));
            clickButton(dialog, "pushButton_ip_allocation");
        });
        dialog_->exec();
        QCOMPARE(dialog_->ipAllocation(), text("-1"));
        QVERIFY(!dialog_->isClosed());
        QVERIFY(!dialog_->isVisible());
        QCOMPARE(boxes_->texts(), QStringList{text("Bad credentials")});
    }

    void enterPressesContinue()
    {
        boxes_->once<Credentials_Dialog>([this](Credentials_Dialog &dialog) {
            enter(text("admin"), text("admin"));
            QTest::keyClick(dialog.findChild<QLineEdit *>(text("lineEdit_password")),
                            Qt::Key_Return);
        });
        dialog_->exec();
        QCOMPARE(dialog_->ipAllocation(), text("80"));
        QVERIFY(!dialog_->isClosed());
    }

    void escapeAndTheCloseButtonCountAsClosing_data()
    {
        QTest::addColumn<bool>("byEscape");
        QTest::newRow("Escape") << true;
        QTest::newRow("close button") << false;
    }

    void escapeAndTheCloseButtonCountAsClosing()
    {
        QFETCH(bool, byEscape);
        boxes_->once<Credentials_Dialog>([byEscape](Credentials_Dialog &dialog) {
            if (byEscape)
                QTest::keyClick(&dialog, Qt::Key_Escape);
            else
                dialog.close();
        });
        dialog_->exec();
        QVERIFY(!boxes_->isWaiting());
        QVERIFY(dialog_->isClosed());
        QVERIFY(dialog_->ipAllocation().isEmpty());
        QVERIFY(module_->frames().isEmpty());
    }

private:
    void enter(const QString &username, const QString &password)
    {
        typeInto(*dialog_, "lineEdit_username", username);
        typeInto(*dialog_, "lineEdit_password", password);
    }

    QPushButton *continueButton() const
    {
        return dialog_->findChild<QPushButton *>(text("pushButton_ip_allocation"));
    }

    std::unique_ptr<FakeModule> module_;
    std::unique_ptr<DialogRecorder> boxes_;
    std::unique_ptr<Credentials_Dialog> dialog_;
};

QTEST_MAIN(CredentialsDialogTest)
#include "tst_credentials_dialog.moc"
