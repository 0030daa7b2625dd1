#include "log/event_log.h"
#include "tests/usr/ip_settings_fixture.h"

#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

using namespace std::chrono_literals;

/// Applying changes in the IP settings dialog, as a user would.
class IpSettingsApplyTest : public IpSettingsFixture
{
    Q_OBJECT

private Q_SLOTS:
    void anApplyMovesTheModuleAndReadsItAgain()
    {
        makeDialog("80");
        module_->forgetFrames();
        module_->answerSearches([this](int nth) { // the setup's search sees the old address still
            return FakeModule::Answers{
                {FakeModule::discoveryReply(nth == 1 ? ipSeven_ : ipNine_, mac_, "Desk 9")}};
        });
        bool noticeWasGone = false;
        boxes_->beforeButton([&](QMessageBox &) { noticeWasGone = !notice()->isVisible(); });
        dialog_->show();
        typeInto(*dialog_, "lineEdit_IPv4_Address", text("192.168.1.9"));
        clickButton(*dialog_, "pushButton_Apply_IP");
        expectButtonsEnabled(false);
        QTRY_COMPARE_WITH_TIMEOUT(boxes_->texts(),
                                  QStringList{text("The IP was applied successfully")}, 20000);
        QCOMPARE(boxes_->seen().first().icon, QMessageBox::Information);
        QVERIFY(noticeWasGone);
        expectButtonsEnabled(true);
        QCOMPARE(module_->order(),
                 (QStringList{text("search"), text("setup"), text("commit"), text("search")} +
                  rounds(4)));
        QCOMPARE(module_->frames().at(1), bytes("ff5605 9ca5251a2b3c 61646d696e00 61646d696e00"
                                                "093803 80 2019500002"
                                                "0901a8c0 0101a8c0 00ffffff 4465736b2039"
                                                "61646d696e00 61646d696e00 02010000"
                                                "9ca5251a2b3c 100e000001000000 77"));
        QCOMPARE(dialog_->currentIP(), text("192.168.1.9"));
        QCOMPARE(child<QLabel>("label_IP")->text(), text("192.168.1.9"));
        QCOMPARE(dialog_->usrName(), text("Desk 9"));
    }

    void whatWasAppliedStaysKnownWhenItCannotBeReadAgain()
    {
        makeDialog("00", {10ms, 1h, 10ms});
        module_->answerLogins({{FakeModule::refusal()}});
        dialog_->show();
        clickButton(*dialog_, "radioButton_Static");
        typeInto(*dialog_, "lineEdit_IPv4_Address", text("10.1.2.3"));
        typeInto(*dialog_, "lineEdit_Subnet_Mask", text("255.0.0.0"));
        typeInto(*dialog_, "lineEdit_Default_Gateway", text("10.0.0.1"));
        clickButton(*dialog_, "pushButton_Apply_IP");
        QTRY_VERIFY_WITH_TIMEOUT(boxes_->texts().contains(text("The IP was applied successfully")),
                                 20000);
        QCOMPARE(child<QLineEdit>("lineEdit_IPv4_Address")->text(), text("-1"));
        QCOMPARE(dialog_->address(), text("10.1.2.3"));
        QCOMPARE(dialog_->subnetMask(), text("255.0.0.0"));
        QCOMPARE(dialog_->gateway(), text("10.0.0.1"));
        QCOMPARE(dialog_->ipAllocation(), text("80"));
    }

    void whatTheModuleMadeOfAnApplyIsKnown()
    {
        makeDialog("80", {10ms, 1h, 10ms});
        applyStatic(text("192.168.1.9")); // the module answers 192.168.1.7 all the same
        QTRY_COMPARE_WITH_TIMEOUT(boxes_->texts(),
                                  QStringList{text("The IP was applied successfully")}, 20000);
        QCOMPARE(dialog_->address(), text("192.168.1.7"));
    }

