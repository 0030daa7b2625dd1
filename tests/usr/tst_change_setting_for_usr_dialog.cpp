#include "log/event_log.h"
#include "tests/support/dialog_recorder.h"
#include "tests/usr/fake_module.h"
#include "usr/change_setting_for_usr_dialog.h"

#include <QFile>
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

QByteArray bytes(const char *hex)
{
    return QByteArray::fromHex(hex);
}

const QString applied = QStringLiteral("Settings were applied successfully");
} // namespace

/// The admin settings dialog, used as a user would.
class ChangeSettingDialogTest : public QObject
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
        makeDialog("80");
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
        QCOMPARE(dialog_->size(), QSize(425, 341));
        QCOMPARE(dialog_->minimumSize(), dialog_->maximumSize());
        QCOMPARE(dialog_->windowTitle(), text("Norvik\xC2\xAE Pelora Utility"));
        QVERIFY(!dialog_->windowIcon().isNull());
        QStringList texts;
        for (const QLabel *label : dialog_->findChildren<QLabel *>()) {
            texts.append(label->text());
            QVERIFY2(label->height() >= label->heightForWidth(label->width()),
                     qPrintable(label->text()));
        }
        for (const char *expected :
             {"Admin Settings",
              "To Edit each admin setting, enter the new value and click \"Apply\".",
              "Any value not being updated can be left blank.",
              "New Device Name:", "New Username:", "New Password:"})
            QVERIFY2(texts.contains(text(expected)), expected);
        QCOMPARE(
            dialog_->findChild<QLabel *>(text("label_heading"))->palette().windowText().color(),
            QColor(0, 120, 215));
        const auto *apply = dialog_->findChild<QPushButton *>(text("pushButton_Apply"));
        QCOMPARE(apply->text(), text("Apply"));
        QVERIFY(apply->isDefault());
        QVERIFY(apply->styleSheet().contains(text("border: 2.5px solid rgb(77, 156, 238)")));
        for (const auto &[caption, field] : {std::pair("label_name", "lineEdit_Name"),
                                             std::pair("label_username", "lineEdit_Username"),
                                             std::pair("label_password", "lineEdit_Password")})
            QCOMPARE(dialog_->findChild<QLabel *>(text(caption))->buddy()->objectName(),
                     text(field));
    }

    void credentialsInUseAreShownNowhere()
    {
        for (const QLineEdit *edit : dialog_->findChildren<QLineEdit *>())
            QVERIFY(edit->text().isEmpty());
        for (const QLabel *label : dialog_->findChildren<QLabel *>())
            QVERIFY(!label->text().contains(text("oldpas")));
        for (const QWidget *widget : dialog_->findChildren<QWidget *>())
            QVERIFY(!widget->toolTip().contains(text("oldpas")));
    }

    void whatABlankFieldDoesIsSaid()
    {
        dialog_->show();
        const auto field = [this](const char *name) {
            return dialog_->findChild<QLineEdit *>(text(name));
        };
        QCOMPARE(field("lineEdit_Name")->placeholderText(), text("stays when left blank"));
        for (const char *name : {"lineEdit_Username", "lineEdit_Password"}) {
            QCOMPARE(field(name)->placeholderText(), text("blank is written as blank"));
            QVERIFY(field(name)->toolTip().contains(text("a blank one cannot log in")));
            const QFontMetrics metrics(field(name)->font());
            QVERIFY(metrics.horizontalAdvance(field(name)->placeholderText()) + 24 <
                    field(name)->width());
        }
    }

    void aBlankCredentialHasItsLineInTheLog_data()
    {
        QTest::addColumn<QString>("username");
        QTest::addColumn<QString>("password");
        QTest::newRow("both given") << text("root") << text("toor");
        QTest::newRow("no user name") << QString() << text("toor");
        QTest::newRow("no password") << text("root") << QString();
        QTest::newRow("neither") << QString() << QString();
    }

    void aBlankCredentialHasItsLineInTheLog()
    {
        QFETCH(QString, username);
        QFETCH(QString, password);
        QCOMPARE(openLog(), 1);
        applyWith(text("New"), username, password);
        closeLog();
        QFile file(eventLogPath());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray log = file.readAll();
        QCOMPARE(
            log.count("A blank user name was sent to the module; a blank one cannot log in   "),
            username.isEmpty() ? 1 : 0);
        QCOMPARE(log.count("A blank password was sent to the module; a blank one cannot log in   "),
                 password.isEmpty() ? 1 : 0);
        for (const char *secret : {"root", "toor", "oldpas"})
            QVERIFY(!log.contains(secret));
    }

    void theNewPasswordShowsOnlyWhileItIsTyped()
    {
        dialog_->show();
        QVERIFY(QTest::qWaitForWindowActive(dialog_.get()));
        auto *edit = dialog_->findChild<QLineEdit *>(text("lineEdit_Password"));
        edit->setFocus();
        QTest::keyClicks(edit, text("secret"));
        QCOMPARE(edit->displayText(), text("secret"));
        QTest::keyClick(edit, Qt::Key_Tab);
        QVERIFY(!edit->displayText().contains(text("secret")));
        QCOMPARE(edit->displayText().size(), 6);
    }

    void entriesTooLongKeepItOpenAndSendNothing_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("username");
        QTest::addColumn<QString>("password");
        QTest::addColumn<QString>("complaint");
        const QString seventeen = text("12345678901234567");
        QTest::newRow("name of 17")
            << seventeen << QString() << QString() << text("Name of USR is too long");
        QTest::newRow("all too long")
            << seventeen << text("1234567") << text("1234567") << text("Name of USR is too long");
        QTest::newRow("username of 7")
            << QString() << text("1234567") << QString() << text("Username is too long");
        QTest::newRow("credentials too long")
            << QString() << text("1234567") << text("1234567") << text("Username is too long");
        QTest::newRow("password of 7")
            << QString() << text("123456") << text("1234567") << text("Password is too long");
    }

    void entriesTooLongKeepItOpenAndSendNothing()
    {
        QFETCH(QString, name);
        QFETCH(QString, username);
        QFETCH(QString, password);
        QFETCH(QString, complaint);
        dialog_->show();
        enter(name, username, password);
        clickButton(*dialog_, "pushButton_Apply");
        QCOMPARE(boxes_->texts(), QStringList{complaint});
        QCOMPARE(boxes_->seen().first().icon, QMessageBox::Warning);
        QVERIFY(dialog_->isVisible());
        QVERIFY(!dialog_->wasApplied());
        QCOMPARE(dialog_->findChild<QLineEdit *>(text("lineEdit_Name"))->text(), name);
        QVERIFY(module_->frames().isEmpty());
    }

    void longestEntriesAreWritten()
    {
        applyWith(text("Meeting Room 4-5"), text("123456"), text("abcdef"));
        QVERIFY(dialog_->wasApplied());
        QVERIFY(!dialog_->isVisible());
        QCOMPARE(boxes_->texts(), QStringList{applied});
        QCOMPARE(boxes_->seen().first().icon, QMessageBox::Information);
        QCOMPARE(dialog_->newName(), text("Meeting Room 4-5"));
        QCOMPARE(dialog_->newUsername(), text("123456"));
        QCOMPARE(dialog_->newPassword(), text("abcdef"));
        QVERIFY(module_->waitForFrames(3));
        QCOMPARE(module_->order(), (QStringList{text("search"), text("setup"), text("commit")}));
        QCOMPARE(module_->frames().at(1), bytes("ff5605 9ca5251a2b3c 61646d696e00 6f6c64706173"
                                                "093803 80 2019500002"
                                                "0701a8c0 0101a8c0 00ffffff"
                                                "4d656574696e6720526f6f6d20342d35"
                                                "313233343536 616263646566 02010000"
                                                "9ca5251a2b3c 100e000001000000 c3"));
        QCOMPARE(module_->frames().at(2),
                 bytes("ff1304 9ca5251a2b3c 61646d696e00 6f6c64706173 8a"));
    }

    void allFieldsEmptyKeepTheNameAndEmptyTheCredentials()
    {
        applyWith({}, {}, {});
        QVERIFY(dialog_->wasApplied());
        QCOMPARE(boxes_->texts(), QStringList{applied});
        QCOMPARE(dialog_->newName(), text("Desk"));
        QVERIFY(dialog_->newUsername().isEmpty());
        QVERIFY(dialog_->newPassword().isEmpty());
        QVERIFY(module_->waitForFrames(3));
        QCOMPARE(module_->frames().at(1), bytes("ff5605 9ca5251a2b3c 61646d696e00 6f6c64706173"
                                                "093803 80 2019500002"
                                                "0701a8c0 0101a8c0 00ffffff"
                                                "4465736b000000000000000000000000"
                                                "000000000000 000000000000 02010000"
                                                "9ca5251a2b3c 100e000001000000 84"));
    }

    void successIsSaidWhateverCameOfIt()
    {
        makeDialog("-1");
        applyWith(text("New"), {}, {});
        QCOMPARE(boxes_->texts(), (QStringList{text("Error in the setup of USR"), applied}));
        QVERIFY(dialog_->wasApplied());
        QVERIFY(!dialog_->isVisible());
    }

    void enterPressesApply()
    {
        boxes_->once<Change_setting_for_USR_Dialog>([](Change_setting_for_USR_Dialog &dialog) {
            typeInto(dialog, "lineEdit_Name", text("New"));
            QTest::keyClick(dialog.findChild<QLineEdit *>(text("lineEdit_Name")), Qt::Key_Return);
        });
        dialog_->exec();
        QVERIFY(dialog_->wasApplied());
        QCOMPARE(dialog_->newName(), text("New"));
    }

    void closingItAppliesNothing()
    {
        boxes_->once<Change_setting_for_USR_Dialog>([this](Change_setting_for_USR_Dialog &dialog) {
            enter(text("New"), text("u"), text("p"));
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
        dialog_->exec();
        QVERIFY(!dialog_->wasApplied());
        QCOMPARE(dialog_->newName(), text("Desk"));
        QVERIFY(module_->frames().isEmpty());
    }

private:
    void makeDialog(const char *allocation)
    {
        dialog_ = std::make_unique<Change_setting_for_USR_Dialog>(
            nullptr, text("192.168.1.7"), text("192.168.1.7"), text("255.255.255.0"),
            text("192.168.1.1"), text(allocation), text("admin"), text("oldpas"), text("Desk"),
            module_->network(100ms, 5ms));
    }

    void enter(const QString &name, const QString &username, const QString &password)
    {
        typeInto(*dialog_, "lineEdit_Name", name);
        typeInto(*dialog_, "lineEdit_Username", username);
        typeInto(*dialog_, "lineEdit_Password", password);
    }

    void applyWith(const QString &name, const QString &username, const QString &password)
    {
        boxes_->once<Change_setting_for_USR_Dialog>([&](Change_setting_for_USR_Dialog &dialog) {
            enter(name, username, password);
            clickButton(dialog, "pushButton_Apply");
        });
        dialog_->exec();
        QVERIFY(!boxes_->isWaiting());
    }

    std::unique_ptr<FakeModule> module_;
    std::unique_ptr<DialogRecorder> boxes_;
    std::unique_ptr<Change_setting_for_USR_Dialog> dialog_;
};

QTEST_MAIN(ChangeSettingDialogTest)
#include "tst_change_setting_for_usr_dialog.moc"