    void theRadioButtonSaysWhatApplySends_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("button");
        QTest::addColumn<QByteArray>("flags");
        QTest::addColumn<QString>("after");
        QTest::newRow("DHCP") << text("80") << text("radioButton_DHCP") << bytes("00")
                              << text("00");
        QTest::newRow("static") << text("00") << text("radioButton_Static") << bytes("80")
                                << text("80");
    }

    void theRadioButtonSaysWhatApplySends()
    {
        QFETCH(QString, button);
        QFETCH(QString, before);
        makeDialog(qPrintable(before), {10ms, 10ms, 10ms});
        module_->forgetFrames();
        dialog_->show();
        clickButton(*dialog_, qPrintable(button));
        clickButton(*dialog_, "pushButton_Apply_IP");
        QTRY_COMPARE_WITH_TIMEOUT(boxes_->texts(),
                                  QStringList{text("The IP was applied successfully")}, 20000);
        QTEST(module_->frames().at(1).mid(24, 1), "flags");
        QTEST(dialog_->ipAllocation(), "after");
    }

    void theWaitingNoticeIsModelessAndCanBeClosed()
    {
        makeDialog("80", {50ms, 1h, 1h});
        boxes_->once<IP_Settings_Dialog>([this](IP_Settings_Dialog &dialog) {
            clickButton(dialog, "pushButton_Apply_IP");
            QVERIFY(notice()->isVisible());
            QCOMPARE(notice()->parentWidget(), &dialog);
            QCOMPARE(notice()->windowModality(), Qt::NonModal);
            QCOMPARE(notice()->text(), text("Please wait for changes to be made"));
            QCOMPARE(notice()->windowTitle(), text("Information"));
            QCOMPARE(notice()->icon(), QMessageBox::Information);
            QTest::mouseClick(notice()->button(QMessageBox::Ok), Qt::LeftButton);
            QVERIFY(!notice()->isVisible());
            QVERIFY(dialog.isVisible());
            dialog.close();
        });
        dialog_->exec();
        QVERIFY(!boxes_->isWaiting());
    }

    void anOctetOver255PassesAndIsSentAsAnEmptyField()
    {
        QCOMPARE(openLog(), 1);
        makeDialog("80");
        applyStatic(text("192.168.1.300"));
        QTRY_COMPARE_WITH_TIMEOUT(boxes_->texts(),
                                  QStringList{text("The IP was applied successfully")}, 20000);
        QCOMPARE(module_->frames().at(1), bytes("ff5605 9ca5251a2b3c 61646d696e00 61646d696e00"
                                                "093803 80 2019500002"
                                                "0101a8c0 00ffffff 4465736b"
                                                "61646d696e00 61646d696e00 02010000"
                                                "9ca5251a2b3c 100e000001000000 ac"));
        closeLog();
        QFile log(eventLogPath());
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QByteArray lines = log.readAll();
        QVERIFY2(
            lines.contains("The IPv4 address 192.168.1.300 has a number above 255; it was sent "
                           "as an empty field   "),
            lines.constData());
        QCOMPARE(lines.count("above 255"), 1);
    }

    void aTextThatIsNoAddressIsRefusedAndNothingSent_data()
    {
        QTest::addColumn<QString>("address");
        for (const char *wrong :
             {"192.168.1", "192.168.1.7 ", " 192.168.1.7", "192. 168.1.7", "192.168.1.7.8",
              "1921.68.1.7", "192.168.1.", "-1", "", "a.b.c.d"})
            QTest::addRow("'%s'", wrong) << text(wrong);
    }

    void aTextThatIsNoAddressIsRefusedAndNothingSent()
    {
        QFETCH(QString, address);
        makeDialog("80");
        applyStatic(address);
        QTRY_COMPARE(boxes_->texts(), QStringList{text("Error in applying IP")});
        QCOMPARE(boxes_->seen().first().icon, QMessageBox::Warning);
        QVERIFY(!notice()->isVisible());
        expectButtonsEnabled(true);
        QCOMPARE(child<QLineEdit>("lineEdit_IPv4_Address")->text(), address);
        QCOMPARE(dialog_->address(), text("192.168.1.7"));
        QVERIFY(module_->frames().isEmpty());
    }

    void maskAndGatewayAreCheckedToo()
    {
        for (const char *field : {"lineEdit_Subnet_Mask", "lineEdit_Default_Gateway"}) {
            boxes_->forget();
            makeDialog("80");
            dialog_->show();
            typeInto(*dialog_, field, text("255.255"));
            module_->forgetFrames();
            clickButton(*dialog_, "pushButton_Apply_IP");
            QTRY_COMPARE(boxes_->texts(), QStringList{text("Error in applying IP")});
            QVERIFY(module_->frames().isEmpty());
        }
    }

    void dhcpWithEmptyFieldsIsNotCheckedAndWaitsTheLongerTime()
    {
        makeDialog("00", {10ms, 10ms, 1h}); // the other delay would outlast the test
        for (const char *field :
             {"lineEdit_IPv4_Address", "lineEdit_Subnet_Mask", "lineEdit_Default_Gateway"})
            child<QLineEdit>(field)->clear();
        module_->forgetFrames();
        dialog_->show();
        clickButton(*dialog_, "pushButton_Apply_IP");
        QTRY_COMPARE_WITH_TIMEOUT(boxes_->texts(),
                                  QStringList{text("The IP was applied successfully")}, 20000);
        QCOMPARE(module_->frames().at(1), bytes("ff5605 9ca5251a2b3c 61646d696e00 61646d696e00"
                                                "093803 00 2019500002 4465736b"
                                                "61646d696e00 61646d696e00 02010000"
                                                "9ca5251a2b3c 100e000001000000 c5"));
    }

    void aModuleThatIsNotFoundAgainLeavesAnEmptyAddress()
    {
        makeDialog("80", {10ms, 1h, 10ms});
        module_->answerSearches([this](int nth) {
            return nth == 1
                       ? FakeModule::Answers{{FakeModule::discoveryReply(ipSeven_, mac_, "Desk")}}
                       : FakeModule::Answers();
        });
        dialog_->show();
        clickButton(*dialog_, "pushButton_Apply_IP");
        QTRY_COMPARE_WITH_TIMEOUT(boxes_->texts(),
                                  QStringList{text("The IP was applied successfully")}, 20000);
        QVERIFY(dialog_->currentIP().isEmpty());
        QVERIFY(child<QLabel>("label_IP")->text().isEmpty());
        QCOMPARE(dialog_->usrName(), text("Desk"));
        expectButtonsEnabled(true);
    }

    void withNoRadioButtonCheckedItAsksForOne()
    {
        makeDialog("80");
        for (const char *name : {"radioButton_DHCP", "radioButton_Static"}) {
            child<QRadioButton>(name)->setAutoExclusive(false);
            child<QRadioButton>(name)->setChecked(false);
        }
        module_->forgetFrames();
        dialog_->show();
        clickButton(*dialog_, "pushButton_Apply_IP");
        QTRY_COMPARE(boxes_->texts(), QStringList{text("Select IP allocation")});
        QCOMPARE(boxes_->seen().first().icon, QMessageBox::Warning);
        QVERIFY(!notice()->isVisible());
        expectButtonsEnabled(true);
        QVERIFY(module_->frames().isEmpty());
    }

    void enterConnectsUntilSomethingWasEditedAndAppliesThen()
    {
        makeDialog("80", {10ms, 1h, 10ms});
        dialog_->show();
        QVERIFY(child<QPushButton>("pushButton_Connect")->isDefault());
        typeInto(*dialog_, "lineEdit_IPv4_Address", text("192.168.1.7"));
        QVERIFY(child<QPushButton>("pushButton_Apply_IP")->isDefault());
        QTest::keyClick(child<QLineEdit>("lineEdit_IPv4_Address"), Qt::Key_Return);
        QVERIFY(dialog_->isVisible());
        QTRY_COMPARE_WITH_TIMEOUT(boxes_->texts(),
                                  QStringList{text("The IP was applied successfully")}, 20000);
        QVERIFY(child<QPushButton>("pushButton_Connect")->isDefault());
        QTest::keyClick(child<QLineEdit>("lineEdit_IPv4_Address"), Qt::Key_Return);
        QVERIFY(!dialog_->isVisible());
    }

    void closedBeforeItAppliesItSendsNothing()
    {
        makeDialog("80", {50ms, 10ms, 10ms});
        module_->forgetFrames();
        dialog_->show();
        clickButton(*dialog_, "pushButton_Apply_IP");
        dialog_->close();
        QVERIFY(!notice()->isVisible());
        pass(200ms);
        QVERIFY(module_->frames().isEmpty());
        QVERIFY(boxes_->seen().isEmpty());
    }

    void closedWhileItWaitsItDoesNothingMore()
    {
        makeDialog("80", {10ms, 1h, 200ms});
        module_->forgetFrames();
        dialog_->show();
        clickButton(*dialog_, "pushButton_Apply_IP");
        QVERIFY(module_->waitForFrames(3));
        dialog_->close();
        QVERIFY(!notice()->isVisible());
        pass(400ms);
        QCOMPARE(module_->frames().size(), 3);
        QVERIFY(boxes_->seen().isEmpty());
    }

    void destroyedWhileItWaitsItIsSimplyGone()
    {
        makeDialog("80", {1ms, 1h, 100ms});
        module_->forgetFrames();
        dialog_->show();
        clickButton(*dialog_, "pushButton_Apply_IP");
        QVERIFY(module_->waitForFrames(3));
        dialog_.reset();
        pass(300ms);
        QCOMPARE(module_->frames().size(), 3);
    }

private:
    /// Lets a time pass in which nothing is to happen.
    void pass(std::chrono::milliseconds time)
    {
        bool isOver = false;
        QTimer::singleShot(time, this, [&isOver] { isOver = true; });
        QTRY_VERIFY(isOver);
    }
};

QTEST_MAIN(IpSettingsApplyTest)
#include "tst_ip_settings_apply.moc"
